// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT

// The floor for a Qt Widgets program: a dialog with two line edits and two
// buttons, nothing else. With RASTER, Qt is told that no window needs OpenGL.
#include <QApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

int main(int argc, char** argv)
{
#ifdef RASTER
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
#endif
    QApplication app(argc, argv);
    QDialog dialog;
    dialog.setWindowTitle("User Authentication");
    auto* user = new QLineEdit;
    auto* password = new QLineEdit;
    password->setEchoMode(QLineEdit::Password);
    auto* login = new QPushButton("Login");
    auto* cancel = new QPushButton("Cancel");
    login->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(login);
    buttons->addWidget(cancel);
    auto* column = new QVBoxLayout(&dialog);
    column->addWidget(new QLabel("Username:"));
    column->addWidget(user);
    column->addWidget(new QLabel("Password:"));
    column->addWidget(password);
    column->addLayout(buttons);
    QObject::connect(login, &QPushButton::clicked, &dialog, &QDialog::accept);
    QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    dialog.resize(333, 370);
    dialog.show();
    return app.exec();
}
