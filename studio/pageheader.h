// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QLabel;
class QPushButton;
class QToolButton;
class QWidget;

namespace Studio {

/// The name of a page in large letters.
QLabel *makeHeading(QWidget *parent, const QString &title);

/// A button of a page's header, icon beside text.
QToolButton *makeTool(QWidget *parent, const char *name, const QString &icon, const QString &text,
                      const QString &tip);

/// A push button; Enter presses it while it has the keyboard.
QPushButton *makeButton(QWidget *parent, const char *name, const QString &caption,
                        const QString &tip = QString());

} // namespace Studio
