// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QHash>
#include <QString>
#include <QVariant>

#include <optional>

namespace Zel {

/// What code has set on single lines and cells of a list, over what the provider says. Only what
/// was set costs memory.
class ListLineState
{
public:
    struct Line
    {
        std::optional<int> smallIcon;
        std::optional<int> largeIcon;
        std::optional<bool> checked;
        std::optional<bool> ghosted;
        QColor colour;
    };

    struct Cell
    {
        std::optional<QString> text;
        QColor colour;
        QVariant tag;
    };

    /// Null when nothing was set on the line.
    const Line *line(qsizetype row) const { return find(m_lines, row); }

    Line &editLine(qsizetype row) { return m_lines[row]; }

    /// Null when nothing was set on the cell.
    const Cell *cell(qsizetype row, int column) const { return find(m_cells, {row, column}); }

    Cell &editCell(qsizetype row, int column) { return m_cells[{row, column}]; }

    void setText(qsizetype row, int column, const QString &text)
    {
        editCell(row, column).text = text;
        m_columnsWithTexts.insert(column, true);
    }

    /// Whether any text of the column was set, so that the provider does not know them all.
    bool hasTexts(int column) const { return m_columnsWithTexts.contains(column); }

    void clear() { *this = ListLineState(); }

private:
    template <typename Key, typename Value>
    static const Value *find(const QHash<Key, Value> &hash, const Key &key)
    {
        const auto found = hash.constFind(key);
        return found == hash.cend() ? nullptr : &*found;
    }

    QHash<qsizetype, Line> m_lines;
    QHash<std::pair<qsizetype, int>, Cell> m_cells;
    QHash<int, bool> m_columnsWithTexts;
};

} // namespace Zel
