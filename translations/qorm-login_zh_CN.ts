<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>LoginCfg</name>
    <message>
        <source>Failed to change password</source>
        <translation>更改密码失败</translation>
    </message>
    <message>
        <source>This terminal is not set up to sign users in at a directory.</source>
        <translation>此终端未设置为通过目录登录。</translation>
    </message>
    <message>
        <source>The directory refused the sign-in and gave no reason known to this terminal.</source>
        <translation>目录拒绝了登录，且未给出此终端已知的原因。</translation>
    </message>
    <message>
        <source>The password was not changed.</source>
        <translation>密码未更改。</translation>
    </message>
    <message>
        <source>Invalid username or password</source>
        <translation>用户名或密码无效</translation>
    </message>
    <message>
        <source>Login not permitted at this time</source>
        <translation>此时不允许登录</translation>
    </message>
    <message>
        <source>Your password has expired</source>
        <translation>您的密码已过期</translation>
    </message>
    <message>
        <source>You must reset your password before you can log in to this unit.</source>
        <translation>您必须先重置密码，然后才能登录此设备。</translation>
    </message>
    <message>
        <source>Your account is locked. Contact your system administrator</source>
        <translation>您的帐户已被锁定。请与系统管理员联系</translation>
    </message>
    <message>
        <source>Your account has expired</source>
        <translation>您的帐户已过期</translation>
    </message>
    <message>
        <source>Your account has been disabled</source>
        <translation>您的帐户已被禁用</translation>
    </message>
    <message>
        <source>Error with supplied username please contact your system administrator</source>
        <translation>提供的用户名有误，请与系统管理员联系</translation>
    </message>
    <message>
        <source>Could not connect to server</source>
        <translation>无法连接到服务器</translation>
    </message>
    <message>
        <source>LDAP server connection error. This can be caused by a configuration problem or by server certificate validation error.</source>
        <translation>LDAP 服务器连接错误。可能由配置问题或服务器证书验证错误引起。</translation>
    </message>
    <message>
        <source>LDAP server connection problem. Check configuration.</source>
        <translation>LDAP 服务器连接出现问题。请检查配置。</translation>
    </message>
    <message>
        <source>Could not connect to LDAP server</source>
        <translation>无法连接到 LDAP 服务器</translation>
    </message>
    <message>
        <source>Could not contact LDAP server</source>
        <translation>无法联系 LDAP 服务器</translation>
    </message>
    <message>
        <source>Please log in with your new password</source>
        <translation>请使用新密码登录</translation>
    </message>
    <message>
        <source>Cancel was selected, no change attempted</source>
        <translation>已取消，未进行更改</translation>
    </message>
    <message>
        <source>Password Change?</source>
        <translation>更改密码？</translation>
    </message>
    <message>
        <source> %1 %2 %3.

 Do you want to change your password now?  
</source>
        <translation> %1 %2 %3。

 是否立即更改密码？  
</translation>
    </message>
    <message>
        <source>Your Password will expire in </source>
        <translation>您的密码距离过期还有 </translation>
    </message>
    <message>
        <source>day(s)</source>
        <translation>天</translation>
    </message>
</context>
<context>
    <name>LoginWindow</name>
    <message>
        <source>Login</source>
        <translation>登录</translation>
    </message>
    <message>
        <source>Lock picture</source>
        <translation>锁图片</translation>
    </message>
    <message>
        <source>Please Enter User Password</source>
        <translation>请输入用户密码</translation>
    </message>
    <message>
        <source>Login Error</source>
        <translation>登录错误</translation>
    </message>
    <message>
        <source>Password is invalid</source>
        <translation>密码无效</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>撤消(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>重做(&amp;R)</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>剪切(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>复制(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>粘贴(&amp;P)</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>全选</translation>
    </message>
</context>
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>是(&amp;Y)</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>否(&amp;N)</translation>
    </message>
</context>
<context>
    <name>SetPassword</name>
    <message>
        <source>Dialog</source>
        <translation>对话框</translation>
    </message>
    <message>
        <source>Password Change/Reset</source>
        <translation>更改/重置密码</translation>
    </message>
    <message>
        <source>Server Name/IP:</source>
        <translation>服务器名称/IP：</translation>
    </message>
    <message>
        <source>User Name: </source>
        <translation>用户名： </translation>
    </message>
    <message>
        <source>Old Password:</source>
        <translation>旧密码：</translation>
    </message>
    <message>
        <source>New Password:</source>
        <translation>新密码：</translation>
    </message>
    <message>
        <source>Retype Password:</source>
        <translation>重新输入密码：</translation>
    </message>
    <message>
        <source>Show old password</source>
        <translation>显示旧密码</translation>
    </message>
    <message>
        <source>Show new password</source>
        <translation>显示新密码</translation>
    </message>
    <message>
        <source>Show retyped password</source>
        <translation>显示重新输入的密码</translation>
    </message>
    <message>
        <source>V</source>
        <translation>V</translation>
    </message>
    <message>
        <source>Change Password</source>
        <translation>更改密码</translation>
    </message>
    <message>
        <source>The New Password field is empty</source>
        <translation>新密码为空</translation>
    </message>
    <message>
        <source>Password Mismatch</source>
        <translation>密码不一致</translation>
    </message>
    <message>
        <source>The new and retyped password do not match</source>
        <translation>新密码与重新输入的密码不一致</translation>
    </message>
</context>
<context>
    <name>ngremotelogin</name>
    <message>
        <source>User Authentication</source>
        <translation>用户身份验证</translation>
    </message>
    <message>
        <source>User picture</source>
        <translation>用户图片</translation>
    </message>
    <message>
        <source>Username:</source>
        <translation>用户名：</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>用户名</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>密码：</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>密码</translation>
    </message>
    <message>
        <source>Caps Lock is on</source>
        <translation>大写锁定已打开</translation>
    </message>
    <message>
        <source>Domain:</source>
        <translation>域：</translation>
    </message>
    <message>
        <source>Logging in...</source>
        <translation>正在登录...</translation>
    </message>
    <message>
        <source>Unlock</source>
        <translation>解锁</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>登录</translation>
    </message>
    <message>
        <source>Change User</source>
        <translation>切换用户</translation>
    </message>
    <message>
        <source>Logout</source>
        <translation>注销</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Caps Lock is ON!</source>
        <translation>大写锁定已打开！</translation>
    </message>
    <message>
        <source>Verifying credentials</source>
        <translation>正在验证凭据</translation>
    </message>
    <message>
        <source>Logging in</source>
        <translation>正在登录</translation>
    </message>
    <message>
        <source>Password Changed</source>
        <translation>密码已更改</translation>
    </message>
    <message>
        <source>Authentication Error</source>
        <translation>身份验证错误</translation>
    </message>
</context>
</TS>
