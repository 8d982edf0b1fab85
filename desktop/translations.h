// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

class QCoreApplication;

// Makes `application` speak the language of the locale, when it is one of those embedded; English needs nothing.
void InstallTranslation(QCoreApplication& application);
