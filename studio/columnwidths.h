// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>

namespace Zel {
class ListView;
}

namespace Studio {

/// Gives the shown columns of a list the widths a person left them with (twips, 0 for none);
/// without any, date columns become wide enough for their texts and the first two share what is
/// left.
void fitColumns(Zel::ListView &list, const QList<double> &remembered,
                const QList<int> &dateColumns);

/// The columns a list itself calls dates, by their tag.
QList<int> dateColumns(const Zel::ListView &list);

/// The present widths; a hidden column keeps what was remembered for it.
QList<double> columnWidths(const Zel::ListView &list, const QList<double> &remembered);

} // namespace Studio
