// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listmodel.h"

namespace Zel {

namespace {

QIcon imageAt(const QList<QIcon> &images, int index)
{
    return images.value(index - 1);
}

} // namespace

ListModel::ListModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

ListModel::~ListModel() = default;

void ListModel::setProvider(std::shared_ptr<const ListRowProvider> provider)
{
    const qsizetype rows = provider ? provider->rowCount() : 0;
    beginResetModel();
    m_provider = std::move(provider);
    m_state.clear();
    m_order.reset(rows);
    endResetModel();
}

void ListModel::appendRows()
{
    Q_ASSERT(!m_order.isSorted() && !m_order.isFiltered());
    const qsizetype now = m_provider ? m_provider->rowCount() : 0;
    if (now <= count())
        return;
    beginInsertRows({}, static_cast<int>(count()), static_cast<int>(now) - 1);
    m_order.reset(now);
    endInsertRows();
}

void ListModel::addColumn(const ListColumn &column)
{
    beginInsertColumns({}, columnCount(), columnCount());
    m_columns.push_back(column);
    endInsertColumns();
}

void ListModel::clearColumns()
{
    beginResetModel();
    m_columns.clear();
    endResetModel();
}

void ListModel::setColumn(int column, const ListColumn &value)
{
    m_columns[static_cast<size_t>(column)] = value;
    emit headerDataChanged(Qt::Horizontal, column, column);
}

void ListModel::setSmallImages(const QList<QIcon> &images)
{
    emit layoutAboutToBeChanged();
    m_smallImages = images;
    emit layoutChanged();
}

void ListModel::setLargeImages(const QList<QIcon> &images)
{
    emit layoutAboutToBeChanged();
    m_largeImages = images;
    emit layoutChanged();
}

QIcon ListModel::largeImage(qsizetype row) const
{
    return imageAt(m_largeImages, largeIcon(row));
}

void ListModel::setCheckBoxes(bool shown)
{
    if (m_checkBoxes == shown)
        return;
    emit layoutAboutToBeChanged();
    m_checkBoxes = shown;
    emit layoutChanged();
}

void ListModel::setSorted(ListOrder::Rows rows)
{
    m_reordering = true;
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<qsizetype> records;
    records.reserve(static_cast<size_t>(before.size()));
    for (const QModelIndex &index : before)
        records.push_back(rowOf(index));
    m_order.setSorted(std::move(rows));
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i)
        after.append(indexOf(records[static_cast<size_t>(i)], before.at(i).column()));
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
    m_reordering = false;
}

void ListModel::setFilter(const ListOrder::Filter &filter)
{
    ListOrder order = m_order;
    order.setFilter(filter);
    beginResetModel();
    m_order = std::move(order);
    endResetModel();
}

QModelIndex ListModel::indexOf(qsizetype row, int column) const
{
    const qsizetype position = m_order.positionOf(row);
    return position < 0 ? QModelIndex() : index(static_cast<int>(position), column);
}

int ListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_order.count());
}

int ListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QModelIndex ListModel::index(int position, int column, const QModelIndex &parent) const
{
    if (parent.isValid() || position < 0 || position >= m_order.count() || !hasColumn(column))
        return {};
    return createIndex(position, column);
}

QVariant ListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    try {
        const qsizetype row = rowOf(index);
        const QVariant value = cellData(row, index.column(), role);
        return value.isValid() ? value : lineData(row, role);
    } catch (const std::exception &) {
        // An error must not cross the event loop the views are painted from.
        return {};
    }
}

QVariant ListModel::cellData(qsizetype row, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return text(row, column);
    case Qt::TextAlignmentRole:
        return static_cast<int>(this->column(column).alignment | Qt::AlignVCenter);
    case Qt::ForegroundRole: {
        const QColor set = colour(row, column);
        return set.isValid() ? QVariant(set) : QVariant();
    }
    case Qt::DecorationRole:
        return column == 0 && hasSmallImages() ? QVariant(imageAt(m_smallImages, smallIcon(row)))
                                               : QVariant();
    case Qt::CheckStateRole:
        return column == 0 && m_checkBoxes
                   ? QVariant(static_cast<int>(isChecked(row) ? Qt::Checked : Qt::Unchecked))
                   : QVariant();
    case CellTagRole:
        return cellTag(row, column);
    default:
        return {};
    }
}

QVariant ListModel::lineData(qsizetype row, int role) const
{
    switch (role) {
    case TagRole:
        return tag(row);
    case CheckedRole:
        return isChecked(row);
    case GhostedRole:
        return isGhosted(row);
    case SmallIconRole:
        return smallIcon(row);
    case LargeIconRole:
        return largeIcon(row);
    case RecordIndexRole:
        return QVariant::fromValue(row);
    default:
        return {};
    }
}

bool ListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || !m_checkBoxes || !index.isValid() || index.column() != 0)
        return false;
    const qsizetype row = rowOf(index);
    const bool checked = value.toInt() == Qt::Checked;
    if (checked == isChecked(row))
        return true;
    setChecked(row, checked);
    emit checkChanged(row, checked);
    return true;
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || !hasColumn(section))
        return {};
    const ListColumn &header = column(section);
    switch (role) {
    case Qt::DisplayRole:
        return header.caption;
    case Qt::TextAlignmentRole:
        return static_cast<int>(header.alignment | Qt::AlignVCenter);
    case ColumnTagRole:
        return header.tag;
    case ColumnWidthRole:
        return header.widthTwips;
    default:
        return {};
    }
}

Qt::ItemFlags ListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags line = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return m_checkBoxes && index.column() == 0 ? line | Qt::ItemIsUserCheckable : line;
}

} // namespace Zel
