// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/systemcolor.h"

#include <QApplication>
#include <QWidget>

#include <array>
#include <cmath>

namespace Zel {

namespace {

constexpr double ReadableContrast = 4.5;

/// System colour indexes 0 to 24 in their fixed order.
constexpr std::array systemRoles{
    QPalette::Window,          // scroll bar
    QPalette::Dark,            // desktop
    QPalette::Highlight,       // active caption
    QPalette::Mid,             // inactive caption
    QPalette::Window,          // menu bar
    QPalette::Base,            // window background
    QPalette::Shadow,          // window frame
    QPalette::WindowText,      // menu text
    QPalette::Text,            // window text
    QPalette::HighlightedText, // caption text
    QPalette::Mid,             // active border
    QPalette::Mid,             // inactive border
    QPalette::Mid,             // application workspace
    QPalette::Highlight,       // highlight
    QPalette::HighlightedText, // highlight text
    QPalette::Window,          // button face
    QPalette::Dark,            // button shadow
    QPalette::PlaceholderText, // disabled text
    QPalette::ButtonText,      // button text
    QPalette::WindowText,      // inactive caption text
    QPalette::Light,           // button highlight
    QPalette::Shadow,          // dark shadow
    QPalette::Midlight,        // light edge
    QPalette::ToolTipText,     // tool tip text
    QPalette::ToolTipBase,     // tool tip background
};

QPalette::ColorRole roleOf(ColorValue value)
{
    const std::size_t index = value & 0x7FFFFFFFu;
    return index < systemRoles.size() ? systemRoles[index] : QPalette::Window;
}

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

QPalette readablePalette(const QPalette &base, const QColor &background)
{
    QPalette palette = base;
    palette.setColor(QPalette::Window, background);
    if (contrastRatio(background, base.color(QPalette::WindowText)) < ReadableContrast) {
        const bool black =
            contrastRatio(background, Qt::black) >= contrastRatio(background, Qt::white);
        palette.setColor(QPalette::WindowText, black ? Qt::black : Qt::white);
    }
    return palette;
}

} // namespace

QColor colorFromValue(ColorValue value, const QPalette &palette)
{
    if (isSystemColor(value))
        return palette.color(roleOf(value));
    return QColor(static_cast<int>(value & 0xFF), static_cast<int>(value >> 8 & 0xFF),
                  static_cast<int>(value >> 16 & 0xFF));
}

ColorValue valueFromColor(const QColor &color)
{
    return static_cast<ColorValue>(color.red()) | static_cast<ColorValue>(color.green()) << 8 |
           static_cast<ColorValue>(color.blue()) << 16;
}

void applyBackground(QWidget *widget, ColorValue value)
{
    // Start from what the surroundings give, or a colour set earlier would count as theirs.
    const QPalette inherited =
        widget->parentWidget() ? widget->parentWidget()->palette() : QApplication::palette(widget);
    const QColor background = colorFromValue(value, inherited);
    const QPalette wanted = isSystemColor(value) && roleOf(value) == QPalette::Window
                                ? QPalette()
                                : readablePalette(inherited, background);
    widget->setAutoFillBackground(true);
    if (widget->palette() != wanted || wanted.resolveMask() == 0)
        widget->setPalette(wanted);
}

double contrastRatio(const QColor &a, const QColor &b)
{
    const double x = luminance(a) + 0.05;
    const double y = luminance(b) + 0.05;
    return x > y ? x / y : y / x;
}

} // namespace Zel
