// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listiconview.h"
#include "platform/widgets/listreportview.h"
#include "platform/widgets/listview.h"

#include <QScrollBar>

// What a ListView says about its lines, and what code sets on them.

namespace Zel {

void ListView::setRows(std::shared_ptr<const ListRowProvider> rows)
{
    const bool hadSelection = m_selection->hasSelection();
    m_model->setProvider(std::move(rows));
    m_report->verticalScrollBar()->setValue(0);
    if (m_icon)
        m_icon->verticalScrollBar()->setValue(0);
    if (m_sorted)
        sort();
    if (m_filter)
        applyFilter();
    if (hadSelection)
        emit selectionChanged();
}

void ListView::rowsAppended()
{
    if (!m_sorted && !m_filter) {
        m_model->appendRows();
        return;
    }
    keepSelection([this] {
        m_model->setSorted({});
        m_model->setFilter({});
        m_model->appendRows();
        m_model->setSorted(sortedRows());
        m_model->setFilter(m_filter);
    });
}

void ListView::updateRow(qsizetype row)
{
    m_model->updateRow(row);
}

void ListView::clear()
{
    setRows(nullptr);
}

const ListRowProvider *ListView::rows() const
{
    return m_model->provider();
}

qsizetype ListView::count() const
{
    return m_model->count();
}

QString ListView::text(qsizetype row, int column) const
{
    return m_model->contains(row) ? m_model->text(row, column) : QString();
}

void ListView::setText(qsizetype row, int column, const QString &text)
{
    if (m_model->contains(row))
        m_model->setText(row, column, text);
}

QVariant ListView::tag(qsizetype row) const
{
    return m_model->contains(row) ? m_model->tag(row) : QVariant();
}

QVariant ListView::cellTag(qsizetype row, int column) const
{
    return m_model->contains(row) ? m_model->cellTag(row, column) : QVariant();
}

void ListView::setCellTag(qsizetype row, int column, const QVariant &tag)
{
    if (m_model->contains(row))
        m_model->setCellTag(row, column, tag);
}

int ListView::smallIcon(qsizetype row) const
{
    return m_model->contains(row) ? m_model->smallIcon(row) : 0;
}

void ListView::setSmallIcon(qsizetype row, int index)
{
    if (m_model->contains(row))
        m_model->setSmallIcon(row, index);
}

int ListView::largeIcon(qsizetype row) const
{
    return m_model->contains(row) ? m_model->largeIcon(row) : 0;
}

void ListView::setLargeIcon(qsizetype row, int index)
{
    if (m_model->contains(row))
        m_model->setLargeIcon(row, index);
}

void ListView::setSmallImages(const QList<QIcon> &images)
{
    m_model->setSmallImages(images);
}

void ListView::setLargeImages(const QList<QIcon> &images)
{
    m_model->setLargeImages(images);
}

void ListView::setLargeIconSize(const QSize &size)
{
    m_largeIconSize = size;
    if (m_icon)
        m_icon->setLargeIconSize(size);
}

bool ListView::checkBoxes() const
{
    return m_model->checkBoxes();
}

void ListView::setCheckBoxes(bool shown)
{
    m_model->setCheckBoxes(shown);
}

bool ListView::isChecked(qsizetype row) const
{
    return m_model->contains(row) && m_model->isChecked(row);
}

void ListView::setChecked(qsizetype row, bool checked)
{
    if (m_model->contains(row))
        m_model->setChecked(row, checked);
}

bool ListView::isGhosted(qsizetype row) const
{
    return m_model->contains(row) && m_model->isGhosted(row);
}

void ListView::setGhosted(qsizetype row, bool ghosted)
{
    if (m_model->contains(row))
        m_model->setGhosted(row, ghosted);
}

QColor ListView::colour(qsizetype row, int column) const
{
    return m_model->contains(row) ? m_model->colour(row, column) : QColor();
}

void ListView::setLineColour(qsizetype row, const QColor &colour)
{
    if (m_model->contains(row))
        m_model->setLineColour(row, colour);
}

void ListView::setCellColour(qsizetype row, int column, const QColor &colour)
{
    if (m_model->contains(row))
        m_model->setCellColour(row, column, colour);
}

} // namespace Zel
