// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QColor>
#include <QDateTime>
#include <QString>
#include <QVariant>

#include <limits>
#include <span>

namespace Zel {

/// The records behind a ListView, by record number 0 to `rowCount() - 1`.
///
/// The list asks for a text only when its line is seen, searched, filtered or sorted, and keeps
/// none, so a provider makes texts from its records on the fly. The records must stay as they are
/// while a list shows them; after a change tell the list (`ListView::updateRow`, `rowsAppended`,
/// `setRows`).
class ZEL_EXPORT ListRowProvider
{
public:
    /// The sort value of a cell whose text has no sort key: before every other in ascending order.
    static constexpr qint64 NoSortValue = std::numeric_limits<qint64>::min();

    virtual ~ListRowProvider();

    virtual qsizetype rowCount() const = 0;
    /// The text of a cell; column 0 is the line's own text, the others are its sub-items.
    virtual QString text(qsizetype row, int column) const = 0;

    /// The line's record.
    virtual QVariant tag(qsizetype row) const;
    /// 1-based index into the list's small images, 0 for none.
    virtual int smallIcon(qsizetype row) const;
    /// 1-based index into the list's large images, 0 for none.
    virtual int largeIcon(qsizetype row) const;
    virtual bool isChecked(qsizetype row) const;
    virtual bool isGhosted(qsizetype row) const;
    /// The text colour of a cell; invalid for the ordinary one.
    virtual QColor colour(qsizetype row, int column) const;

    /// Writes one number per record, `out.size() == rowCount()`, whose order is that of the cells'
    /// sort keys (`NoSortValue` for an empty one), and answers true; or answers false when the
    /// column has no such numbers and its texts have to be sorted. It spares a "DATE" or "NUMBER"
    /// column the making of a text per line, and gives any column a sort by value where the host
    /// asks for it (`ListView::setSortByValue`).
    virtual bool sortValues(int column, std::span<qint64> out) const;

protected:
    ListRowProvider() = default;

    /// The sort value of a cell that shows a date as the general date text: it orders as the text
    /// does once it is read back, by whole seconds of the local clock, an hour that the clocks skip
    /// in spring included, and like no date where the text reads as none.
    static qint64 sortValueOf(const QDateTime &moment);

private:
    Q_DISABLE_COPY_MOVE(ListRowProvider)
};

} // namespace Zel
