// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/appearance.h"

#include "studio/studiostyle.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QWidget>

#include <array>

namespace Studio {

namespace {

struct Scheme
{
    QRgb window, base, alternate, text, button, accent, accentText, light, midlight, mid, dark;
};

constexpr Scheme lightScheme{0xfff4f5f7, 0xffffffff, 0xfff8f9fa, 0xff1d2129, 0xfffafbfc, 0xff2762c9,
                             0xffffffff, 0xffffffff, 0xffebedf0, 0xffc9cdd4, 0xff9aa1ac};
constexpr Scheme darkScheme{0xff1f2228, 0xff17191d, 0xff1c1f24, 0xffe6e8eb, 0xff2c3038, 0xff3470d2,
                            0xffffffff, 0xff434954, 0xff363b44, 0xff15171a, 0xff0e0f12};

constexpr double MutedShare = 0.35;
constexpr double DisabledShare = 0.55;
constexpr QRgb AlarmColor = 0xffc8372d;

QPalette paletteOf(const Scheme &scheme)
{
    const QColor text(scheme.text);
    const QColor window(scheme.window);
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, QColor(scheme.base));
    palette.setColor(QPalette::AlternateBase, QColor(scheme.alternate));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor(scheme.button));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(scheme.base));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Highlight, QColor(scheme.accent));
    palette.setColor(QPalette::HighlightedText, QColor(scheme.accentText));
    palette.setColor(QPalette::Link, mixed(QColor(scheme.accent), text, 0.2));
    palette.setColor(QPalette::PlaceholderText, mixed(text, QColor(scheme.base), MutedShare));
    palette.setColor(QPalette::Light, QColor(scheme.light));
    palette.setColor(QPalette::Midlight, QColor(scheme.midlight));
    palette.setColor(QPalette::Mid, QColor(scheme.mid));
    palette.setColor(QPalette::Dark, QColor(scheme.dark));
    palette.setColor(QPalette::Shadow, Qt::black);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, mixed(text, window, DisabledShare));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, mixed(text, window, 0.8));
    return palette;
}

bool onDesktop()
{
    return qEnvironmentVariableIsSet("XDG_CURRENT_DESKTOP");
}

constexpr std::array appearanceKeys{"system", "light", "dark"};

} // namespace

void applyAppearance(Appearance appearance)
{
    if (appearance == Appearance::System && onDesktop()) {
        QApplication::setPalette(QPalette());
        return;
    }
    // A desktop's style may paint with colours of its own and ignore the palette.
    if (!qobject_cast<StudioStyle *>(QApplication::style()))
        QApplication::setStyle(new StudioStyle);
    QApplication::setPalette(paletteOf(appearance == Appearance::Dark ? darkScheme : lightScheme));
}

void applyFont()
{
    const QString preferred = QStringLiteral("Inter");
    const QString family = QFontInfo(QApplication::font()).family();
    const bool namedByNobody = !onDesktop() && (family.startsWith(QLatin1String("DejaVu")) ||
                                                family == QApplication::font().family());
    if (!namedByNobody || !QFontDatabase::families().contains(preferred))
        return;
    QFont font = QApplication::font();
    font.setFamilies({preferred, family});
    QApplication::setFont(font);
}

QString appearanceKey(Appearance appearance)
{
    return QString::fromLatin1(appearanceKeys[static_cast<std::size_t>(appearance)]);
}

Appearance appearanceFromKey(const QString &key)
{
    for (std::size_t i = 0; i < appearanceKeys.size(); ++i) {
        if (key == QLatin1String(appearanceKeys[i]))
            return static_cast<Appearance>(i);
    }
    return Appearance::System;
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

QColor mixed(const QColor &first, const QColor &second, double share)
{
    const auto channel = [share](float a, float b) {
        return static_cast<float>(a + (b - a) * share);
    };
    return QColor::fromRgbF(channel(first.redF(), second.redF()),
                            channel(first.greenF(), second.greenF()),
                            channel(first.blueF(), second.blueF()));
}

QColor mutedText(const QPalette &palette)
{
    return mixed(palette.color(QPalette::WindowText), palette.color(QPalette::Window), MutedShare);
}

void setOwnColor(QWidget *widget, QPalette::ColorRole role, const QColor &color)
{
    QPalette own;
    own.setColor(role, color);
    widget->setPalette(own);
}

QColor alarmColor()
{
    return QColor(AlarmColor);
}

QColor alarmText(const QPalette &palette)
{
    return mixed(alarmColor(), palette.color(QPalette::WindowText), isDark(palette) ? 0.45 : 0.1);
}

} // namespace Studio
