// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/findings.h"

#include "tav3/regini.h"
#include "tav3/stringblur.h"
#include "tavctl/report.h"
#include "tavctl/terminalconfig.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool HasRegistrySection()
{
    const QString path = QStringLiteral("Software\\Tessaloquin\\Qorm");
    return TavRegIni().OpenKey(QStringLiteral("HKEY_LOCAL_MACHINE"), path, 0x20019) == 0; // KEY_READ
}

bool HasObscured(const LoginCfg& cfg)
{
    return !TavStringBlur::Decode(cfg.terminalPassword).isNull()
        || !TavStringBlur::Decode(cfg.localAuthPassword).isNull();
}

bool MayWrite(const QString& path)
{
    return access(QFile::encodeName(path).constData(), W_OK) == 0;
}

// The first folder on the way to a file that this user may not enter; empty when there is none.
QString ClosedFolder(const QString& path)
{
    QString folder = QStringLiteral("/");
    const QStringList steps = QFileInfo(path).absolutePath().split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (int i = 0;; ++i) {
        if (access(QFile::encodeName(folder).constData(), X_OK) != 0)
            return QFileInfo::exists(folder) ? folder : QString();
        if (i == steps.size())
            return {};
        folder += (i == 0 ? QString() : QStringLiteral("/")) + steps.at(i);
    }
}

// Whether the gate can read the file at all; the worst reason why not is found.
bool FindIfReadable(const QString& path, const QString& user, Report& report)
{
    const QFileInfo file(path);
    const QString closed = ClosedFolder(path);
    const bool isThere = file.exists();
    const bool isFile = !isThere || file.isFile();
    report.Find("folder-closed", {closed, user}, !closed.isEmpty());
    report.Find("configuration-missing", {path}, closed.isEmpty() && !isThere);
    report.Find("configuration-no-file", {path}, !isFile);
    report.Find("configuration-unreadable", {path, user}, isThere && isFile && !file.isReadable());
    return isThere && isFile && file.isReadable();
}

void FindIfWritable(const TerminalConfig& terminal, Report& report)
{
    const QFileInfo file(terminal.path);
    const QFileInfo folder(terminal.folder);
    const bool byEverybody = file.permission(QFile::WriteOther) || folder.permission(QFile::WriteOther);
    const bool byUser = geteuid() != 0 // who may write everything
        && (file.ownerId() == geteuid() || MayWrite(terminal.path) || MayWrite(terminal.folder));
    report.Find("writable-by-everybody", {terminal.path}, byEverybody);
    report.Find("writable-by-user", {terminal.path, terminal.user}, byUser && !byEverybody);
    const bool isReadable = file.permission(QFile::ReadOther) && folder.permission(QFile::ExeOther);
    report.Find("password-readable", {terminal.path}, isReadable && HasObscured(terminal.cfg));
}

// A file that a start as this user writes, and that another one left there: the sticky folder keeps it.
void FindForeignFiles(const QString& user, Report& report)
{
    const QString key = QStringLiteral("/tmp/.tav3-%1.key").arg(geteuid());
    for (const QString& path :
         {QStringLiteral("/tmp/.user"), QStringLiteral("/tmp/.user.1"), QStringLiteral("/tmp/.newuser"),
          QStringLiteral("/tmp/.newuser.1"), key, QStringLiteral("/tmp/AdPwdTest.log"),
          QStringLiteral("/tmp/QormLoginDebug.log"), QStringLiteral("/tmp/config/files/QXlogin.log")}) {
        struct stat info { };
        if (lstat(QFile::encodeName(path).constData(), &info) == 0)
            report.Find("foreign-file", {path, UserName(info.st_uid), user}, info.st_uid != geteuid());
    }
}

bool IsMissing(const char* tool)
{
    return QStandardPaths::findExecutable(QLatin1String(tool)).isEmpty();
}

} // namespace

void FindInFile(const TerminalConfig& terminal, Report& report)
{
    const QString selector = terminal.folder + QStringLiteral("/config.xml"); // which names the store
    if (terminal.registryStore && !FindIfReadable(selector, terminal.user, report))
        return;
    if (!FindIfReadable(terminal.path, terminal.user, report))
        return;
    report.Find("registry-section-missing", {terminal.path}, terminal.registryStore && !HasRegistrySection());
    FindIfWritable(terminal, report);
}

void FindOnTerminal(const TerminalConfig& terminal, Report& report)
{
    const bool asks = terminal.UsesDirectory();
    report.Find("client-missing", {}, asks && IsMissing("ldapsearch"));
    report.Find("smbpasswd-missing", {}, asks && IsMissing("/usr/bin/smbpasswd"));
    report.Find("wshutdown-missing", {}, asks && IsMissing("wshutdown"));
    report.Find("event-script-missing", {}, IsMissing("send_event.sh"));
    report.Find("files-folder-missing", {}, !QFileInfo(QStringLiteral("/tmp/config/files")).isDir());
    FindForeignFiles(terminal.user, report);
}
