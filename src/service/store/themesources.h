// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/themes.h"
#include "service/store/workspacefileerror.h"

#include <QByteArray>
#include <QString>

namespace Zel {

// The files beside a list of themes. `place` is the line that names them; whatever is wrong with a
// file throws `WorkspaceFileError` with that place and the file's name.

/// The text of a definition: UTF-8 or, with a byte order mark, UTF-16. Nothing of it is changed; a
/// mark stays its first character.
QString readDefinition(const QString &path, const FilePlace &place);

/// The bytes of a preview; `preview` says what they are. PNG, JPEG, WebP or SVG by content, and
/// whole.
QByteArray readPreview(const QString &path, const FilePlace &place, ThemePreview &preview);

} // namespace Zel
