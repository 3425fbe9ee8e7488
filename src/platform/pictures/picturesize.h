// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/picturelimits.h"

#include <QSize>
#include <QSizeF>

namespace Zel {

/// The largest size of the same proportions that fits into `room`, at least one pixel each way.
QSize fittedSize(const QSizeF &size, const QSize &room);

/// Whether a picture made of pixels may have this size.
bool isWithin(const QSize &size, const PictureLimits &limits);

/// Whether a drawing may say that it is that large (pixels): anything beyond a poster of 26 metres
/// is a mistake or malice.
bool isPlausible(const QSizeF &size);

/// The pixels in which a drawing of the given size is drawn: fitted into the target, else its own
/// size within the limits.
QSize canvasSize(const QSizeF &size, const QSize &target, const PictureLimits &limits);

} // namespace Zel
