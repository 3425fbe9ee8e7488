// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/graphlook.h"

#include <array>

namespace ZelDataVisualization {

namespace {

QColor between(const QColor &from, const QColor &to, double share)
{
    const auto mix = [share](int a, int b) { return qRound(a + (b - a) * share); };
    return QColor(mix(from.red(), to.red()), mix(from.green(), to.green()),
                  mix(from.blue(), to.blue()));
}

} // namespace

QColor chartColor(int index)
{
    static constexpr std::array<QRgb, 10> colors{
        qRgb(0, 255, 0),     qRgb(255, 0, 0),    qRgb(0, 0, 255),    qRgb(255, 255, 0),
        qRgb(255, 0, 255),   qRgb(0, 255, 255),  qRgb(232, 192, 64), qRgb(128, 128, 128),
        qRgb(172, 236, 172), qRgb(164, 134, 106)};
    return QColor(colors[static_cast<size_t>(index) % colors.size()]);
}

GraphLook GraphLook::onScreen(const QPalette &palette, const QFont &font)
{
    GraphLook look;
    look.ground = palette.color(QPalette::Base);
    look.text = palette.color(QPalette::Text);
    look.grid = between(look.ground, look.text, 0.2);
    look.current = palette.color(QPalette::Highlight);
    look.font = font;
    return look;
}

GraphLook GraphLook::onPaper(const QFont &font)
{
    GraphLook look;
    look.ground = Qt::white;
    look.text = Qt::black;
    look.grid = between(look.ground, look.text, 0.2);
    look.font = font;
    return look;
}

} // namespace ZelDataVisualization
