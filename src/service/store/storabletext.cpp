// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/storabletext.h"

#include <algorithm>

namespace Zel {

bool isStorableText(QStringView text)
{
    const bool plain = std::none_of(text.begin(), text.end(), [](QChar c) {
        return c == QChar(0) || c == QChar(0xfffe) || c == QChar(0xffff);
    });
    return plain && text.isValidUtf16();
}

QString foldedKey(const QString &text)
{
    // Folding can leave a form that is not composed any more, so it is composed again.
    return text.normalized(QString::NormalizationForm_KC)
        .toCaseFolded()
        .normalized(QString::NormalizationForm_KC);
}

QString orderKey(const QString &text)
{
    constexpr qsizetype longest = 200;
    // Folding changes a text from its beginning, so a cut before it spares long texts most of the
    // work.
    QString key = foldedKey(text.left(2 * longest)).left(longest);
    if (!key.isEmpty() && key.back().isHighSurrogate())
        key.chop(1);
    return key;
}

} // namespace Zel
