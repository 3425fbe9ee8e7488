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

/// The exact twips a widget was placed at; derived from its pixels when something else, a Qt layout
/// for instance, placed it last.
ZEL_EXPORT TwipsRect twipsGeometry(const QWidget *widget);

/// Places a widget. Each edge is rounded to pixels once, by the widget's logical DPI, so that
/// neighbours neither gap nor overlap at fractional scales; the twips are kept beside the pixels.
ZEL_EXPORT void setTwipsGeometry(QWidget *widget, const TwipsRect &rect);

ZEL_EXPORT void setTwipsTop(QWidget *widget, double top);

} // namespace Zel
