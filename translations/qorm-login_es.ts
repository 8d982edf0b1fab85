<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>LoginCfg</name>
    <message>
        <source>Failed to change password</source>
        <translation>No se pudo cambiar la contraseña</translation>
    </message>
    <message>
        <source>This terminal is not set up to sign users in at a directory.</source>
        <translation>Este terminal no está configurado para iniciar sesión en un directorio.</translation>
    </message>
    <message>
        <source>The directory refused the sign-in and gave no reason known to this terminal.</source>
        <translation>El directorio rechazó el inicio de sesión sin indicar un motivo que este terminal conozca.</translation>
    </message>
    <message>
        <source>The password was not changed.</source>
        <translation>La contraseña no se ha cambiado.</translation>
    </message>
    <message>
        <source>Invalid username or password</source>
        <translation>Nombre de usuario o contraseña no válidos</translation>
    </message>
    <message>
        <source>Login not permitted at this time</source>
        <translation>No se permite iniciar sesión a esta hora</translation>
    </message>
    <message>
        <source>Your password has expired</source>
        <translation>Su contraseña ha caducado</translation>
    </message>
    <message>
        <source>You must reset your password before you can log in to this unit.</source>
        <translation>Debe restablecer su contraseña antes de iniciar sesión en este equipo.</translation>
    </message>
    <message>
        <source>Your account is locked. Contact your system administrator</source>
        <translation>Su cuenta está bloqueada. Póngase en contacto con el administrador del sistema</translation>
    </message>
    <message>
        <source>Your account has expired</source>
        <translation>Su cuenta ha caducado</translation>
    </message>
    <message>
        <source>Your account has been disabled</source>
        <translation>Su cuenta ha sido deshabilitada</translation>
    </message>
    <message>
        <source>Error with supplied username please contact your system administrator</source>
        <translation>Error con el nombre de usuario indicado, póngase en contacto con el administrador del sistema</translation>
    </message>
    <message>
        <source>Could not connect to server</source>
        <translation>No se pudo conectar con el servidor</translation>
    </message>
    <message>
        <source>LDAP server connection error. This can be caused by a configuration problem or by server certificate validation error.</source>
        <translation>Error de conexión con el servidor LDAP. Puede deberse a un problema de configuración o a un error al validar el certificado del servidor.</translation>
    </message>
    <message>
        <source>LDAP server connection problem. Check configuration.</source>
        <translation>Problema de conexión con el servidor LDAP. Compruebe la configuración.</translation>
    </message>
    <message>
        <source>Could not connect to LDAP server</source>
        <translation>No se pudo conectar con el servidor LDAP</translation>
    </message>
    <message>
        <source>Could not contact LDAP server</source>
        <translation>No se pudo contactar con el servidor LDAP</translation>
    </message>
    <message>
        <source>Please log in with your new password</source>
        <translation>Inicie sesión con su nueva contraseña</translation>
    </message>
    <message>
        <source>Cancel was selected, no change attempted</source>
        <translation>Cancelado, no se ha intentado ningún cambio</translation>
    </message>
    <message>
        <source>Password Change?</source>
        <translation>¿Cambiar la contraseña?</translation>
    </message>
    <message>
        <source> %1 %2 %3.

 Do you want to change your password now?  
</source>
        <translation> %1 %2 %3.

 ¿Desea cambiar la contraseña ahora?  
</translation>
    </message>
    <message>
        <source>Your Password will expire in </source>
        <translation>Su contraseña caduca dentro de </translation>
    </message>
    <message>
        <source>day(s)</source>
        <translation>día(s)</translation>
    </message>
</context>
<context>
    <name>LoginWindow</name>
    <message>
        <source>Login</source>
        <translation>Inicio de sesión</translation>
    </message>
    <message>
        <source>Lock picture</source>
        <translation>Imagen de candado</translation>
    </message>
    <message>
        <source>Please Enter User Password</source>
        <translation>Introduzca la contraseña</translation>
    </message>
    <message>
        <source>Login Error</source>
        <translation>Error de inicio de sesión</translation>
    </message>
    <message>
        <source>Password is invalid</source>
        <translation>La contraseña no es válida</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Deshacer</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Rehacer</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Cor&amp;tar</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copiar</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Pegar</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Eliminar</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Seleccionar todo</translation>
    </message>
</context>
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Sí</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;No</translation>
    </message>
</context>
<context>
    <name>SetPassword</name>
    <message>
        <source>Dialog</source>
        <translation>Diálogo</translation>
    </message>
    <message>
        <source>Password Change/Reset</source>
        <translation>Cambiar/restablecer contraseña</translation>
    </message>
    <message>
        <source>Server Name/IP:</source>
        <translation>Servidor (nombre/IP):</translation>
    </message>
    <message>
        <source>User Name: </source>
        <translation>Usuario: </translation>
    </message>
    <message>
        <source>Old Password:</source>
        <translation>Contraseña anterior:</translation>
    </message>
    <message>
        <source>New Password:</source>
        <translation>Contraseña nueva:</translation>
    </message>
    <message>
        <source>Retype Password:</source>
        <translation>Repetir contraseña:</translation>
    </message>
    <message>
        <source>Show old password</source>
        <translation>Mostrar la contraseña anterior</translation>
    </message>
    <message>
        <source>Show new password</source>
        <translation>Mostrar la contraseña nueva</translation>
    </message>
    <message>
        <source>Show retyped password</source>
        <translation>Mostrar la contraseña repetida</translation>
    </message>
    <message>
        <source>V</source>
        <translation>V</translation>
    </message>
    <message>
        <source>Change Password</source>
        <translation>Cambiar contraseña</translation>
    </message>
    <message>
        <source>The New Password field is empty</source>
        <translation>El campo de la contraseña nueva está vacío</translation>
    </message>
    <message>
        <source>Password Mismatch</source>
        <translation>Las contraseñas no coinciden</translation>
    </message>
    <message>
        <source>The new and retyped password do not match</source>
        <translation>La contraseña nueva y la repetida no coinciden</translation>
    </message>
</context>
<context>
    <name>ngremotelogin</name>
    <message>
        <source>User Authentication</source>
        <translation>Autenticación de usuario</translation>
    </message>
    <message>
        <source>User picture</source>
        <translation>Imagen del usuario</translation>
    </message>
    <message>
        <source>Username:</source>
        <translation>Nombre de usuario:</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Nombre de usuario</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Contraseña:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Contraseña</translation>
    </message>
    <message>
        <source>Caps Lock is on</source>
        <translation>Bloq Mayús está activado</translation>
    </message>
    <message>
        <source>Domain:</source>
        <translation>Dominio:</translation>
    </message>
    <message>
        <source>Logging in...</source>
        <translation>Iniciando sesión...</translation>
    </message>
    <message>
        <source>Unlock</source>
        <translation>Desbloquear</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>Iniciar sesión</translation>
    </message>
    <message>
        <source>Change User</source>
        <translation>Cambiar de usuario</translation>
    </message>
    <message>
        <source>Logout</source>
        <translation>Cerrar sesión</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Caps Lock is ON!</source>
        <translation>¡Bloq Mayús está ACTIVADO!</translation>
    </message>
    <message>
        <source>Verifying credentials</source>
        <translation>Comprobando credenciales</translation>
    </message>
    <message>
        <source>Logging in</source>
        <translation>Iniciando sesión</translation>
    </message>
    <message>
        <source>Password Changed</source>
        <translation>Contraseña cambiada</translation>
    </message>
    <message>
        <source>Authentication Error</source>
        <translation>Error de autenticación</translation>
    </message>
</context>
</TS>
