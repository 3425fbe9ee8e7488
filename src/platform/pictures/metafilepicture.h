// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/picture.h"
#include "platform/pictures/picturelimits.h"

namespace Zel {

/// Windows metafiles, WMF (with or without the placeable header) and EMF: recorded drawing calls,
/// played on white paper.
///
/// The structure of every record is checked before the first one is played. A file of EMF+ records
/// alone, without the plain ones most programs write beside them, is refused.
Picture loadMetafile(const QByteArray &bytes, const PictureLimits &limits, const QSize &target);
PictureInfo probeMetafile(const QByteArray &bytes, const PictureLimits &limits);

} // namespace Zel
