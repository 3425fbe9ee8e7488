// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPalette>
#include <QString>

class QWidget;

namespace Studio {

/// How Studio looks: as the desktop says, or always light or dark.
enum class Appearance
{
    System,
    Light,
    Dark
};

/// Applies an appearance to the whole application. `System` leaves a desktop's own colours alone;
/// with no desktop around it is light.
void applyAppearance(Appearance appearance);

/// Uses a legible font where the system names none of its own.
void applyFont();

QString appearanceKey(Appearance appearance);
Appearance appearanceFromKey(const QString &key);

/// Whether a palette is light text on dark ground.
bool isDark(const QPalette &palette);

/// A colour between two, `share` of the second (0 to 1).
QColor mixed(const QColor &first, const QColor &second, double share);

/// Text that stands back: secondary captions, hints. Readable on light and dark.
QColor mutedText(const QPalette &palette);

/// Gives a widget one colour of its own. All others go on following the application, so that the
/// widget hears (`PaletteChange`) when those change.
void setOwnColor(QWidget *widget, QPalette::ColorRole role, const QColor &color);

/// The red of problems, and a text in it that is readable on light and dark.
QColor alarmColor();
QColor alarmText(const QPalette &palette);

} // namespace Studio
