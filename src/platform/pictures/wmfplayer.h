// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/bytereader.h"
#include "platform/pictures/metafilecanvas.h"
#include "platform/pictures/picturelimits.h"

#include <map>

namespace Zel {

/// Plays the records of a 16-bit metafile on a canvas. The window is always stretched over the
/// whole picture: viewports and mapping modes belong to the screen a file was once shown on.
class WmfPlayer
{
public:
    WmfPlayer(MetafileCanvas *canvas, const PictureLimits &limits)
        : m_canvas(*canvas)
        , m_limits(limits)
    {
    }

    /// @param record begins behind its function
    void play(quint16 function, QByteArrayView record);

private:
    // False when the function is none of its own.
    bool playState(quint16 function, ByteReader &in);
    bool playWindow(quint16 function, ByteReader &in);
    bool playObjects(quint16 function, ByteReader &in);
    bool playShapes(quint16 function, ByteReader &in);
    bool playPolygons(quint16 function, ByteReader &in);
    bool playText(quint16 function, ByteReader &in);
    bool playImages(quint16 function, ByteReader &in);

    void add(const MetafileObject &object);
    void select(quint16 index);
    MetafileFont readFont(ByteReader &in) const;
    void playBlock(quint16 function, ByteReader &in);
    void playDibToDevice(ByteReader &in);
    void playExtendedText(ByteReader &in);

    MetafileState &state() { return m_canvas.state(); }

    MetafileCanvas &m_canvas;
    const PictureLimits &m_limits;
    /// By their numbers; a new object takes the lowest number that is free.
    std::map<quint16, MetafileObject> m_objects;
};

} // namespace Zel
