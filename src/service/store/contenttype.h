// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

namespace Zel {

/// What a file is.
struct ContentType
{
    QString mime;
    /// "Image", "Audio", "Video", "XML", "Text", "pdf", "Document", "Presentation", "Animation" or
    /// "Other".
    QString assetType;
};

class ByteSource;

/// Tells what the bytes of a file are by the first of them. The name counts only where the bytes
/// leave it open: it may make a text an XML document and an archive a presentation, but nothing a
/// picture.
ZEL_EXPORT ContentType contentTypeOf(ByteSource &bytes, const QString &fileName);

/// The extension of a file name in lower case, without dot; empty when there is none.
ZEL_EXPORT QString extensionOf(const QString &fileName);

} // namespace Zel
