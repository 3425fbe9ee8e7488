// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

class QWidget;

namespace Zel {

/// A place and size inside the parent, in twips (1440 an inch).
struct TwipsRect
{
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;

    bool operator==(const TwipsRect &) const = default;
};

/// The exact twips a widget was placed at. A figure whose pixels are no longer the ones drawn from
/// it follows the pixels: a Qt layout placed the widget, or its minimum size did not let it be what
/// was asked for.
ZEL_EXPORT TwipsRect twipsGeometry(const QWidget *widget);

/// Places a widget. Each edge is rounded to pixels once, by the widget's logical DPI, so that
/// neighbours neither gap nor overlap at fractional scales; the twips are kept beside the pixels.
/// A size below nothing is nothing.
/// A widget that gets another size has its resize event before this returns, hidden or not.
ZEL_EXPORT void setTwipsGeometry(QWidget *widget, const TwipsRect &rect);

/// Moves a widget vertically; its size stays.
ZEL_EXPORT void setTwipsTop(QWidget *widget, double top);

} // namespace Zel
