// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/storabletext.h"

namespace Zel {

bool isStorableText(QStringView text)
{
    return !text.contains(QChar(u'\0')) && text.isValidUtf16();
}

QString foldedKey(const QString &text)
{
    // Folding can leave a form that is not composed any more, so it is composed again.
    return text.normalized(QString::NormalizationForm_KC)
        .toCaseFolded()
        .normalized(QString::NormalizationForm_KC);
}

} // namespace Zel
