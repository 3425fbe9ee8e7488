// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QColor>
#include <QFont>
#include <QPalette>

namespace ZelDataVisualization {

/// One of the chart's ten colours; they go round.
ZEL_EXPORT QColor chartColor(int index);

/// The colours and the font a graph is drawn with.
struct GraphLook
{
    /// As a widget of this palette looks.
    static GraphLook onScreen(const QPalette &palette, const QFont &font);
    /// Black on white, for pictures that leave the screen.
    static GraphLook onPaper(const QFont &font);

    QColor ground;
    QColor text;
    QColor grid;
    QColor current; ///< of the frame around the current bar
    QFont font;
};

} // namespace ZelDataVisualization
