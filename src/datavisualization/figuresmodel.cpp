// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/figuresmodel.h"

#include "datavisualization/graphlook.h"

#include <limits>

namespace ZelDataVisualization {

namespace {

QVariant alignmentOf(int column)
{
    const Qt::Alignment across = column == Figures::Label  ? Qt::AlignLeft
                                 : column == Figures::Mark ? Qt::AlignHCenter
                                                           : Qt::AlignRight;
    return QVariant::fromValue(across | Qt::AlignVCenter);
}

} // namespace

FiguresModel::FiguresModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void FiguresModel::setFigures(const FiguresPtr &figures)
{
    beginResetModel();
    m_figures = figures;
    m_headers = figures->headers();
    endResetModel();
}

int FiguresModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid() || !m_figures)
        return 0;
    return static_cast<int>(
        std::min<qsizetype>(m_figures->count(), std::numeric_limits<int>::max()));
}

int FiguresModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_headers.size());
}

QVariant FiguresModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return m_figures->text(index.row(), index.column());
    case Qt::ToolTipRole:
        // Never as markup, whatever an author wrote.
        return QStringLiteral("<p>%1</p>").arg(m_figures->spoken(index.row()).toHtmlEscaped());
    case Qt::TextAlignmentRole:
        return alignmentOf(index.column());
    case Qt::DecorationRole:
        if (index.column() == Figures::Label && !m_figures->isShare())
            return chartColor(m_figures->color(index.row()));
        return {};
    default:
        return {};
    }
}

QVariant FiguresModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_headers.size())
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role == Qt::DisplayRole)
        return m_headers.at(section);
    if (role == Qt::TextAlignmentRole)
        return alignmentOf(section);
    return {};
}

} // namespace ZelDataVisualization
