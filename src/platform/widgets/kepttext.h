// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

namespace Zel {

/// A text as it came, beside an editor that has one kind of line break only.
///
/// The editor shows each CR LF, CR, LF and paragraph separator as one break of its own. What a
/// person does not touch keeps the break it came with; a break that a person types is one of the
/// kind that the text uses first, LF in a text without any.
class ZEL_EXPORT KeptText
{
public:
    /// What stands for a line break in the texts the editor shows.
    static constexpr QChar Break = QChar::ParagraphSeparator;

    /// A new text and what the editor shows for it.
    void set(const QString &text, const QString &shown);

    /// The editor shows something else now.
    void edit(const QString &shown);

    const QString &text() const { return m_text; }

private:
    bool isWhole() const;
    QString typed(QStringView shown) const;

    QString m_text;
    QString m_shown;
    QString m_first;
    QString m_firstShown;
};

} // namespace Zel
