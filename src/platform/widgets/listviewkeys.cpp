// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listdelegate.h"
#include "platform/widgets/listiconview.h"
#include "platform/widgets/listinput.h"
#include "platform/widgets/listreportview.h"
#include "platform/widgets/listview.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>

// What the keyboard does in a ListView beyond moving and clicking.

namespace Zel {

namespace {

/// Keys that carry a character, which type-ahead would swallow, but mean something to the window.
bool isForOthers(const QKeyEvent *event)
{
    return event->key() == Qt::Key_Escape || event->key() == Qt::Key_Delete ||
           event->key() == Qt::Key_Backspace;
}

} // namespace

bool ListView::handleKey(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        copySelection();
        return true;
    }
    if (isForOthers(event)) {
        event->ignore();
        return true;
    }
    if (event->key() != Qt::Key_Space || event->modifiers() != Qt::NoModifier)
        return false;
    if (m_typeAhead.isActive())
        typeAhead(event->text());
    else if (checkBoxes())
        toggleChecks();
    else
        (view() == m_report ? m_report->input() : m_icon->input())->selectInPlace();
    return true;
}

void ListView::toggleChecks()
{
    const QModelIndex current = m_selection->currentIndex().siblingAtColumn(0);
    if (!current.isValid())
        return;
    const QVariant state =
        m_model->isChecked(m_model->rowOf(current)) ? Qt::Unchecked : Qt::Checked;
    if (!m_selection->isSelected(current)) {
        m_model->setData(current, state, Qt::CheckStateRole);
        return;
    }
    // A slot may replace the lines while they are toggled one by one.
    QList<QPersistentModelIndex> lines;
    for (qsizetype row : selectedRows())
        lines.append(m_model->indexOf(row));
    for (const QPersistentModelIndex &line : lines) {
        if (line.isValid())
            m_model->setData(line, state, Qt::CheckStateRole);
    }
}

void ListView::typeAhead(const QString &text)
{
    const QModelIndex current = m_selection->currentIndex();
    const qsizetype position = m_typeAhead.find(
        text, current.isValid() ? current.row() : -1, filteredCount(),
        [this](qsizetype at) { return m_model->index(static_cast<int>(at), 0).data().toString(); });
    if (position >= 0)
        m_selection->setCurrentIndex(m_model->index(static_cast<int>(position), 0),
                                     QItemSelectionModel::ClearAndSelect |
                                         QItemSelectionModel::Rows);
}

QString ListView::selectionAsText() const
{
    const QHeaderView *header = m_report->header();
    QStringList lines;
    for (qsizetype row : selectedRows()) {
        QStringList cells;
        for (int column = 0; column < columnCount(); ++column) {
            if (header->isSectionHidden(column))
                continue;
            QString cell = m_model->text(row, column);
            cell.replace(QLatin1String("\r\n"), QLatin1String(" "));
            for (QChar &c : cell) {
                if (c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r') ||
                    c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
                    c = QLatin1Char(' ');
            }
            cells.append(cell);
        }
        lines.append(cells.join(QLatin1Char('\t')));
    }
    return lines.join(QLatin1Char('\n'));
}

void ListView::copySelection() const
{
    const QString text = selectionAsText();
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

} // namespace Zel
