// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// User names and passwords that mean something to a shell, a filter, an option's parser or a reader of the log, pasted
// into the remote-login dialog.
#include "tav3/rdpcipher.h"
#include "tests/support/gatedriver.h"
#include "tests/support/table.h"
#include "tests/support/testsupport.h"

#include <QRegularExpression>
#include <QTest>

namespace {

const char RecordArguments[] = "printf '%s\\0' \"$@\" >> \"$0.arguments\"\n";

// The arguments of the calls so far, one after the other.
QStringList Arguments(const FakeTools& tools, const char* tool)
{
    QStringList arguments;
    for (const QByteArray& bytes : FileText(tools.Path(QLatin1String(tool)) + QStringLiteral(".arguments")).split(0))
        arguments += QString::fromUtf8(bytes);
    return arguments;
}

QStringList SavedFields()
{
    QStringList fields;
    const QString line = QString::fromLatin1(FileText(QStringLiteral("/tmp/.user.1")));
    for (const QString& field : line.chopped(1).split(QStringLiteral(",00,")))
        fields += QString::fromLatin1(rdp_decrypt(field.toLatin1().constData()));
    return fields;
}

// As the terminal's Latin-1 files keep it.
QString Kept(const QString& text)
{
    return QString::fromLatin1(text.toLatin1());
}

} // namespace

class Hostile : public QObject {
    Q_OBJECT
private slots:
    void init() { CleanTerminal(); }

    void ArgumentsStayWhole_data() { LoadTable("hostile.tsv"); }

    void ArgumentsStayWhole()
    {
        const QString user = Text("user");
        const QString password = Text("password");
        FakeTools tools;
        tools.InstallScript(QStringLiteral("ldapsearch"),
                            QByteArray(RecordArguments)
                                + "echo 'namingContexts: DC=example,DC=org'; echo 'dn: CN=a'; echo 'pwdLastSet: 1'\n");
        tools.InstallScript(QStringLiteral("send_event.sh"), RecordArguments);
        Gate gate;
        QVERIFY(m_desktop.Shows(QStringLiteral("User Authentication")));
        Paste(user, "Tab");
        Paste(password, "Return");
        QCOMPARE(gate.Status(), 0);
        const QStringList search = Arguments(tools, "ldapsearch").mid(7);
        const QStringList bind{QStringLiteral("-D"),
                               user + QStringLiteral("@ example.org"),
                               QStringLiteral("-w"),
                               password,
                               QStringLiteral("-b"),
                               QStringLiteral(" DC=example,DC=org"),
                               QStringLiteral("(sAMAccountName=%1)").arg(user)};
        QCOMPARE(search.mid(4, bind.size()), bind);
        QCOMPARE(search.size(), 4 + bind.size() + 5 + 1);
        const QStringList event{QStringLiteral("sec01"), user, QString()};
        QTRY_COMPARE(Arguments(tools, "send_event.sh"), event);
        QCOMPARE(SavedFields(), (QStringList{Kept(user), Kept(password), QStringLiteral("example.org")}));
        // One line of the log for each message.
        QCOMPARE(FileText(QStringLiteral("/tmp/QormLoginDebug.log")).count("CheckRemoteLogin returned  true (:0)\n"),
                 1);
        for (const QByteArray& line : FileText(QStringLiteral("/tmp/QormLoginDebug.log")).split('\n'))
            QVERIFY2(line.isEmpty() || line.endsWith(" (:0)"), line.constData());
    }

    void WideNameGetsNobodyIn_data() { LoadTable("hostile.tsv"); }

    // The password is that of the user whom the widened filter finds; the directory binds nobody by such a name.
    void WideNameGetsNobodyIn()
    {
        Gate gate;
        QVERIFY(m_desktop.Shows(QStringLiteral("User Authentication")));
        Paste(Text("user"), "Tab");
        Paste(QStringLiteral("Lantern-2026"), "Return");
        QVERIFY(m_desktop.Confirms(QStringLiteral("Authentication Error")));
        QCOMPARE(Gate::LastOutcome(), QStringLiteral("\"Invalid username or password\" 3 false"));
        QVERIFY(!QFile::exists(QStringLiteral("/tmp/.user.1")));
    }

    // That the filter does find more with such a name shows that it is the bind that refuses.
    void FilterIsWidened()
    {
        QProcess search;
        search.start(QStringLiteral("ldapsearch"),
                     Words("-LLL -x -H ldap://dc1.example.org -D fine@example.org -w Lantern-2026 -b DC=example,DC=org"
                           " (sAMAccountName=*) dn"));
        QVERIFY(search.waitForFinished(WaitMs));
        QVERIFY(search.readAllStandardOutput().count("dn: ") > 1);
    }

private:
    void Paste(const QString& text, const char* keys)
    {
        QProcess clipboard;
        clipboard.start(QStringLiteral("xclip"), Words("-selection clipboard"));
        clipboard.write(text.toUtf8());
        clipboard.closeWriteChannel();
        QVERIFY(clipboard.waitForFinished(WaitMs));
        m_desktop.Keys("ctrl+v");
        m_desktop.Keys(keys);
    }

    Desktop m_desktop;
    DomainController m_server;
    Configuration m_configuration{DomainController::Settings()};
};

QTEST_GUILESS_MAIN(Hostile)
#include "e2e_hostile.moc"
