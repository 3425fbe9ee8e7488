// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/figures.h"

#include <QAbstractTableModel>

namespace ZelDataVisualization {

/// The figures of the chart as a table, a line each.
class ZEL_EXPORT FiguresModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit FiguresModel(QObject *parent = nullptr);

    void setFigures(const FiguresPtr &figures);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    FiguresPtr m_figures;
    QStringList m_headers;
};

} // namespace ZelDataVisualization
