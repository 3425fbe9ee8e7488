// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/bytereader.h"
#include "platform/pictures/metafilecanvas.h"
#include "platform/pictures/picturelimits.h"

#include <QHash>

namespace Zel {

/// Plays the records of an enhanced metafile on a canvas. Records that only matter to printers,
/// colour management and OpenGL are passed over, like those nobody has described.
class EmfPlayer
{
public:
    EmfPlayer(MetafileCanvas *canvas, const PictureLimits &limits)
        : m_canvas(*canvas)
        , m_limits(limits)
    {
    }

    /// Whether records of a type are played at all.
    static bool plays(quint32 type);

    void play(quint32 type, QByteArrayView record);

    /// Whether records of the newer kind (EMF+) were among them.
    bool hasSeenPlus() const { return m_hasPlus; }

private:
    // Each takes the record behind its type and length; false when the type is none of its own.
    bool playState(quint32 type, ByteReader &in);
    bool playMapping(quint32 type, ByteReader &in);
    bool playObjects(quint32 type, ByteReader &in);
    bool playShapes(quint32 type, ByteReader &in);
    bool playPolygons(quint32 type, ByteReader &in);
    bool playPaths(quint32 type, ByteReader &in);
    bool playRegions(quint32 type, ByteReader &in);
    bool playText(quint32 type, ByteReader &in);
    bool playImages(quint32 type, ByteReader &in);

    void setWorld(ByteReader &in, bool modify);
    void select(quint32 handle);
    void selectStock(quint32 handle);
    void makeExtendedPen(ByteReader &in);
    void makePatternBrush(ByteReader &in);
    void makeFont(ByteReader &in);
    void playPolyPolygon(ByteReader &in, bool small, bool closed);
    void playPolyDraw(ByteReader &in, bool small);
    void playGradient(ByteReader &in);
    void playTextOut(ByteReader &in, bool wide);
    void playSmallText(ByteReader &in);
    void playBlock(quint32 type, ByteReader &in);
    void playDeviceImage(ByteReader &in);
    void playStretchedImage(ByteReader &in);
    QBrush brushOf(quint32 handle) const;
    /// The bitmap whose place in the record comes next: offsets and lengths of header and pixels.
    QImage readImage(ByteReader &in, bool keepAlpha = false, bool *topDown = nullptr);

    MetafileState &state() { return m_canvas.state(); }

    MetafileCanvas &m_canvas;
    const PictureLimits &m_limits;
    QByteArrayView m_record;
    QHash<quint32, MetafileObject> m_objects;
    bool m_hasPlus = false;
};

} // namespace Zel
