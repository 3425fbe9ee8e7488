// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace Zel {
class ListView;
}

namespace ZelWebServiceControls {

/// Lets the last column of a list take the room that the others leave, until a person gives it a
/// width.
class ColumnFill : public QObject
{
public:
    /// @param leastTwips what the column has at least, whatever room there is
    ColumnFill(Zel::ListView &list, double leastTwips);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void columnResized(int column);
    void fill();

    Zel::ListView &m_list;
    const double m_least;
    bool m_isTaken = false;
};

} // namespace ZelWebServiceControls
