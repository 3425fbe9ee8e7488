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

constexpr std::size_t DisabledText = 17;

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
    QPalette::WindowText,      // disabled text, of the disabled group
    QPalette::ButtonText,      // button text
    QPalette::WindowText,      // inactive caption text
    QPalette::Light,           // button highlight
    QPalette::Shadow,          // dark shadow
    QPalette::Midlight,        // light edge
    QPalette::ToolTipText,     // tool tip text
    QPalette::ToolTipBase,     // tool tip background
};

std::size_t indexOf(ColorValue value)
{
    const std::size_t index = value & 0x7FFFFFFFu;
    return index < systemRoles.size() ? index : ButtonFace & 0x7FFFFFFFu;
}

QColor systemColor(ColorValue value, const QPalette &palette)
{
    const std::size_t index = indexOf(value);
    const auto group = index == DisabledText ? QPalette::Disabled : QPalette::Active;
    return palette.color(group, systemRoles[index]);
}

/// Whether a value is the colour that a widget has of its own.
bool isWindowColor(ColorValue value)
{
    return isSystemColor(value) && systemRoles[indexOf(value)] == QPalette::Window;
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

/// What the surroundings of a widget hand down to it.
QPalette inheritedPalette(const QWidget *widget)
{
    const QWidget *parent = widget->isWindow() ? nullptr : widget->parentWidget();
    return parent ? parent->palette() : QApplication::palette(widget);
}

/// A palette of nothing but the background and, where the inherited one cannot be read on it, the
/// text colour, so that everything else keeps following the surroundings.
QPalette backgroundPalette(const QColor &background, const QPalette &inherited)
{
    QPalette palette;
    palette.setColor(QPalette::Window, background);
    const QColor text = inherited.color(QPalette::Active, QPalette::WindowText);
    if (contrastRatio(background, text) < ReadableContrast) {
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
        return systemColor(value, palette);
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
    // Against what the surroundings give, or a text colour set here earlier would count as theirs.
    const QPalette inherited = inheritedPalette(widget);
    widget->setAutoFillBackground(true);
    widget->setPalette(isWindowColor(value)
                           ? QPalette()
                           : backgroundPalette(colorFromValue(value, inherited), inherited));
}

double contrastRatio(const QColor &a, const QColor &b)
{
    const double x = luminance(a) + 0.05;
    const double y = luminance(b) + 0.05;
    return x > y ? x / y : y / x;
}

} // namespace Zel
