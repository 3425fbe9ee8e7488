// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/metafilecanvas.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace Zel {

namespace {

/// Letters are drawn as shapes of this size and scaled, so that they look the same in every size.
constexpr int DesignSize = 128;

QFont fontOf(const MetafileFont &own)
{
    QFont font;
    if (!own.face.isEmpty())
        font.setFamilies({own.face, QStringLiteral("sans-serif")});
    font.setPixelSize(DesignSize);
    font.setWeight(QFont::Weight(std::clamp(own.weight, 1, 1000)));
    font.setItalic(own.italic);
    font.setUnderline(own.underline);
    font.setStrikeOut(own.strikeOut);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

/// Units of the records for a unit of the design.
double scaleOf(const MetafileFont &own, const QFontMetricsF &metrics)
{
    if (own.height < 0)
        return -own.height / DesignSize;
    return (own.height > 0 ? own.height : 16) / metrics.height();
}

} // namespace

QPainterPath MetafileCanvas::textShape(const QString &text, double width, QPointF *advance) const
{
    const QFont font = fontOf(m_state.font);
    const QFontMetricsF metrics(font);
    const double scale = scaleOf(m_state.font, metrics);
    const double natural = metrics.horizontalAdvance(text);
    const double stretch = width > 0 && natural > 0 ? width / (natural * scale) : 1;
    double x = 0;
    if ((m_state.textAlign & MetafileState::Center) == MetafileState::Center)
        x = -natural / 2;
    else if (m_state.textAlign & MetafileState::Right)
        x = -natural;
    double y = metrics.ascent();
    if ((m_state.textAlign & MetafileState::Baseline) == MetafileState::Baseline)
        y = 0;
    else if (m_state.textAlign & MetafileState::Bottom)
        y = -metrics.descent();
    QPainterPath shape;
    shape.setFillRule(Qt::WindingFill);
    shape.addText(x, y, font, text);
    // The axes of the records may point upwards; letters never stand on their heads for that.
    const QTransform screen = m_state.mapping.toScreen();
    const double up = screen.m22() < 0 && screen.m12() == 0 ? -1 : 1;
    QTransform place;
    place.rotate(-m_state.font.angle * up);
    place.scale(scale * stretch, scale * up);
    *advance = place.map(QPointF(natural, 0));
    return place.map(shape);
}

void MetafileCanvas::drawText(const QPointF &at, const QString &text, double width)
{
    // Fonts come from the application object; a program without one draws everything else.
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()) || text.isEmpty())
        return;
    const bool updates = m_state.textAlign & MetafileState::UpdatePosition;
    const QPointF origin = updates ? m_state.position : at;
    QPointF advance;
    const QPainterPath shape = textShape(text, width, &advance).translated(origin);
    if (updates)
        m_state.position += advance;
    const QPainterPath mapped = map(shape);
    if (m_isBuilding) {
        m_path.addPath(mapped);
        return;
    }
    m_painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    m_drawn = true;
    if (m_state.isOpaque)
        m_painter.fillRect(mapped.controlPointRect(), m_state.background);
    m_painter.fillPath(mapped, m_state.textColor);
}

} // namespace Zel
