// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "platform/widgets/listcolumn.h"
#include "platform/widgets/listlinestate.h"
#include "platform/widgets/listorder.h"
#include "platform/widgets/listroles.h"
#include "platform/widgets/listrowprovider.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <memory>

namespace Zel {

/// The item model behind a ListView: the provider's records, what code has set over them, the
/// columns, and the order in which the records are shown.
///
/// Functions here take record numbers; only model indexes speak of positions. A provider that
/// throws while a view asks gives an empty cell; called by code, its error reaches the caller.
class ZEL_EXPORT ListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit ListModel(QObject *parent = nullptr);
    ~ListModel() override;

    // Records
    void setProvider(std::shared_ptr<const ListRowProvider> provider);
    /// Takes in records the provider has got at its end; needs an order without sort and filter.
    void appendRows();

    const ListRowProvider *provider() const { return m_provider.get(); }

    qsizetype count() const { return m_order.total(); }

    bool contains(qsizetype row) const { return row >= 0 && row < count(); }

    QString text(qsizetype row, int column) const;
    QVariant tag(qsizetype row) const;
    int smallIcon(qsizetype row) const;
    int largeIcon(qsizetype row) const;
    bool isChecked(qsizetype row) const;
    bool isGhosted(qsizetype row) const;
    /// Invalid for the ordinary colour.
    QColor colour(qsizetype row, int column) const;
    QVariant cellTag(qsizetype row, int column) const;

    void setText(qsizetype row, int column, const QString &text);
    void setSmallIcon(qsizetype row, int index);
    void setLargeIcon(qsizetype row, int index);
    void setChecked(qsizetype row, bool checked);
    void setGhosted(qsizetype row, bool ghosted);
    void setLineColour(qsizetype row, const QColor &colour);
    void setCellColour(qsizetype row, int column, const QColor &colour);
    void setCellTag(qsizetype row, int column, const QVariant &tag);
    /// The record has changed: its cells are asked for again.
    void updateRow(qsizetype row);

    // Columns
    void addColumn(const ListColumn &column);
    void clearColumns();
    void setColumn(int column, const ListColumn &value);

    const ListColumn &column(int column) const { return m_columns[static_cast<size_t>(column)]; }

    bool hasColumn(int column) const { return column >= 0 && column < columnCount(); }

    // Looks
    void setSmallImages(const QList<QIcon> &images);
    void setLargeImages(const QList<QIcon> &images);

    bool hasSmallImages() const { return !m_smallImages.isEmpty(); }

    const QList<QIcon> &largeImages() const { return m_largeImages; }

    QIcon largeImage(qsizetype row) const;
    void setCheckBoxes(bool shown);

    bool checkBoxes() const { return m_checkBoxes; }

    // Order
    const ListOrder &order() const { return m_order; }

    /// See ListOrder::setSorted. Selections and current lines follow their records.
    void setSorted(ListOrder::Rows rows);
    /// See ListOrder::setFilter. Resets the model.
    void setFilter(const ListOrder::Filter &filter);

    /// Whether the lines are just being put in another order, with neither more nor fewer of them:
    /// a view whose layout does not depend on the contents can keep it.
    bool isReordering() const { return m_reordering; }

    bool hasSetTexts(int column) const { return m_state.hasTexts(column); }

    qsizetype rowOf(const QModelIndex &index) const { return m_order.rowAt(index.row()); }

    /// Invalid when the record is not shown.
    QModelIndex indexOf(qsizetype row, int column = 0) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QModelIndex index(int position, int column, const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// Toggles a check box on behalf of a person.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

signals:
    /// A person has checked or unchecked a line.
    void checkChanged(qsizetype row, bool checked);

private:
    QVariant cellData(qsizetype row, int column, int role) const;
    QVariant lineData(qsizetype row, int role) const;
    void changed(qsizetype row);

    std::shared_ptr<const ListRowProvider> m_provider;
    ListLineState m_state;
    ListOrder m_order;
    std::vector<ListColumn> m_columns;
    QList<QIcon> m_smallImages;
    QList<QIcon> m_largeImages;
    bool m_checkBoxes = false;
    bool m_reordering = false;
};

} // namespace Zel
