// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "tests/support/table.h"

#include "tests/support/testsupport.h"

#include <QTest>

namespace {

QString Value(QString cell)
{
    if (cell == QLatin1String("(null)"))
        return {};
    if (cell == QLatin1String("-"))
        return QStringLiteral("");
    return cell.replace(QStringLiteral(u"\u00b6"), QStringLiteral("\n"))
        .replace(QStringLiteral(u"\u21e5"), QStringLiteral("\t"));
}

} // namespace

void LoadTable(const char* file)
{
    const QString text
        = QString::fromUtf8(FileText(QStringLiteral(PROJECT_DIR "/tests/tables/") + QLatin1String(file)));
    const QString head = QStringLiteral("\n[%1]\t").arg(QLatin1String(QTest::currentTestFunction()));
    const QString section = text.section(head, 1).section(QStringLiteral("\n["), 0, 0);
    QStringList lines = section.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    static QByteArrayList names; // Qt keeps pointers to them
    for (const QString& column : lines.takeFirst().split(QLatin1Char('\t'))) {
        names += column.toUtf8();
        QTest::addColumn<QString>(names.last().constData());
    }
    for (const QString& line : lines) {
        QStringList cells = line.split(QLatin1Char('\t'));
        QTestData& row = QTest::newRow(qPrintable(cells.takeFirst()));
        for (const QString& cell : cells)
            row << Value(cell);
    }
}

QString Text(const char* column)
{
    return *static_cast<QString*>(QTest::qData(column, qMetaTypeId<QString>()));
}

bool Flag(const char* column)
{
    return Text(column) == QLatin1String("yes");
}
