// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPixmap>
#include <QRect>

class QPainter;

namespace ZelWebControls {

/// Paints a picture in the middle of a place, in its own size or, where that is too large, smaller,
/// in its proportions.
void paintPicture(QPainter *painter, const QRect &place, const QPixmap &picture, qreal opacity);

/// Paints the place of a picture that is on its way: quiet, on light and on dark ground.
void paintPlace(QPainter *painter, const QRect &place);

/// Paints the place of a picture that will not come, for who has no picture to show instead.
void paintBrokenPlace(QPainter *painter, const QRect &place);

} // namespace ZelWebControls
