// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

#include <cstring>

namespace ZelWebServiceControls {

/// Builds one long text in storage that is reserved once.
///
/// Whoever knows an upper bound of the length gets by with a single allocation; storage that was
/// reserved and never written costs no memory. A text that outgrows its bound still comes out
/// whole.
class ZEL_EXPORT WorkbookText
{
public:
    /// @param bound the most characters the text will have
    explicit WorkbookText(qsizetype bound);

    /// A text known when compiling, without its terminating zero.
    template <size_t n>
    void literal(const char16_t (&text)[n])
    {
        char16_t *const to = room(n - 1);
        std::memcpy(to, text, (n - 1) * sizeof(char16_t));
        m_at = to + (n - 1);
    }

    /// Any text, as it stands.
    void text(QStringView text)
    {
        if (text.isEmpty())
            return; // it may lie nowhere
        char16_t *const to = room(text.size());
        std::memcpy(to, text.utf16(), size_t(text.size()) * sizeof(char16_t));
        m_at = to + text.size();
    }

    /// A whole number in decimal, without group separators.
    void number(qint64 value);

    /// Where the next character will stand; good until the next one is added.
    char16_t *end() { return m_at; }

    qsizetype size() const { return m_at - m_begin; }

    /// How often the bound was too small.
    int growths() const { return m_growths; }

    /// Hands the text over.
    QString take();

private:
    char16_t *room(qsizetype count)
    {
        if (m_limit - m_at < count) [[unlikely]]
            grow(count);
        return m_at;
    }

    void grow(qsizetype count);
    void adopt(qsizetype used);

    QString m_text;
    char16_t *m_begin = nullptr;
    char16_t *m_at = nullptr;
    char16_t *m_limit = nullptr;
    int m_growths = 0;
};

} // namespace ZelWebServiceControls
