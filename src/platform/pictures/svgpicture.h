// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/picture.h"
#include "platform/pictures/picturelimits.h"

namespace Zel {

/// SVG drawings, by Qt's renderer, from a copy that holds nothing but what is drawn (svgcleaner.h).
Picture loadSvg(const QByteArray &bytes, const PictureLimits &limits, const QSize &target);
PictureInfo probeSvg(const QByteArray &bytes, const PictureLimits &limits);

} // namespace Zel
