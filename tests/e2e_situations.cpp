// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
// The built program in every situation of the table that TABLE names; tests/tables/README.md explains their language.
// SHARD takes a part of them: "1/4" is the second quarter.
#include "tests/situation_driver.h"

#include <QTest>

namespace {

const QString TableName = QString::fromLocal8Bit(qgetenv("TABLE"));

} // namespace

class Situations : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (!m_stage.Build())
            QSKIP("needs namespaces of its own");
    }

    void init() { m_stage.Clean(); }

    // No key of the next situation goes to a window that the X server has yet to take away.
    void cleanup()
    {
        if (m_stage.desktop)
            Within(WaitMs, [] { return FocusedTitle().isEmpty(); });
    }

    void Situation_data()
    {
        QTest::addColumn<int>("number");
        const QByteArrayList shard = qgetenv("SHARD").split('/');
        for (int i = shard.first().toInt(); i < m_table.situations.size(); i += qMax(1, shard.last().toInt()))
            QTest::newRow(qPrintable(m_table.situations.at(i).text)) << i;
    }

    void Situation()
    {
        QFETCH(int, number);
        const auto& situation = m_table.situations.at(number);
#ifdef __SANITIZE_ADDRESS__
        if (situation.text.contains(u"descriptors:") || situation.text.contains(u"--as="))
            QSKIP("the sanitizers need descriptors and memory of their own");
#endif
        SituationDriver driver(m_stage, m_table.secrets, situation.limitS > 0 ? situation.limitS : WaitMs / 1000);
        const QString expected = situation.status + QLatin1Char('\t') + situation.files;
        const QString seen = driver.Play(situation);
        if (seen != expected)
            QFAIL(qPrintable(QStringLiteral("\n  expected: %1\n  seen:     %2\n  steps:    %3\n  screen:   %4")
                                 .arg(expected, seen, driver.Taken().join(QStringLiteral("\n            ")),
                                      Picture(QStringLiteral("%1-%2.png").arg(TableName).arg(number)))));
    }

private:
    // The path of a picture of the screen as it is now, below the build folder, which a sandbox leaves behind.
    QString Picture(const QString& name) const
    {
        const QString folder = QStringLiteral(BUILD_DIR "/failures");
        const bool taken = m_stage.desktop && QDir().mkpath(folder)
            && QProcess::execute(QStringLiteral("scrot"), {QStringLiteral("--overwrite"), folder + u'/' + name}) == 0;
        return taken ? folder + u'/' + name : QStringLiteral("none");
    }

    SituationTable m_table{TableName};
    Stage m_stage{m_table};
};

QTEST_GUILESS_MAIN(Situations)
#include "e2e_situations.moc"
