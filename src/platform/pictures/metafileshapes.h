// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPainterPath>
#include <QPolygonF>

namespace Zel {

/// An arc of the ellipse in `box`, from the ray through `start` to the ray through `end`.
QPainterPath arcShape(const QRectF &box, const QPointF &start, const QPointF &end, bool clockwise);

/// Closes an arc by its chord, or to a slice when `center` is the ellipse's.
QPainterPath chordShape(const QRectF &box, const QPointF &start, const QPointF &end,
                        bool clockwise);
QPainterPath pieShape(const QRectF &box, const QPointF &start, const QPointF &end, bool clockwise);

QPainterPath polygonShape(const QPolygonF &points, bool closed);
QPainterPath ellipseShape(const QRectF &box);
QPainterPath rectangleShape(const QRectF &box);
/// @param corner width and height of the ellipse that rounds the corners
QPainterPath roundedShape(const QRectF &box, const QSizeF &corner);

} // namespace Zel
