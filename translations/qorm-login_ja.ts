<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>LoginCfg</name>
    <message>
        <source>Failed to change password</source>
        <translation>パスワードを変更できませんでした</translation>
    </message>
    <message>
        <source>This terminal is not set up to sign users in at a directory.</source>
        <translation>この端末はディレクトリへのログイン用に設定されていません。</translation>
    </message>
    <message>
        <source>The directory refused the sign-in and gave no reason known to this terminal.</source>
        <translation>ディレクトリがログインを拒否しましたが、この端末で分かる理由は示されませんでした。</translation>
    </message>
    <message>
        <source>The password was not changed.</source>
        <translation>パスワードは変更されませんでした。</translation>
    </message>
    <message>
        <source>Invalid username or password</source>
        <translation>ユーザー名またはパスワードが無効です</translation>
    </message>
    <message>
        <source>Login not permitted at this time</source>
        <translation>この時間はログインできません</translation>
    </message>
    <message>
        <source>Your password has expired</source>
        <translation>パスワードの有効期限が切れています</translation>
    </message>
    <message>
        <source>You must reset your password before you can log in to this unit.</source>
        <translation>この端末にログインする前にパスワードを再設定する必要があります。</translation>
    </message>
    <message>
        <source>Your account is locked. Contact your system administrator</source>
        <translation>アカウントがロックされています。システム管理者に連絡してください</translation>
    </message>
    <message>
        <source>Your account has expired</source>
        <translation>アカウントの有効期限が切れています</translation>
    </message>
    <message>
        <source>Your account has been disabled</source>
        <translation>アカウントが無効になっています</translation>
    </message>
    <message>
        <source>Error with supplied username please contact your system administrator</source>
        <translation>入力されたユーザー名に問題があります。システム管理者に連絡してください</translation>
    </message>
    <message>
        <source>Could not connect to server</source>
        <translation>サーバーに接続できませんでした</translation>
    </message>
    <message>
        <source>LDAP server connection error. This can be caused by a configuration problem or by server certificate validation error.</source>
        <translation>LDAP サーバーへの接続エラーです。設定の問題またはサーバー証明書の検証エラーが原因の可能性があります。</translation>
    </message>
    <message>
        <source>LDAP server connection problem. Check configuration.</source>
        <translation>LDAP サーバーへの接続に問題があります。設定を確認してください。</translation>
    </message>
    <message>
        <source>Could not connect to LDAP server</source>
        <translation>LDAP サーバーに接続できませんでした</translation>
    </message>
    <message>
        <source>Could not contact LDAP server</source>
        <translation>LDAP サーバーと通信できませんでした</translation>
    </message>
    <message>
        <source>Please log in with your new password</source>
        <translation>新しいパスワードでログインしてください</translation>
    </message>
    <message>
        <source>Cancel was selected, no change attempted</source>
        <translation>キャンセルされました。変更は行われていません</translation>
    </message>
    <message>
        <source>Password Change?</source>
        <translation>パスワードを変更しますか?</translation>
    </message>
    <message>
        <source> %1 %2 %3.

 Do you want to change your password now?  
</source>
        <translation> %1 %2 %3。

 今すぐパスワードを変更しますか?  
</translation>
    </message>
    <message>
        <source>Your Password will expire in </source>
        <translation>パスワードの有効期限まで残り </translation>
    </message>
    <message>
        <source>day(s)</source>
        <translation>日です</translation>
    </message>
</context>
<context>
    <name>LoginWindow</name>
    <message>
        <source>Login</source>
        <translation>ログイン</translation>
    </message>
    <message>
        <source>Lock picture</source>
        <translation>錠の画像</translation>
    </message>
    <message>
        <source>Please Enter User Password</source>
        <translation>パスワードを入力してください</translation>
    </message>
    <message>
        <source>Login Error</source>
        <translation>ログインエラー</translation>
    </message>
    <message>
        <source>Password is invalid</source>
        <translation>パスワードが無効です</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>元に戻す(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>やり直し(&amp;R)</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>切り取り(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>コピー(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>貼り付け(&amp;P)</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>すべて選択</translation>
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
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>はい(&amp;Y)</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>いいえ(&amp;N)</translation>
    </message>
</context>
<context>
    <name>SetPassword</name>
    <message>
        <source>Dialog</source>
        <translation>ダイアログ</translation>
    </message>
    <message>
        <source>Password Change/Reset</source>
        <translation>パスワードの変更/再設定</translation>
    </message>
    <message>
        <source>Server Name/IP:</source>
        <translation>サーバー名/IP:</translation>
    </message>
    <message>
        <source>User Name: </source>
        <translation>ユーザー名: </translation>
    </message>
    <message>
        <source>Old Password:</source>
        <translation>古いパスワード:</translation>
    </message>
    <message>
        <source>New Password:</source>
        <translation>新しいパスワード:</translation>
    </message>
    <message>
        <source>Retype Password:</source>
        <translation>パスワードの再入力:</translation>
    </message>
    <message>
        <source>Show old password</source>
        <translation>古いパスワードを表示</translation>
    </message>
    <message>
        <source>Show new password</source>
        <translation>新しいパスワードを表示</translation>
    </message>
    <message>
        <source>Show retyped password</source>
        <translation>再入力したパスワードを表示</translation>
    </message>
    <message>
        <source>V</source>
        <translation>V</translation>
    </message>
    <message>
        <source>Change Password</source>
        <translation>パスワードの変更</translation>
    </message>
    <message>
        <source>The New Password field is empty</source>
        <translation>新しいパスワードが入力されていません</translation>
    </message>
    <message>
        <source>Password Mismatch</source>
        <translation>パスワードが一致しません</translation>
    </message>
    <message>
        <source>The new and retyped password do not match</source>
        <translation>新しいパスワードと再入力が一致しません</translation>
    </message>
</context>
<context>
    <name>ngremotelogin</name>
    <message>
        <source>User Authentication</source>
        <translation>ユーザー認証</translation>
    </message>
    <message>
        <source>User picture</source>
        <translation>ユーザーの画像</translation>
    </message>
    <message>
        <source>Username:</source>
        <translation>ユーザー名:</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>ユーザー名</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>パスワード:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>パスワード</translation>
    </message>
    <message>
        <source>Caps Lock is on</source>
        <translation>Caps Lock がオンです</translation>
    </message>
    <message>
        <source>Domain:</source>
        <translation>ドメイン:</translation>
    </message>
    <message>
        <source>Logging in...</source>
        <translation>ログインしています...</translation>
    </message>
    <message>
        <source>Unlock</source>
        <translation>ロック解除</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>ログイン</translation>
    </message>
    <message>
        <source>Change User</source>
        <translation>ユーザーの切り替え</translation>
    </message>
    <message>
        <source>Logout</source>
        <translation>ログアウト</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Caps Lock is ON!</source>
        <translation>Caps Lock がオンです！</translation>
    </message>
    <message>
        <source>Verifying credentials</source>
        <translation>資格情報を確認しています</translation>
    </message>
    <message>
        <source>Logging in</source>
        <translation>ログインしています</translation>
    </message>
    <message>
        <source>Password Changed</source>
        <translation>パスワードを変更しました</translation>
    </message>
    <message>
        <source>Authentication Error</source>
        <translation>認証エラー</translation>
    </message>
</context>
</TS>
