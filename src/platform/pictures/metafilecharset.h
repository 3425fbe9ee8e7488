// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>

namespace Zel {

/// The text of bytes in the character set of a font (LOGFONT's lfCharSet: 0 western, 204 Cyrillic,
/// 128 Japanese, ...). Bytes that make no sense are left out.
QString textOfCharset(QByteArrayView bytes, quint8 charset);

} // namespace Zel
