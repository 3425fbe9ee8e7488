// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace Zel {
class ListView;
class TreeView;
} // namespace Zel

class QString;

namespace Studio {

class TourActor;

// What the scripted user does with lists and trees.

void clickHeader(TourActor &actor, Zel::ListView &list, int column);
/// @param position counted from the top
void clickLine(TourActor &actor, Zel::ListView &list, qsizetype position);
/// Clicks the line of that text; a failure when there is none.
void clickLine(TourActor &actor, Zel::ListView &list, const QString &text);
/// Clicks the node of that text; a failure when there is none.
void clickNode(TourActor &actor, Zel::TreeView &tree, const QString &text);
/// Asks for the context menu of a line.
void askForMenu(Zel::ListView &list, qsizetype position);

} // namespace Studio
