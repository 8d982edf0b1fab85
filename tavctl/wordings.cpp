// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tavctl/report.h"

namespace {

// Each has a cause and a cure in tavctl(1). No stored password may be an argument.
const QVector<Wording> AllWordings{
    // what the configuration leads to
    {"no-authentication", Grade::Error, "no authentication is enabled: every start goes through"},
    {"setup-only", Grade::Warning,
     "no authentication is enabled: every start without an argument goes through, only the set-up tools ask"},

    // the file
    {"configuration-missing", Grade::Error, "%1 is missing: nothing is protected"},
    {"configuration-unreadable", Grade::Error, "%1 can't be read by %2: nothing is protected"},
    {"folder-closed", Grade::Error, "the folder %1 can't be entered by %2: nothing is protected"},
    {"configuration-no-file", Grade::Error, "%1 is not a regular file: nothing is protected"},
    {"registry-section-missing", Grade::Error,
     "%1 has no section [HKEY_LOCAL_MACHINE\\Software\\Tessaloquin\\Qorm]: nothing is protected"},
    {"writable-by-everybody", Grade::Error, "%1 can be changed or replaced by every user"},
    {"writable-by-user", Grade::Warning,
     "%1 can be changed or replaced by %2: it should belong to root, with mode 0640 and the group of %2"},
    {"password-readable", Grade::Warning, "%1 can be read by every user, who can undo the obscured password in it"},

    // its form
    {"not-well-formed", Grade::Error,
     "%1 is not well-formed at line %2, column %3: what stands behind that place is not read"},
    {"section-missing", Grade::Error, "the section %1 is missing: none of its keys counts"},
    {"key-elsewhere", Grade::Error, "%1 in %2 is not read: the gate looks in %3"},
    {"unknown-key", Grade::Error, "%1 in line %2 is no key of the gate: did you mean %3?"},
    {"key-twice", Grade::Error, "%1 stands more than once: the first, %2, counts"},
    {"section-twice", Grade::Warning, "the section %1 stands more than once: all of them are read as one"},
    {"value-in-attribute", Grade::Error,
     "the value of %1 in line %2 stands in an attribute, which is not read: write it between <%1> and </%1>"},
    {"key-holds-elements", Grade::Error, "%1 in line %2 holds elements in the place of a text: it counts as empty"},
    {"key-in-comment", Grade::Note, "%1 stands in a comment, and counts as missing"},
    {"foreign-key", Grade::Note, "%1 in line %2 is no key of the gate"},
    {"unclear-switch", Grade::Error, "%1 is neither true nor false, and counts as false"},

    // its passwords
    {"password-not-stored", Grade::Error, "%1 is asked for, but not stored: any input opens the local window"},
    {"password-unusable", Grade::Error,
     "%1 is stored neither obscured nor as a whole hash: no input opens the local window"},
    {"password-old-hash", Grade::Error,
     "%1 is stored in plain text, which no input matches, or as a hash of an old, weak method"},

    // the directory
    {"no-server", Grade::Error, "%1 names no server: no remote login can succeed"},
    {"registry-server-missing", Grade::Note,
     "%1 names no server, which in this store switches remote authentication on"},
    {"registry-server", Grade::Note,
     "%1 names a server, which in this store switches remote authentication off (except for \"force\")"},
    {"not-a-host-name", Grade::Error, "%1 takes host names with blanks between, no scheme and no port"},
    {"server-type", Grade::Error, "%1 is neither LDAP nor LDAPS: every remote login is refused"},
    {"almost-ldaps", Grade::Warning, "%1 is neither LDAP nor LDAPS, and counts as LDAP: passwords travel unencrypted"},
    {"plain-ldap", Grade::Warning, "%1 is LDAP: passwords travel unencrypted"},
    {"no-domain", Grade::Warning, "%1 is empty: a saved user has no domain"},
    {"probe-port", Grade::Note,
     "%1 is missing or not the port that a login uses all the same: 636 for LDAPS, else 389"},
    {"reqcert-off", Grade::Note,
     "%1 is off, but a login checks the server's certificate all the same, as the settings of ldapsearch say"},
    {"reqcert-without-tls", Grade::Note, "%1 is on, but only LDAPS has a certificate"},
    {"certificate-not-demanded", Grade::Warning,
     "TLS_REQCERT is %1 in the settings of ldapsearch: any server is believed"},
    {"authority-unreadable", Grade::Error,
     "the CA file %1 (TLS_CACERT) is missing or can't be read by %2: no certificate verifies"},

    // the terminal
    {"client-missing", Grade::Error, "ldapsearch is missing: no remote login can succeed"},
    {"smbpasswd-missing", Grade::Warning,
     "/usr/bin/smbpasswd is missing: no password can be changed, and who must change it can't sign in"},
    {"wshutdown-missing", Grade::Note, "wshutdown is missing: Escape in the remote dialog is dead"},
    {"event-script-missing", Grade::Note, "send_event.sh is missing: no login is reported"},
    {"files-folder-missing", Grade::Note,
     "/tmp/config/files is missing: there is no start log and no picture behind the dialog"},
    {"foreign-file", Grade::Warning,
     "%1 belongs to %2, and a start as %3 does not use it: single sign-on or a log fails without a word"},

    // a server that is asked
    {"name-unknown", Grade::Error, "the name %1 does not resolve"},
    {"port-refused", Grade::Error, "%1 refuses connections to port %2"},
    {"port-silent", Grade::Error, "%1 does not answer on port %2 within %3 s"},
    {"not-reachable", Grade::Error, "%1 can't be reached: %2"},
    {"certificate-expired", Grade::Error,
     "the certificate of %1 expired on %2 by this terminal's clock, which says %3"},
    {"certificate-not-yet-valid", Grade::Error,
     "the certificate of %1 is not valid before %2 by this terminal's clock, which says %3"},
    {"certificate-unknown-authority", Grade::Error,
     "the certificate of %1 is signed by an authority (%2) that is not in %3"},
    {"certificate-name", Grade::Error, "the certificate of %1 is for other names: %2"},
    {"certificate-refused", Grade::Error, "the certificate of %1 does not verify: %2"},
    {"old-protocol", Grade::Error, "%1 and this terminal have no version or method of TLS in common: %2"},
    {"no-tls", Grade::Error, "%1 does not speak TLS on port %2: %3"},
    {"client-settings", Grade::Error,
     "%1 can be reached, but ldapsearch says: %3; its settings (ldap.conf, .ldaprc, LDAP... in the environment) have "
     "%2"},
    {"client-silent", Grade::Error, "%1 can be reached, but ldapsearch got no answer in time"},
    {"client-fails", Grade::Error, "%1 can be reached, but ldapsearch says: %2"},
    {"root-entry", Grade::Error, "the root entry of %1 can't be read without a bind: %2"},
    {"no-naming-context", Grade::Error, "the root entry of %1 names no domain: no naming context begins with DC="},
    {"clock", Grade::Warning, "the clock of this terminal says %2, that of %1 %3"},
    {"password-port", Grade::Warning, "%1 can't be reached on port 445: no password can be changed there"},
    {"smb-conf-remark", Grade::Warning,
     "/etc/samba/smb.conf: %1; smbpasswd says so too, and every change of a password counts as failed"},
    {"smb-conf-charset", Grade::Note,
     "\"unix charset\" in /etc/samba/smb.conf is %1: passwords with letters beyond ASCII can't be changed"},
};

} // namespace

const QVector<Wording>& Wordings()
{
    return AllWordings;
}
