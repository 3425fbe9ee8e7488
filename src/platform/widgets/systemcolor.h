// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QColor>
#include <QPalette>

class QWidget;

namespace Zel {

/// A colour as hosts store it, 32 bits: 0x00BBGGRR is a plain colour; 0x80000000 plus an index
/// names a system colour, which follows the palette.
using ColorValue = quint32;

/// The face colour of dialogs and buttons, the default background of every control.
constexpr ColorValue ButtonFace = 0x8000000F;

constexpr bool isSystemColor(ColorValue value)
{
    return (value & 0x80000000u) != 0;
}

/// The colour a value stands for in a palette, of its active group. Index 15, the button face, is
/// the palette's window colour, so that a control blends into the form around it. Unknown indexes
/// count as button face.
ZEL_EXPORT QColor colorFromValue(ColorValue value, const QPalette &palette);

/// The plain value of a colour; its alpha is dropped.
ZEL_EXPORT ColorValue valueFromColor(const QColor &color);

/// Paints the background of `widget` in a colour. One that the inherited text colour could not be
/// read on (contrast below 4.5 : 1, WCAG 2.1, 1.4.3) takes black or white text along. Call again
/// after a palette change, for plain colours too: the text colour may have changed.
ZEL_EXPORT void applyBackground(QWidget *widget, ColorValue value);

/// The contrast of two colours, 1 to 21 (WCAG 2.1, relative luminance).
ZEL_EXPORT double contrastRatio(const QColor &a, const QColor &b);

} // namespace Zel
