// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

// The platform's style without icons on the buttons of boxes. The style sheet shows none, and looking through the
// machine's icon themes for them takes a third of the local window's time to the first frame. Disabled words have no
// light shadow.
class PlainStyle : public QProxyStyle {
    Q_OBJECT
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
};
