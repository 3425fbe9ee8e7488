// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QAbstractItemView>
#include <QPersistentModelIndex>

#include <functional>

namespace Zel {

/// The rules by which mouse and keyboard become clicks on the lines of a view, the same for lists
/// and trees. ListSurface feeds it the view's events.
///
/// - A press selects a line; when the left button is let go, wherever that is, the line counts as
///   clicked, so that what is selected and what was clicked never differ. A right button clicks
///   when it goes down, before a context menu shows.
/// - The second press of a double click on the same line is the double click and no click.
/// - A key that moves the current line clicks the line it moves to. While nothing is selected, an
///   arrow key selects the current line instead of leaving it.
/// - Enter on the selected current line is a double click.
/// - A press on empty ground clicks nothing.
///
/// Every signal is the last thing done in an event, so a slot may destroy the view.
class ZEL_EXPORT ListInput : public QObject
{
    Q_OBJECT

public:
    explicit ListInput(QAbstractItemView *view);

    /// Whether a plain press on empty ground clears the selection, as in a list; a tree keeps it.
    void setClearsOnGround(bool clears) { m_clearsOnGround = clears; }

    /// Asked first for every key; answers true when it has dealt with it.
    void setKeyHandler(std::function<bool(QKeyEvent *)> handler)
    {
        m_keyHandler = std::move(handler);
    }

    /// Shows the context menu of a line, or of the ground; answers whether there is one.
    using MenuHandler = std::function<bool(const QModelIndex &line, const QPoint &globalPosition)>;

    void setMenuHandler(MenuHandler handler) { m_menuHandler = std::move(handler); }

    /// Selects the current line; for keys that select it without moving.
    void selectInPlace();

    void beginPress(QMouseEvent *event);
    void endPress(QMouseEvent *event);
    /// Whether the move would drag the selection of a list of which one line is selected at most.
    bool refusesDrag(const QMouseEvent *event) const;
    /// Whether the button went down on empty ground, so that where it is let go must select
    /// nothing.
    bool refusesRelease() const;
    void endRelease(QMouseEvent *event);
    void beginDoubleClick(QMouseEvent *event);
    void endDoubleClick(QMouseEvent *event);
    /// Answers whether the key is done with.
    bool beginKey(QKeyEvent *event);
    void endKey(QKeyEvent *event);
    void contextMenu(QContextMenuEvent *event);

signals:
    void clicked(const QModelIndex &line);
    void doubleClicked(const QModelIndex &line);

private:
    QModelIndex lineAt(const QPoint &position) const;
    bool isOnCheckBox(const QPoint &position) const;
    bool selectsInPlace(const QKeyEvent *event) const;
    bool isSelected(const QModelIndex &line) const;

    QAbstractItemView *m_view;
    std::function<bool(QKeyEvent *)> m_keyHandler;
    MenuHandler m_menuHandler;
    QPersistentModelIndex m_pressed;
    QPersistentModelIndex m_currentBeforeKey;
    bool m_clearsOnGround = true;
    bool m_armed = false;
    bool m_pressedGround = false;
    bool m_doubleClicking = false;
    bool m_selectedInPlace = false;
};

} // namespace Zel
