// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/verbs.h"

#include "base/guardedfile.h"
#include "base/wipe.h"
#include "tav3/rdpcipher.h"

#include <QStringList>

namespace {

// Three enciphered texts of the greatest length take a quarter of it.
constexpr qint64 MaxFileBytes = 65536;

} // namespace

int PrintSavedField(const Request& request)
{
    const QStringList fields{QStringLiteral("user"), QStringLiteral("password"), QStringLiteral("domain")};
    QFile file(QStringLiteral("/tmp/.user.1"));
    if (!file.exists())
        return Fail("there is no saved user (/tmp/.user.1)");
    if (!OpenGuarded(file, GuardedMode::Read))
        return Fail("/tmp/.user.1 is refused: not a plain file of this user or of root, or not readable");
    const QString text = QString::fromLatin1(file.read(MaxFileBytes)).trimmed();
    const QString enciphered = text.split(QStringLiteral(",00,")).value(fields.indexOf(request.operand));
    char* plain = rdp_decrypt(enciphered.toLatin1().constData());
    if (!plain)
        return Fail("/tmp/.user.1 can't be deciphered: damaged, or saved by another user or with another key");
    const SecretBytes line(QString::fromLatin1(plain).append(QLatin1Char('\n')).toUtf8());
    explicit_bzero(plain, strlen(plain));
    std::ignore = setvbuf(stdout, nullptr, _IONBF, 0); // no copy stays in its buffer
    const auto size = static_cast<size_t>(line.Size());
    return fwrite(line.Text(), 1, size, stdout) == size ? EXIT_SUCCESS : Fail("can't write to standard output");
}
