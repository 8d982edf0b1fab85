// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tests/support/testsupport.h"

#include <QDirIterator>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size);

// Feeds each file of a folder to the fuzz target, without a fuzzer. Fails when there is none.
int main(int argc, char** argv)
{
    int count = 0;
    for (QDirIterator files(QFile::decodeName(argc > 1 ? argv[1] : ""), QDir::Files); files.hasNext(); ++count) {
        const QString path = files.next();
        puts(qPrintable(path)); // the last one printed is the one that failed
        fflush(stdout);
        const QByteArray bytes = FileText(path);
        LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char*>(bytes.constData()), size_t(bytes.size()));
    }
    return count > 0 ? 0 : 1;
}
