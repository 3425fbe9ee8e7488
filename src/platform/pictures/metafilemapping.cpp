// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/metafilemapping.h"

#include <algorithm>
#include <cmath>

namespace Zel {

namespace {

double quotient(double number, double divisor)
{
    return divisor == 0 ? 1 : number / divisor;
}

} // namespace

void MetafileMapping::setScreen(const QSizeF &pixels, const QSizeF &millimetres)
{
    m_pixelsPerMillimetre = {pixels.width() / millimetres.width(),
                             pixels.height() / millimetres.height()};
}

QPointF MetafileMapping::scale() const
{
    const auto upwards = [this](double millimetres) {
        return QPointF(m_pixelsPerMillimetre.x() * millimetres,
                       -m_pixelsPerMillimetre.y() * millimetres);
    };
    const QPointF given(quotient(m_viewport.x(), m_window.x()),
                        quotient(m_viewport.y(), m_window.y()));
    switch (m_mode) {
    case LowMetric:
        return upwards(0.1);
    case HighMetric:
        return upwards(0.01);
    case LowEnglish:
        return upwards(0.254);
    case HighEnglish:
        return upwards(0.0254);
    case Twips:
        return upwards(25.4 / 1440);
    case Isotropic: {
        const double unit = std::min(std::abs(given.x()), std::abs(given.y()));
        return {std::copysign(unit, given.x()), std::copysign(unit, given.y())};
    }
    case Anisotropic:
        return given;
    default:
        return {1, 1};
    }
}

QTransform MetafileMapping::toScreen() const
{
    const QPointF unit = scale();
    const QTransform page(unit.x(), 0, 0, unit.y(),
                          m_viewportOrigin.x() - m_windowOrigin.x() * unit.x(),
                          m_viewportOrigin.y() - m_windowOrigin.y() * unit.y());
    return m_world * page;
}

} // namespace Zel
