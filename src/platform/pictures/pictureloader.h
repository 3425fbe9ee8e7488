// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "platform/pictures/picture.h"
#include "platform/pictures/picturelimits.h"

namespace Zel {

/// The one way in which pictures are read: BMP, JPEG, GIF, PNG, ICO, CUR, SVG, the Windows
/// metafiles WMF and EMF, and whatever plug-ins of Qt read beyond (WebP, TIFF with
/// qt6-image-formats-plugins).
///
/// The content alone decides what a file is, never its name. Limits apply before anything is
/// decoded; files that are cut off, damaged or made to hurt are refused with a sentence. Drawings
/// never fetch or open anything else, and texts in them are left out where the program has no
/// QGuiApplication. Metafiles are drawn on white paper, SVG on nothing.
///
/// Use it from any thread, as many at a time as you like; an object may be shared. It logs nothing
/// of its own and writes no file. Qt's readers may log what they find in a damaged file, in the
/// categories `qt.gui.imageio*` and `qt.svg`.
class ZEL_EXPORT PictureLoader
{
public:
    explicit PictureLoader(const PictureLimits &limits = PictureLimits());

    const PictureLimits &limits() const { return m_limits; }

    /// Decodes a picture, turned upright as its EXIF data says.
    ///
    /// @param target room for the picture in pixels; empty for the picture's own size. The picture
    /// keeps its proportions and fits into the room. One made of pixels is never enlarged; a
    /// drawing fills the room.
    Picture load(const QByteArray &bytes, const QSize &target = QSize()) const;
    /// The same for a file. Only regular files are read; nothing waits for a pipe or a device.
    Picture loadFile(const QString &path, const QSize &target = QSize()) const;

    /// What the picture says about itself; nothing is decoded, so a damaged picture may still pass.
    PictureInfo probe(const QByteArray &bytes) const;
    PictureInfo probeFile(const QString &path) const;

    /// Whether a file is a picture that can be decoded to its end, within the usual limits.
    static bool canRead(const QString &path);

private:
    PictureLimits m_limits;
};

} // namespace Zel
