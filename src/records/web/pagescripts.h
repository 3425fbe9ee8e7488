// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWebEngineScript>

namespace ZelWebServiceControls {

/// The dialog's side of the page contract, for the page's own world.
/// @param token what it names itself by when it asks the dialog
QWebEngineScript componentPageScript(const QString &token);

/// The watch for frames that could not be loaded, in a world of its own in every frame.
/// @param token what it writes to the console then
QWebEngineScript frameWatchScript(const QString &token);

/// A call of the dialog's side of the contract, for a page that has one; a page that is no HTML
/// document answers nothing.
QString dialogCall(const QString &call);

/// A text as it is written in a script, exact to the code unit.
QString scriptText(const QString &text);

} // namespace ZelWebServiceControls
