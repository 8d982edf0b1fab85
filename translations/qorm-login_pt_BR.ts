<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR" sourcelanguage="en">
<context>
    <name>LoginCfg</name>
    <message>
        <source>Failed to change password</source>
        <translation>Não foi possível alterar a senha</translation>
    </message>
    <message>
        <source>This terminal is not set up to sign users in at a directory.</source>
        <translation>Este terminal não está configurado para o login em um diretório.</translation>
    </message>
    <message>
        <source>The directory refused the sign-in and gave no reason known to this terminal.</source>
        <translation>O diretório recusou o login sem informar um motivo que este terminal conheça.</translation>
    </message>
    <message>
        <source>The password was not changed.</source>
        <translation>A senha não foi alterada.</translation>
    </message>
    <message>
        <source>Invalid username or password</source>
        <translation>Nome de usuário ou senha inválidos</translation>
    </message>
    <message>
        <source>Login not permitted at this time</source>
        <translation>O acesso não é permitido neste horário</translation>
    </message>
    <message>
        <source>Your password has expired</source>
        <translation>Sua senha expirou</translation>
    </message>
    <message>
        <source>You must reset your password before you can log in to this unit.</source>
        <translation>Você precisa redefinir sua senha antes de entrar neste equipamento.</translation>
    </message>
    <message>
        <source>Your account is locked. Contact your system administrator</source>
        <translation>Sua conta está bloqueada. Entre em contato com o administrador do sistema</translation>
    </message>
    <message>
        <source>Your account has expired</source>
        <translation>Sua conta expirou</translation>
    </message>
    <message>
        <source>Your account has been disabled</source>
        <translation>Sua conta foi desativada</translation>
    </message>
    <message>
        <source>Error with supplied username please contact your system administrator</source>
        <translation>Erro com o nome de usuário informado, entre em contato com o administrador do sistema</translation>
    </message>
    <message>
        <source>Could not connect to server</source>
        <translation>Não foi possível conectar ao servidor</translation>
    </message>
    <message>
        <source>LDAP server connection error. This can be caused by a configuration problem or by server certificate validation error.</source>
        <translation>Erro de conexão com o servidor LDAP. Pode ser causado por um problema de configuração ou por erro na validação do certificado do servidor.</translation>
    </message>
    <message>
        <source>LDAP server connection problem. Check configuration.</source>
        <translation>Problema de conexão com o servidor LDAP. Verifique a configuração.</translation>
    </message>
    <message>
        <source>Could not connect to LDAP server</source>
        <translation>Não foi possível conectar ao servidor LDAP</translation>
    </message>
    <message>
        <source>Could not contact LDAP server</source>
        <translation>Não foi possível contatar o servidor LDAP</translation>
    </message>
    <message>
        <source>Please log in with your new password</source>
        <translation>Entre com sua nova senha</translation>
    </message>
    <message>
        <source>Cancel was selected, no change attempted</source>
        <translation>Cancelado, nenhuma alteração foi feita</translation>
    </message>
    <message>
        <source>Password Change?</source>
        <translation>Alterar a senha?</translation>
    </message>
    <message>
        <source> %1 %2 %3.

 Do you want to change your password now?  
</source>
        <translation> %1 %2 %3.

 Deseja alterar sua senha agora?  
</translation>
    </message>
    <message>
        <source>Your Password will expire in </source>
        <translation>Sua senha expira em </translation>
    </message>
    <message>
        <source>day(s)</source>
        <translation>dia(s)</translation>
    </message>
</context>
<context>
    <name>LoginWindow</name>
    <message>
        <source>Login</source>
        <translation>Entrar</translation>
    </message>
    <message>
        <source>Lock picture</source>
        <translation>Imagem de cadeado</translation>
    </message>
    <message>
        <source>Please Enter User Password</source>
        <translation>Digite a senha do usuário</translation>
    </message>
    <message>
        <source>Login Error</source>
        <translation>Erro de entrada</translation>
    </message>
    <message>
        <source>Password is invalid</source>
        <translation>A senha é inválida</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Desfazer</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Refazer</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Recor&amp;tar</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copiar</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>Co&amp;lar</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Excluir</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Selecionar tudo</translation>
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
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Sim</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;Não</translation>
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
        <translation>Alterar/redefinir senha</translation>
    </message>
    <message>
        <source>Server Name/IP:</source>
        <translation>Servidor (nome/IP):</translation>
    </message>
    <message>
        <source>User Name: </source>
        <translation>Usuário: </translation>
    </message>
    <message>
        <source>Old Password:</source>
        <translation>Senha antiga:</translation>
    </message>
    <message>
        <source>New Password:</source>
        <translation>Nova senha:</translation>
    </message>
    <message>
        <source>Retype Password:</source>
        <translation>Repetir senha:</translation>
    </message>
    <message>
        <source>Show old password</source>
        <translation>Mostrar a senha antiga</translation>
    </message>
    <message>
        <source>Show new password</source>
        <translation>Mostrar a nova senha</translation>
    </message>
    <message>
        <source>Show retyped password</source>
        <translation>Mostrar a senha repetida</translation>
    </message>
    <message>
        <source>V</source>
        <translation>V</translation>
    </message>
    <message>
        <source>Change Password</source>
        <translation>Alterar senha</translation>
    </message>
    <message>
        <source>The New Password field is empty</source>
        <translation>O campo da nova senha está vazio</translation>
    </message>
    <message>
        <source>Password Mismatch</source>
        <translation>As senhas não coincidem</translation>
    </message>
    <message>
        <source>The new and retyped password do not match</source>
        <translation>A nova senha e a repetida não coincidem</translation>
    </message>
</context>
<context>
    <name>ngremotelogin</name>
    <message>
        <source>User Authentication</source>
        <translation>Autenticação de usuário</translation>
    </message>
    <message>
        <source>User picture</source>
        <translation>Imagem do usuário</translation>
    </message>
    <message>
        <source>Username:</source>
        <translation>Nome de usuário:</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Nome de usuário</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Senha:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Senha</translation>
    </message>
    <message>
        <source>Caps Lock is on</source>
        <translation>Caps Lock está ativado</translation>
    </message>
    <message>
        <source>Domain:</source>
        <translation>Domínio:</translation>
    </message>
    <message>
        <source>Logging in...</source>
        <translation>Entrando...</translation>
    </message>
    <message>
        <source>Unlock</source>
        <translation>Desbloquear</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>Entrar</translation>
    </message>
    <message>
        <source>Change User</source>
        <translation>Trocar de usuário</translation>
    </message>
    <message>
        <source>Logout</source>
        <translation>Sair</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Caps Lock is ON!</source>
        <translation>Caps Lock está ATIVADO!</translation>
    </message>
    <message>
        <source>Verifying credentials</source>
        <translation>Verificando credenciais</translation>
    </message>
    <message>
        <source>Logging in</source>
        <translation>Entrando</translation>
    </message>
    <message>
        <source>Password Changed</source>
        <translation>Senha alterada</translation>
    </message>
    <message>
        <source>Authentication Error</source>
        <translation>Erro de autenticação</translation>
    </message>
</context>
</TS>
