// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

class QString;
class QWidget;

/// Lengths in twips, the unit of all sizes and positions a host sees, and the pixels drawn from
/// them.
///
/// Pixels here are Qt's device-independent ones. An edge is rounded once, where it is drawn: two
/// rectangles that share an edge in twips share it on every screen.
namespace Zel {

constexpr int TwipsPerInch = 1440;

/// The logical dots per inch of the screen a widget is on; of the first screen for a null widget,
/// and 96 when there is no screen at all.
ZEL_EXPORT int logicalDpi(const QWidget *widget);

/// The pixel an edge at `twips` is drawn at, rounded half away from zero.
ZEL_EXPORT int pixelsFromTwips(double twips, int dpi);
ZEL_EXPORT double twipsFromPixels(double pixels, int dpi);

/// The advance width of one line of text in the widget's font. Twips.
ZEL_EXPORT double textWidthTwips(const QString &text, const QWidget *widget);
/// The height of one line of text in the widget's font. Twips.
ZEL_EXPORT double textHeightTwips(const QWidget *widget);

} // namespace Zel
