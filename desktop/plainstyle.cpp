// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "desktop/plainstyle.h"

int PlainStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returnData) const
{
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons || hint == SH_EtchDisabledText)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}
