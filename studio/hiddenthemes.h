// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "themes/themecompatibility.h"

#include <QFrame>

class QTreeWidget;

namespace Studio {

/// Why a theme cannot be used here, as one plain sentence. Texts from the theme are shortened.
QString whyHidden(const ZelWebServiceControls::ThemeCompatibility &why);

/// The line that says how many themes are not shown; empty for none.
QString hiddenSummary(qsizetype count);

/// The list of themes that are not shown and why each; closes on Esc and on a click elsewhere.
class HiddenThemesPopup : public QFrame
{
    Q_OBJECT

public:
    explicit HiddenThemesPopup(QWidget *parent);

    /// Shows the list over the lower part of `anchor`, as wide as it.
    void open(const QList<ZelWebServiceControls::HiddenTheme> &themes, const QWidget &anchor);

private:
    QTreeWidget *m_list;
};

} // namespace Studio
