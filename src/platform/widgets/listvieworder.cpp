// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listreportview.h"
#include "platform/widgets/listsorting.h"
#include "platform/widgets/listview.h"

#include <QScopedValueRollback>

#include <algorithm>

// Sorting and filtering of a ListView.

namespace Zel {

namespace {

QString textOrNothing(const ListModel &model, qsizetype row, int column)
{
    try {
        return model.text(row, column);
    } catch (const std::exception &) {
        // One bad cell must not stop the sort.
        return {};
    }
}

QString keyOrNothing(const ListSortKeyMaker &maker, const QString &text)
{
    try {
        return maker(text);
    } catch (const std::exception &) {
        return {};
    }
}

} // namespace

void ListView::setSortKey(int column)
{
    m_sortKey = column;
    if (m_sorted)
        sort();
}

void ListView::setSortOrder(Qt::SortOrder order)
{
    m_sortOrder = order;
    if (m_sorted)
        sort();
}

void ListView::setSorted(bool sorted)
{
    if (!sorted && !m_sorted)
        return;
    m_sorted = sorted;
    sort();
}

void ListView::sortBy(int column, Qt::SortOrder order)
{
    m_sortKey = column;
    m_sortOrder = order;
    m_sorted = true;
    sort();
}

void ListView::setSortByValue(bool byValue)
{
    if (m_sortsByValue == byValue)
        return;
    m_sortsByValue = byValue;
    if (m_sorted)
        sort();
}

void ListView::setSortKeyMaker(const QString &columnTag, const ListSortKeyMaker &maker)
{
    if (maker)
        m_sortKeyMakers.insert(columnTag, maker);
    else
        m_sortKeyMakers.remove(columnTag);
    if (m_sorted && m_model->hasColumn(m_sortKey) && columnTag == this->columnTag(m_sortKey))
        sort();
}

bool ListView::haveSortValues(std::span<qint64> values) const
{
    // The provider knows nothing of texts that code has set over its own. One that has got records
    // it has not told of would write them past the end.
    if (m_model->hasSetTexts(m_sortKey) || rows()->rowCount() != count())
        return false;
    try {
        return rows()->sortValues(m_sortKey, values);
    } catch (const std::exception &) {
        return false;
    }
}

ListOrder::Rows ListView::sortedRows() const
{
    if (!m_sorted || !m_model->hasColumn(m_sortKey) || count() == 0)
        return {};
    const auto size = static_cast<size_t>(count());
    const ListSortKeyMaker maker = m_sortKeyMakers.value(columnTag(m_sortKey));
    if (maker || m_sortsByValue) {
        std::vector<qint64> values(size);
        if (haveSortValues(values))
            return ListSorting::byValue(values, m_sortOrder);
    }
    std::vector<QString> texts(size);
    for (size_t i = 0; i < size; ++i) {
        texts[i] = textOrNothing(*m_model, static_cast<qsizetype>(i), m_sortKey);
        if (maker)
            texts[i] = keyOrNothing(maker, texts[i]);
    }
    return maker ? ListSorting::byKey(texts, m_sortOrder) : ListSorting::byText(texts, m_sortOrder);
}

void ListView::sort()
{
    ListOrder::Rows rows = sortedRows();
    const QModelIndex current = m_selection->currentIndex();
    const bool currentWasSeen =
        current.isValid() && viewport()->rect().intersects(view()->visualRect(current));
    m_model->setSorted(std::move(rows));
    showHeaderArrow();
    if (currentWasSeen)
        view()->scrollTo(m_selection->currentIndex());
}

void ListView::setRowFilter(const std::function<bool(qsizetype)> &filter)
{
    const std::function<bool(qsizetype)> former = std::exchange(m_filter, filter);
    try {
        applyFilter();
    } catch (...) {
        m_filter = former;
        throw;
    }
}

void ListView::applyFilter()
{
    keepSelection([this] { m_model->setFilter(m_filter); });
}

QItemSelection ListView::linesSelection(const QList<qsizetype> &rows) const
{
    std::vector<int> positions;
    for (qsizetype row : rows) {
        const qsizetype position = positionOf(row);
        if (position >= 0)
            positions.push_back(static_cast<int>(position));
    }
    std::sort(positions.begin(), positions.end());
    // Neighbours make one range: views ask every range for every line they paint.
    QItemSelection selection;
    for (size_t first = 0; first < positions.size();) {
        size_t last = first;
        while (last + 1 < positions.size() && positions[last + 1] == positions[last] + 1)
            ++last;
        selection.append(QItemSelectionRange(m_model->index(positions[first], 0),
                                             m_model->index(positions[last], columnCount() - 1)));
        first = last + 1;
    }
    return selection;
}

void ListView::keepSelection(const std::function<void()> &change)
{
    const QList<qsizetype> selected = selectedRows();
    const QModelIndex current = m_selection->currentIndex();
    const qsizetype currentRow = current.isValid() ? m_model->rowOf(current) : -1;
    const auto restore = [&] {
        m_selection->select(linesSelection(selected), QItemSelectionModel::ClearAndSelect);
        m_selection->setCurrentIndex(m_model->indexOf(currentRow), QItemSelectionModel::NoUpdate);
    };
    {
        const QScopedValueRollback moving(m_movingSelection, true);
        try {
            change();
        } catch (...) {
            restore();
            throw;
        }
        restore();
    }
    if (selectedCount() != selected.size())
        emit selectionChanged();
}

} // namespace Zel
