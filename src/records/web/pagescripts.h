// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWebEngineScript>

class QWidget;

namespace ZelWebServiceControls {

/// The dialog's side of the page contract, for the page's own world.
/// @param token what it names itself by when it asks the dialog
/// @param style declarations for the page's root, see \ref rootStyle
QWebEngineScript componentPageScript(const QString &token, const QString &style);

/// The colours and the font of a widget as custom properties of a style sheet:
/// "--studio-window: #efefef; ...".
QString rootStyle(const QWidget &widget);

/// The watch for frames that could not be loaded, in a world of its own in every frame.
/// @param token what it writes to the console then
QWebEngineScript frameWatchScript(const QString &token);

/// A call of the dialog's side of the contract, for a page that has one; a page that is no HTML
/// document answers nothing.
QString dialogCall(const QString &call);

/// A text as it is written in a script, exact to the code unit.
QString scriptText(const QString &text);

} // namespace ZelWebServiceControls
