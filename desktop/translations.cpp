// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

void InstallTranslation(QCoreApplication& application)
{
    const QLocale locale = QLocale::system();
    if (locale.language() == QLocale::English || locale.language() == QLocale::C)
        return;
    auto* translator = new QTranslator(&application);
    if (translator->load(locale, QStringLiteral("qorm-login"), QStringLiteral("_"), QStringLiteral(":/translations")))
        QCoreApplication::installTranslator(translator);
}
