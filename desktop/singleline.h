// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

// Drops the line breaks of what is pasted into a line edit: nobody could type or see them again. Filters the events of
// the application.
class SingleLine : public QObject {
public:
    explicit SingleLine(QObject* application);

    bool eventFilter(QObject* object, QEvent* event) override;
};
