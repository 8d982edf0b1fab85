// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <functional>

struct PasswordDates;

// One request to change a password: for which account, from what and to what.
struct PasswordRequest {
    QString server;
    QString user;
    QString oldPassword;
    QString newPassword;
};

// Runs the command-line tools of the password features: ldapsearch synchronously (expiry query) and smbpasswd through
// its prompts (password change). One instance a process, made at first use and never deleted. The server, user and
// password it works with are class-wide; every request overwrites them. Used on the GUI thread only.
// Outcomes stay in the public members. Diagnostic lines are written only when /tmp/debug-login existed at the first
// use.
class LdapHandler : public QObject {
    Q_OBJECT
public:
    // The only way to the instance; points it at the server, user and password given.
    static LdapHandler* GetInstance(const QString& server, const QString& user, const QString& password);

    // Binds as the user and reads the password dates. True when the bind succeeded and an entry came back; otherwise
    // m_lastError, m_lastCode, m_mustChange and m_accountLocked say why. Blocks until the directory has answered.
    bool CheckPassword();

    // Starts the change to `newPassword`. Empty: smbpasswd was started and ProcessFinihsed() follows when it ends; it
    // succeeded exactly when m_stdErr is empty then. Otherwise the refusal, and nothing was started.
    // A tool that can't be started gives an empty text too, and no signal.
    QString ChangePassword(const QString& newPassword);
    // Whether the child that ran last did what the last ChangePassword asked for, and never complained: a request that
    // comes while an older child runs starts none of its own.
    bool RanAsAsked() const;
    static bool IsSmbPasswdAvailable();
    // Makes an empty /etc/samba/smb.conf when there is none; whether the file exists now.
    static bool PrepareSmbConf();

    // The URI of the server, and the dotted domain that its root entry names; m_baseDn is set with it. Empty when the
    // root entry can't be read or names none.
    QString FindNamingContext();
    QString QueryNamingContext();
    // Whole days since 1970-01-01 UTC of a directory time; one before that wraps around to a huge number.
    static quint64 FileTimeToEpochDays(quint64 ticks);

    // Work of the caller's that is done while a client of CheckPassword() runs, once for each; the handler only waits
    // then.
    std::function<void()> m_whileClientRuns;

    // Runs a tool to its end: its output lines, and its error lines in m_errorLines. An empty list, with m_errorLines
    // left as they were, when it could not be started or did not finish in time.
    QStringList RunCommand(const QString& program, const QStringList& arguments, const QString& label);
    // Sets m_uri from the current server and the default port of the scheme, and returns it.
    QString BuildUri(bool ldaps);

    // The audit file: one entry (skipped when the text is empty, and cut at 1 MiB), its lines, its removal. Failures
    // are silent.
    static void WriteLog(const QString& title, const QString& text);
    static QStringList ReadLog();
    static void ClearLog();

    // Snapshot of server, user and password, and the way back.
    static void SaveCredentials();
    static void RestoreCredentials();

    static constexpr int StartTimeoutMs = 30000; // for any tool

    // Codes that the program itself decides by: a wrong name or password, and a directory that does not answer.
    static const QString InvalidCredentials;
    static const QString ServerUnreachable;
    // Directory sub-code, or code of our own, to the sentence for the user.
    static const QMap<QString, QString> LdapErrorMessages;
    // Whether a bind with this password would be one without a password, which proves nothing even where a directory
    // allows it (RFC 4513, 5.1.2). A child's argument ends at the first NUL.
    static bool CountsAsEmpty(const QString& password) { return password.isEmpty() || password.at(0).isNull(); }

    // The sentence of a code, "Unknown error code " and the code for one that is not listed.
    static QString ErrorMessage(const QString& code);

    static LdapHandler* s_instance;
    static QString s_serverName;
    static QString s_defaultServer;
    static QString s_userName;
    static QString s_password;
    static QString s_savedServer;
    static QString s_savedUser;
    static QString s_savedPassword;
    static bool s_debugEnabled;
    static QString s_ldapSearchProgram;
    static QStringList s_ldapSearchArgs;
    static QStringList s_namingContextArgs;
    static QString s_smbPasswdProgram;
    static QString s_logFile;

    QProcess* m_process;  // never deleted, as this object
    QString m_unusedText; // the four members named unused hold a place in the layout; no operation reads them
    QString m_uri;
    QString m_unusedName;
    QStringList m_unusedNames;
    QString m_domainName;
    QString m_baseDn;
    QStringList m_unusedLines;
    QStringList m_messages;
    QStringList m_errorLines;
    QString m_lastError;
    QString m_lastCode;
    QString m_newPassword;
    bool m_mustChange = false;
    QString m_stdErr;
    QString m_stdOut;
    bool m_useConfiguredProtocol = false;
    bool m_useLdaps = false;
    bool m_accountLocked = false;
    qint64 m_daysToExpiry = 0;

    // The client's own word for a refused bind whose reason is not known, such as "Strong(er) authentication required";
    // one short line, or empty.
    QString m_complaint;

signals:
    void PwdProcessComplete(bool success);
    void PostMessage(QString msg);
    void PostResult(QString);
    void ProcessFinihsed(); // spelled so; the only one of the four that is raised

private slots:
    void OnStandardOuputReady(); // spelled so
    void OnStandardErrorReady();
    void OnProcessErrorOccurred(QProcess::ProcessError error);
    void OnProcessFinished(int exitCode);
    void OnProcessStarted();

private:
    LdapHandler(const QString& server, const QString& user, const QString& password, QObject* parent);

    QStringList BindArguments() const;
    void ReportRefusedBind();
    void ReportCode(const QString& code);
    void ReportExpiry(const PasswordDates& dates);

    void ConnectProcess();
    static QString RefusalOfChange(const QString& newPassword);
    void StartSmbPasswd();
    void Answer(const QString& password);
    void StopFlood(int bytesRead);

    PasswordRequest m_running;     // what the last child was started with and has been told since
    QString m_earlierStdErr;       // of that child, from before a further request emptied m_stdErr
    qint64 m_childOutputBytes = 0; // of that child, prompts included
};
