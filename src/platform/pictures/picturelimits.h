// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace Zel {

/// How much a picture may ask for. Everything is checked before anything is decoded, from what the
/// file says about itself.
struct PictureLimits
{
    /// Bytes of the file, also of a compressed drawing once it is unpacked.
    qint64 bytes = qint64(64) * 1024 * 1024;
    /// Pixels of a picture made of pixels.
    qint64 pixels = 100'000'000;
    /// Pixels along one edge.
    int edge = 16384;
    /// Pictures in one file: steps of an animation, sizes of an icon. Only one is ever decoded.
    int frames = 4096;
    /// Pixels along the longer edge of a drawing (SVG, metafiles) for which nobody asked for a size
    /// and which names a larger one itself.
    int canvas = 4096;
};

} // namespace Zel
