// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

class LdapHandler;
class TavXmlConfig;
class UserHashes;

// How the terminal wants people to log in, and the state of a remote login. The configuration is read once, at
// construction. Used on the GUI thread only. Failures of file writes and child scripts are silent by design: a login
// must not fail because of them.
class LoginCfg {
public:
    // `terminalPasswordModeFlag`: whether CheckLocalPassword compares with the terminal password.
    explicit LoginCfg(bool terminalPasswordModeFlag);

    bool NeedAuthentication() const { return needAuthentication; }
    bool LocalAuthEnabled() const { return authEnabled && localAuthEnabled; }
    bool RemoteAuthOnly() const { return authEnabled && !localAuthEnabled; }
    // Whether a user is logged in on this terminal; once true it stays true.
    bool IsLoggedIn();

    // Whether `entered` is the configured local password, stored obscured or as a crypt-style hash.
    bool CheckLocalPassword(const QString& entered) const;

    // Leaves the user for single sign-on: hashed in /tmp/.user, enciphered in /tmp/.user.1.
    void SaveUserFiles(const QString& name, const QString& password, const QString& domain);
    // The name in /tmp/.user.1; empty when nobody is logged in or it can't be read or deciphered.
    QString LoadSavedUserName() const;
    // Appends one line to the start log, which stops growing at 64 KiB.
    void WriteLoginLog(const QString& text);
    // Starts the terminal's event script with "sec01" (flag true) or "sec02" and the user; does not wait for it.
    void SendSecurityEvent(const QString& user, bool flag);

    // Checks the user in the directory: the primary server, then the backup server when that can't be reached. May ask
    // about an expiring password and run the set-password dialog. True when the user may go on; otherwise resultMessage
    // is the sentence for the user. Blocks until the directory has answered.
    bool CheckRemoteLogin(const QString& user, const QString& password);
    bool CheckRemoteLdapLogin(const QString& user, const QString& password, bool useLdaps);
    // One server; returns a response code: 0 accepted, 1 change required, 2 change chosen, 3 refused, 4 account locked,
    // 5 server unreachable.
    int LoginToLdapServer(const QString& server, const QString& user, const QString& password, bool useLdaps);
    int CheckLdapResponse(bool queryOk, LdapHandler* handler);

    // A second way to verify a user: one direct bind a server, with the certificate setting applied. Saves the user on
    // success; on failure resultMessage is the code (sub-code, "1001", "1002" or a decimal exit status). A client that
    // hangs for 30 s counts as a success, so no login may build on this alone.
    bool LdapSearchLogin(const QString& user, const QString& password, bool useLdaps);
    bool LdapSearchLoginToServer(const QString& server, const QString& user, const QString& password, bool useLdaps);

    // "code,message" entries for the remote-login dialog; an empty one ends the list.
    static const QString AdErrorList[];

    QString terminalPassword; // as stored: obscured or hashed
    bool needAuthentication = false;
    bool terminalPasswordMode = false;
    QString localAuthPassword; // as stored
    bool authEnabled = false;
    bool localAuthEnabled = false;
    bool remoteAuthEnabled = false;
    QString remoteServer;
    QString backupServer;
    QString serverType; // "LDAP" or "LDAPS"
    QString remoteDomain;
    QString resultMessage;
    QStringList stringList; // no operation uses it
    bool loggedIn = false;
    bool requireCert = false;
    QString remotePort = QStringLiteral("389"); // as text
    qint64 daysToExpiry = 0;
    qint64 expiryWarningDays = 5;
    bool passwordChanged = false;

    // Why the last remote attempt was refused when resultMessage is empty: an English sentence, and what the
    // directory's client said about it, if anything.
    QString explanation;
    QString complaint;
    static const QString NoKnownReason; // the explanation of a refusal without a sub-code

    // Reads the configuration into the members and returns needAuthentication; the constructor calls it.
    bool ReadConfig();

private:
    void ReadXmlStore(const TavXmlConfig& xml);
    void ReadRegistryStore();
    void SplitServers();
    static void SaveUserFiles(UserHashes& user, const QString& domain);

    bool UserWantsToChange();
    void RunSetPassword(const QString& server, const QString& user, const QString& password);

    QStringList BindProbeArguments(const QString& server, const QString& user, const QString& password,
                                   bool useLdaps) const;
    QString BindProbeCode(const QString& output, int exitStatus) const;
};
