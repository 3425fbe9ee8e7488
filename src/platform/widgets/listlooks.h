// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QColor>
#include <QPalette>

class QPainter;
class QRect;
class QStyleOptionViewItem;
class QWidget;

/// How lists and trees look: what they share, and all that depends on the palette.
namespace Zel::ListLooks {

/// From the edge of a cell to its text. Device-independent pixels.
int textMargin(const QWidget *widget);
/// The height of a line with an icon and a check box of these heights, 0 for none.
int lineHeight(const QStyleOptionViewItem &option, int iconHeight, int boxHeight);

bool isDark(const QPalette &palette);
QColor blend(const QColor &over, const QColor &under, double share);
/// Muted, and at least 4.5 : 1 against the ground in light and dark palettes.
QColor ghostText(const QPalette &palette);

/// Makes the selection of a view without the focus paler where the palette does not do so itself.
ZEL_EXPORT void muteInactiveSelection(QPalette &palette);
/// Gives check boxes an outline that can be seen on a dark ground.
void outlineCheckBoxes(QPalette &palette);

/// Frames the current line of a view with the focus. A plain line: what styles paint instead may
/// tint the pictures below it.
void paintFocusFrame(QPainter *painter, const QRect &rect, const QStyleOptionViewItem &option);

} // namespace Zel::ListLooks
