<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>LoginCfg</name>
    <message>
        <source>Failed to change password</source>
        <translation>Le mot de passe n’a pas pu être modifié</translation>
    </message>
    <message>
        <source>This terminal is not set up to sign users in at a directory.</source>
        <translation>Ce terminal n’est pas configuré pour la connexion à un annuaire.</translation>
    </message>
    <message>
        <source>The directory refused the sign-in and gave no reason known to this terminal.</source>
        <translation>L’annuaire a refusé la connexion sans donner de raison connue de ce terminal.</translation>
    </message>
    <message>
        <source>The password was not changed.</source>
        <translation>Le mot de passe n’a pas été modifié.</translation>
    </message>
    <message>
        <source>Invalid username or password</source>
        <translation>Nom d’utilisateur ou mot de passe incorrect</translation>
    </message>
    <message>
        <source>Login not permitted at this time</source>
        <translation>La connexion n’est pas autorisée à cette heure</translation>
    </message>
    <message>
        <source>Your password has expired</source>
        <translation>Votre mot de passe a expiré</translation>
    </message>
    <message>
        <source>You must reset your password before you can log in to this unit.</source>
        <translation>Vous devez réinitialiser votre mot de passe avant de pouvoir vous connecter à cet appareil.</translation>
    </message>
    <message>
        <source>Your account is locked. Contact your system administrator</source>
        <translation>Votre compte est verrouillé. Contactez votre administrateur système</translation>
    </message>
    <message>
        <source>Your account has expired</source>
        <translation>Votre compte a expiré</translation>
    </message>
    <message>
        <source>Your account has been disabled</source>
        <translation>Votre compte a été désactivé</translation>
    </message>
    <message>
        <source>Error with supplied username please contact your system administrator</source>
        <translation>Erreur liée au nom d’utilisateur fourni, contactez votre administrateur système</translation>
    </message>
    <message>
        <source>Could not connect to server</source>
        <translation>Connexion au serveur impossible</translation>
    </message>
    <message>
        <source>LDAP server connection error. This can be caused by a configuration problem or by server certificate validation error.</source>
        <translation>Erreur de connexion au serveur LDAP. Elle peut être due à un problème de configuration ou à une erreur de validation du certificat du serveur.</translation>
    </message>
    <message>
        <source>LDAP server connection problem. Check configuration.</source>
        <translation>Problème de connexion au serveur LDAP. Vérifiez la configuration.</translation>
    </message>
    <message>
        <source>Could not connect to LDAP server</source>
        <translation>Connexion au serveur LDAP impossible</translation>
    </message>
    <message>
        <source>Could not contact LDAP server</source>
        <translation>Le serveur LDAP est injoignable</translation>
    </message>
    <message>
        <source>Please log in with your new password</source>
        <translation>Connectez-vous avec votre nouveau mot de passe</translation>
    </message>
    <message>
        <source>Cancel was selected, no change attempted</source>
        <translation>Annulé, aucune modification effectuée</translation>
    </message>
    <message>
        <source>Password Change?</source>
        <translation>Modifier le mot de passe ?</translation>
    </message>
    <message>
        <source> %1 %2 %3.

 Do you want to change your password now?  
</source>
        <translation> %1 %2 %3.

 Voulez-vous modifier votre mot de passe maintenant ?  
</translation>
    </message>
    <message>
        <source>Your Password will expire in </source>
        <translation>Votre mot de passe expire dans </translation>
    </message>
    <message>
        <source>day(s)</source>
        <translation>jour(s)</translation>
    </message>
</context>
<context>
    <name>LoginWindow</name>
    <message>
        <source>Login</source>
        <translation>Connexion</translation>
    </message>
    <message>
        <source>Lock picture</source>
        <translation>Image de cadenas</translation>
    </message>
    <message>
        <source>Please Enter User Password</source>
        <translation>Saisissez le mot de passe</translation>
    </message>
    <message>
        <source>Login Error</source>
        <translation>Erreur de connexion</translation>
    </message>
    <message>
        <source>Password is invalid</source>
        <translation>Le mot de passe n’est pas valide</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Annuler</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rétablir</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Co&amp;uper</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>Cop&amp;ier</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>Co&amp;ller</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Tout sélectionner</translation>
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
        <translation>Annuler</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Oui</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;Non</translation>
    </message>
</context>
<context>
    <name>SetPassword</name>
    <message>
        <source>Dialog</source>
        <translation>Dialogue</translation>
    </message>
    <message>
        <source>Password Change/Reset</source>
        <translation>Modifier/réinitialiser le mot de passe</translation>
    </message>
    <message>
        <source>Server Name/IP:</source>
        <translation>Serveur (nom/IP) :</translation>
    </message>
    <message>
        <source>User Name: </source>
        <translation>Utilisateur : </translation>
    </message>
    <message>
        <source>Old Password:</source>
        <translation>Ancien mot de passe :</translation>
    </message>
    <message>
        <source>New Password:</source>
        <translation>Nouveau mot de passe :</translation>
    </message>
    <message>
        <source>Retype Password:</source>
        <translation>Confirmation :</translation>
    </message>
    <message>
        <source>Show old password</source>
        <translation>Afficher l’ancien mot de passe</translation>
    </message>
    <message>
        <source>Show new password</source>
        <translation>Afficher le nouveau mot de passe</translation>
    </message>
    <message>
        <source>Show retyped password</source>
        <translation>Afficher la confirmation</translation>
    </message>
    <message>
        <source>V</source>
        <translation>V</translation>
    </message>
    <message>
        <source>Change Password</source>
        <translation>Modifier le mot de passe</translation>
    </message>
    <message>
        <source>The New Password field is empty</source>
        <translation>Le champ « Nouveau mot de passe » est vide</translation>
    </message>
    <message>
        <source>Password Mismatch</source>
        <translation>Les mots de passe diffèrent</translation>
    </message>
    <message>
        <source>The new and retyped password do not match</source>
        <translation>Le nouveau mot de passe et sa confirmation diffèrent</translation>
    </message>
</context>
<context>
    <name>ngremotelogin</name>
    <message>
        <source>User Authentication</source>
        <translation>Authentification</translation>
    </message>
    <message>
        <source>User picture</source>
        <translation>Image de l’utilisateur</translation>
    </message>
    <message>
        <source>Username:</source>
        <translation>Nom d’utilisateur :</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Nom d’utilisateur</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Mot de passe :</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Mot de passe</translation>
    </message>
    <message>
        <source>Caps Lock is on</source>
        <translation>Verr. maj. est activé</translation>
    </message>
    <message>
        <source>Domain:</source>
        <translation>Domaine :</translation>
    </message>
    <message>
        <source>Logging in...</source>
        <translation>Connexion en cours...</translation>
    </message>
    <message>
        <source>Unlock</source>
        <translation>Déverrouiller</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>Se connecter</translation>
    </message>
    <message>
        <source>Change User</source>
        <translation>Changer d’utilisateur</translation>
    </message>
    <message>
        <source>Logout</source>
        <translation>Se déconnecter</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Caps Lock is ON!</source>
        <translation>Verr. maj. est ACTIVÉ !</translation>
    </message>
    <message>
        <source>Verifying credentials</source>
        <translation>Vérification des identifiants</translation>
    </message>
    <message>
        <source>Logging in</source>
        <translation>Connexion en cours</translation>
    </message>
    <message>
        <source>Password Changed</source>
        <translation>Mot de passe modifié</translation>
    </message>
    <message>
        <source>Authentication Error</source>
        <translation>Erreur d’authentification</translation>
    </message>
</context>
</TS>
