// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/picture.h"
#include "platform/pictures/picturelimits.h"

namespace Zel {

/// Pictures made of pixels, by Qt's readers, once their structure has been looked through.
Picture loadRaster(const QByteArray &bytes, const PictureLimits &limits, const QSize &target);
PictureInfo probeRaster(const QByteArray &bytes, const PictureLimits &limits);

} // namespace Zel
