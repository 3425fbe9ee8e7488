// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/workbooktext.h"

#include <sys/mman.h>
#include <unistd.h>

#include <charconv>

namespace ZelWebServiceControls {

namespace {

/// Asks for large pages under a large text: filling it then costs a hundredth of the page faults.
/// Only advice; nothing depends on whether it is followed.
void adviseLargePages(void *begin, qsizetype bytes)
{
    constexpr qsizetype worthwhile = qsizetype(4) * 1024 * 1024;
    if (bytes < worthwhile)
        return;
    const auto page = quintptr(sysconf(_SC_PAGESIZE));
    const quintptr from = (reinterpret_cast<quintptr>(begin) + page - 1) / page * page;
    const quintptr to = (reinterpret_cast<quintptr>(begin) + quintptr(bytes)) / page * page;
    madvise(reinterpret_cast<void *>(from), to - from, MADV_HUGEPAGE);
}

} // namespace

WorkbookText::WorkbookText(qsizetype bound)
    : m_text(bound, Qt::Uninitialized)
{
    adopt(0);
    adviseLargePages(m_begin, bound * qsizetype(sizeof(char16_t)));
}

void WorkbookText::number(qint64 value)
{
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    char16_t *to = room(end - digits);
    for (const char *digit = digits; digit != end; ++digit)
        *to++ = char16_t(*digit);
    m_at = to;
}

QString WorkbookText::take()
{
    m_text.resize(size());
    QString text = std::move(m_text);
    m_text = QString();
    adopt(0);
    return text;
}

void WorkbookText::grow(qsizetype count)
{
    const qsizetype used = size();
    m_text.resize(std::max(used + count, used + used / 2));
    adopt(used);
    ++m_growths;
}

void WorkbookText::adopt(qsizetype used)
{
    m_begin = reinterpret_cast<char16_t *>(m_text.data());
    m_at = m_begin + used;
    m_limit = m_begin + m_text.size();
}

} // namespace ZelWebServiceControls
