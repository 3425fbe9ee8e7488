// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace Zel {

/// One column of a ListView.
struct ListColumn
{
    QString caption;
    /// As set, exact. 0 hides the column, which goes on to exist and to sort.
    double widthTwips = 0;
    /// The sort type: "DATE" and "NUMBER" columns order by sort keys, others by their texts.
    QString tag;
    Qt::Alignment alignment = Qt::AlignLeft;
};

} // namespace Zel
