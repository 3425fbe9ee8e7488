// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>
#include <QSizeF>
#include <QTransform>

namespace Zel {

/// How the coordinates of a metafile's records become pixels of the screen it was recorded for.
class MetafileMapping
{
public:
    enum Mode
    {
        Pixels = 1,
        LowMetric = 2,   ///< tenths of a millimetre, upwards
        HighMetric = 3,  ///< hundredths of a millimetre, upwards
        LowEnglish = 4,  ///< hundredths of an inch, upwards
        HighEnglish = 5, ///< thousandths of an inch, upwards
        Twips = 6,       ///< 1440 an inch, upwards
        Isotropic = 7,   ///< as window and viewport say, with equal units on both axes
        Anisotropic = 8  ///< as window and viewport say
    };

    /// @param pixels the size of the screen, @param millimetres the same in millimetres
    void setScreen(const QSizeF &pixels, const QSizeF &millimetres);

    void setMode(int mode) { m_mode = mode; }

    void setWindowOrigin(const QPointF &origin) { m_windowOrigin = origin; }

    void setWindowExtent(const QPointF &extent) { m_window = extent; }

    void setViewportOrigin(const QPointF &origin) { m_viewportOrigin = origin; }

    void setViewportExtent(const QPointF &extent) { m_viewport = extent; }

    QPointF windowOrigin() const { return m_windowOrigin; }

    QPointF windowExtent() const { return m_window; }

    QPointF viewportExtent() const { return m_viewport; }

    void setWorld(const QTransform &world) { m_world = world; }

    QTransform world() const { return m_world; }

    QTransform toScreen() const;

private:
    QPointF scale() const;

    int m_mode = Pixels;
    QPointF m_windowOrigin;
    QPointF m_window{1, 1};
    QPointF m_viewportOrigin;
    QPointF m_viewport{1, 1};
    QPointF m_pixelsPerMillimetre{96 / 25.4, 96 / 25.4};
    QTransform m_world;
};

} // namespace Zel
