// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QRegularExpression>

const QString TavctlProgram = QStringLiteral(BUILD_DIR "/bin/tavctl");

struct TavctlRun {
    int status; // -1 when it did not end, or crashed
    QString output;
    QString error;
};

// Runs it to its end with these words and this standard input, by a command that ends in running its arguments.
inline TavctlRun RunTavctl(const QStringList& words, const QByteArray& input = {}, const QStringList& wrapper = {})
{
    QStringList command = wrapper + QStringList{TavctlProgram} + words;
    QProcess process;
    process.start(command.takeFirst(), command);
    process.write(input);
    process.closeWriteChannel();
    const bool ended = process.waitForFinished(45000) && process.exitStatus() == QProcess::NormalExit;
    const QByteArray output = process.readAllStandardOutput(); // without a size it would be taken up to a NUL
    return {ended ? process.exitCode() : -1, QString::fromUtf8(output.constData(), output.size()),
            QString::fromUtf8(process.readAllStandardError())};
}

// The codes of the findings in a report, in their order.
inline QString CodesIn(const QString& report)
{
    static const QRegularExpression code(QStringLiteral("\\[([a-z-]+)\\]\n"));
    QStringList codes;
    for (auto match = code.globalMatch(report); match.hasNext();)
        codes += match.next().captured(1);
    if (qgetenv("GATE_SANDBOX") != "namespaces")
        codes.removeAll(QStringLiteral("smb-conf-charset")); // of the machine's own smb.conf
    return codes.join(QLatin1Char(' '));
}
