// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>

// Keeps passwords from the accessibility bus. Of a line edit whose property "secret" is true, readers there learn the
// name, the length and the place of the cursor; every character is an asterisk. Qt itself hides the text of a password
// field, but neither what is typed into it nor a password that a view button shows. No key goes to the bus at all.
class MaskingApplication : public QApplication {
public:
    MaskingApplication(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;
};
