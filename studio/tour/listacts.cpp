// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/listacts.h"

#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"
#include "studio/tour/touractor.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QTreeView>

namespace Studio {

namespace {

QPoint centerOf(const Zel::ListView &list, qsizetype position)
{
    const QModelIndex index = list.view()->model()->index(static_cast<int>(position), 0);
    return list.view()->visualRect(index).center();
}

QString keyBelow(const Zel::TreeView &tree, const QStringList &keys, const QString &text)
{
    for (const QString &key : keys) {
        if (tree.text(key) == text)
            return key;
        if (const QString below = keyBelow(tree, tree.childKeys(key), text); !below.isEmpty())
            return below;
    }
    return {};
}

} // namespace

void clickHeader(TourActor &actor, Zel::ListView &list, int column)
{
    QHeaderView *header = qobject_cast<QTreeView *>(list.view())->header();
    const int x = header->sectionViewportPosition(column) + header->sectionSize(column) / 2;
    actor.clickAt(*header->viewport(), QPoint(x, header->height() / 2));
}

void clickLine(TourActor &actor, Zel::ListView &list, qsizetype position)
{
    actor.clickAt(*list.view()->viewport(), centerOf(list, position));
}

void clickLine(TourActor &actor, Zel::ListView &list, const QString &text)
{
    qsizetype position = 0;
    while (position < list.count() && list.text(list.rowAt(position)) != text)
        ++position;
    TourActor::expect(position < list.count(), QStringLiteral("a line \"%1\"").arg(text));
    list.ensureVisible(list.rowAt(position));
    clickLine(actor, list, position);
}

void clickNode(TourActor &actor, Zel::TreeView &tree, const QString &text)
{
    const QString key = keyBelow(tree, tree.topKeys(), text);
    actor.expect(!key.isEmpty(), QStringLiteral("a folder \"%1\"").arg(text));
    tree.ensureVisible(key);
    actor.clickAt(*tree.viewport(), tree.nodeRect(key).center());
}

void askForMenu(Zel::ListView &list, qsizetype position)
{
    QWidget *viewport = list.view()->viewport();
    const QPoint place = centerOf(list, position);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, viewport->mapToGlobal(place));
    QApplication::sendEvent(viewport, &event);
}

} // namespace Studio
