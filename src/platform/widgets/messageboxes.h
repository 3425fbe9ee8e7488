// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

class QWidget;

namespace Zel {

/// A message with an OK button only, modal over the window of `owner`. Without a title of its own
/// it bears the application's display name. The text is shown as it stands, never as markup.
ZEL_EXPORT void informUser(QWidget *owner, const QString &text, const QString &title = QString());

/// Asks Yes or No and returns whether the answer was Yes. No is the default button; Esc and closing
/// the box mean No, and so does a box that goes with its owner's window.
ZEL_EXPORT bool askUser(QWidget *owner, const QString &text, const QString &title = QString());

} // namespace Zel
