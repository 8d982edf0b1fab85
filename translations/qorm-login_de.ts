<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>LoginCfg</name>
    <message>
        <source>Failed to change password</source>
        <translation>Das Kennwort konnte nicht geändert werden</translation>
    </message>
    <message>
        <source>This terminal is not set up to sign users in at a directory.</source>
        <translation>Dieses Terminal ist nicht für die Anmeldung an einem Verzeichnis eingerichtet.</translation>
    </message>
    <message>
        <source>The directory refused the sign-in and gave no reason known to this terminal.</source>
        <translation>Das Verzeichnis hat die Anmeldung abgelehnt, ohne einen Grund zu nennen, den dieses Terminal kennt.</translation>
    </message>
    <message>
        <source>The password was not changed.</source>
        <translation>Das Kennwort wurde nicht geändert.</translation>
    </message>
    <message>
        <source>Invalid username or password</source>
        <translation>Ungültiger Benutzername oder ungültiges Kennwort</translation>
    </message>
    <message>
        <source>Login not permitted at this time</source>
        <translation>Die Anmeldung ist zu dieser Zeit nicht erlaubt</translation>
    </message>
    <message>
        <source>Your password has expired</source>
        <translation>Ihr Kennwort ist abgelaufen</translation>
    </message>
    <message>
        <source>You must reset your password before you can log in to this unit.</source>
        <translation>Sie müssen Ihr Kennwort zurücksetzen, bevor Sie sich an diesem Gerät anmelden können.</translation>
    </message>
    <message>
        <source>Your account is locked. Contact your system administrator</source>
        <translation>Ihr Konto ist gesperrt. Wenden Sie sich an Ihren Systemadministrator</translation>
    </message>
    <message>
        <source>Your account has expired</source>
        <translation>Ihr Konto ist abgelaufen</translation>
    </message>
    <message>
        <source>Your account has been disabled</source>
        <translation>Ihr Konto wurde deaktiviert</translation>
    </message>
    <message>
        <source>Error with supplied username please contact your system administrator</source>
        <translation>Fehler beim angegebenen Benutzernamen, bitte wenden Sie sich an Ihren Systemadministrator</translation>
    </message>
    <message>
        <source>Could not connect to server</source>
        <translation>Es konnte keine Verbindung zum Server hergestellt werden</translation>
    </message>
    <message>
        <source>LDAP server connection error. This can be caused by a configuration problem or by server certificate validation error.</source>
        <translation>Fehler bei der Verbindung zum LDAP-Server. Ursache kann ein Konfigurationsproblem oder ein Fehler bei der Prüfung des Serverzertifikats sein.</translation>
    </message>
    <message>
        <source>LDAP server connection problem. Check configuration.</source>
        <translation>Problem bei der Verbindung zum LDAP-Server. Prüfen Sie die Konfiguration.</translation>
    </message>
    <message>
        <source>Could not connect to LDAP server</source>
        <translation>Es konnte keine Verbindung zum LDAP-Server hergestellt werden</translation>
    </message>
    <message>
        <source>Could not contact LDAP server</source>
        <translation>Der LDAP-Server ist nicht erreichbar</translation>
    </message>
    <message>
        <source>Please log in with your new password</source>
        <translation>Bitte melden Sie sich mit Ihrem neuen Kennwort an</translation>
    </message>
    <message>
        <source>Cancel was selected, no change attempted</source>
        <translation>Abgebrochen, es wurde nichts geändert</translation>
    </message>
    <message>
        <source>Password Change?</source>
        <translation>Kennwort ändern?</translation>
    </message>
    <message>
        <source> %1 %2 %3.

 Do you want to change your password now?  
</source>
        <translation> %1 %2 %3.

 Möchten Sie Ihr Kennwort jetzt ändern?  
</translation>
    </message>
    <message>
        <source>Your Password will expire in </source>
        <translation>Ihr Kennwort läuft ab in </translation>
    </message>
    <message>
        <source>day(s)</source>
        <translation>Tag(e)</translation>
    </message>
</context>
<context>
    <name>LoginWindow</name>
    <message>
        <source>Login</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>Lock picture</source>
        <translation>Schlossbild</translation>
    </message>
    <message>
        <source>Please Enter User Password</source>
        <translation>Bitte Benutzerkennwort eingeben</translation>
    </message>
    <message>
        <source>Login Error</source>
        <translation>Anmeldefehler</translation>
    </message>
    <message>
        <source>Password is invalid</source>
        <translation>Das Kennwort ist ungültig</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>Wieder&amp;herstellen</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>Einf&amp;ügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Ja</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;Nein</translation>
    </message>
</context>
<context>
    <name>SetPassword</name>
    <message>
        <source>Dialog</source>
        <translation>Dialog</translation>
    </message>
    <message>
        <source>Password Change/Reset</source>
        <translation>Kennwort ändern/zurücksetzen</translation>
    </message>
    <message>
        <source>Server Name/IP:</source>
        <translation>Servername/IP:</translation>
    </message>
    <message>
        <source>User Name: </source>
        <translation>Benutzername: </translation>
    </message>
    <message>
        <source>Old Password:</source>
        <translation>Altes Kennwort:</translation>
    </message>
    <message>
        <source>New Password:</source>
        <translation>Neues Kennwort:</translation>
    </message>
    <message>
        <source>Retype Password:</source>
        <translation>Kennwort wiederholen:</translation>
    </message>
    <message>
        <source>Show old password</source>
        <translation>Altes Kennwort anzeigen</translation>
    </message>
    <message>
        <source>Show new password</source>
        <translation>Neues Kennwort anzeigen</translation>
    </message>
    <message>
        <source>Show retyped password</source>
        <translation>Wiederholtes Kennwort anzeigen</translation>
    </message>
    <message>
        <source>V</source>
        <translation>V</translation>
    </message>
    <message>
        <source>Change Password</source>
        <translation>Kennwort ändern</translation>
    </message>
    <message>
        <source>The New Password field is empty</source>
        <translation>Das Feld „Neues Kennwort“ ist leer</translation>
    </message>
    <message>
        <source>Password Mismatch</source>
        <translation>Die Kennwörter stimmen nicht überein</translation>
    </message>
    <message>
        <source>The new and retyped password do not match</source>
        <translation>Neues und wiederholtes Kennwort stimmen nicht überein</translation>
    </message>
</context>
<context>
    <name>ngremotelogin</name>
    <message>
        <source>User Authentication</source>
        <translation>Benutzeranmeldung</translation>
    </message>
    <message>
        <source>User picture</source>
        <translation>Benutzerbild</translation>
    </message>
    <message>
        <source>Username:</source>
        <translation>Benutzername:</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Kennwort:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Kennwort</translation>
    </message>
    <message>
        <source>Caps Lock is on</source>
        <translation>Feststelltaste ist aktiv</translation>
    </message>
    <message>
        <source>Domain:</source>
        <translation>Domäne:</translation>
    </message>
    <message>
        <source>Logging in...</source>
        <translation>Anmeldung läuft ...</translation>
    </message>
    <message>
        <source>Unlock</source>
        <translation>Entsperren</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>Anmelden</translation>
    </message>
    <message>
        <source>Change User</source>
        <translation>Benutzer wechseln</translation>
    </message>
    <message>
        <source>Logout</source>
        <translation>Abmelden</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Caps Lock is ON!</source>
        <translation>Feststelltaste ist AKTIV!</translation>
    </message>
    <message>
        <source>Verifying credentials</source>
        <translation>Anmeldung wird geprüft</translation>
    </message>
    <message>
        <source>Logging in</source>
        <translation>Anmeldung läuft</translation>
    </message>
    <message>
        <source>Password Changed</source>
        <translation>Kennwort geändert</translation>
    </message>
    <message>
        <source>Authentication Error</source>
        <translation>Anmeldefehler</translation>
    </message>
</context>
</TS>
