// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/daemon/jsonwriter.h"
#include "service/daemon/route.h"

#include <QJsonArray>

#include <optional>

namespace Zel::Service {

// Long lists are answered page by page. A call says with `limit` how many rows it wants at most and
// with `after` where to go on: the `next` of the answer before, null at the end of the list.

/// The most rows that can be asked for. Lists whose rows are longer have a lower limit of their
/// own.
constexpr qint64 mostRows = 50'000;
constexpr qint64 mostLongRows = 10'000;
/// A page ends early when its answer has got this long, in bytes, so that no answer needs much more
/// memory than this however long its rows are.
constexpr qsizetype pageBytes = qsizetype(4) * 1024 * 1024;

/// Which page of a list a call asks for.
class ZEL_EXPORT ListCall
{
public:
    /// @param list a word for the list, so that the place in one list is not taken for one in
    ///        another
    /// @param most the most rows of a page, also for a call that asks for more or says nothing
    /// Throws `Problem` for a `limit` or an `after` that cannot be.
    ListCall(const Call &call, const char *list, qint64 most = mostRows);

    /// Whether the list is to be read from its beginning: then there is no place to read.
    bool isFirst() const { return m_isFirst; }

    qint64 limit() const { return m_limit; }

    // The values of the place after which to begin, in their order. Each throws `Problem` when it
    // is something else.
    QString text();
    qint64 number();
    std::optional<qint64> numberOrNull();
    QByteArray bytes();

    /// Writes "next": the place of the last row when there are more, else null.
    void writeNext(JsonWriter &json, const std::optional<QJsonArray> &place) const;

    /// Bytes as a value of a place.
    static QJsonValue valueOf(const QByteArray &bytes);

private:
    QJsonValue take();

    const char *m_list;
    qint64 m_limit = 0;
    bool m_isFirst = true;
    QJsonArray m_place; ///< what has not been taken of it
};

/// Counts the rows of a page while they are written.
class PageRows
{
public:
    PageRows(const JsonWriter &json, qint64 limit)
        : m_json(json)
        , m_limit(limit)
    {
    }

    /// Whether another row goes into the page. If not, there is more of the list.
    bool takeOne()
    {
        m_hasMore = m_count == m_limit || (m_count > 0 && m_json.json().size() >= pageBytes);
        m_count += m_hasMore ? 0 : 1;
        return !m_hasMore;
    }

    bool hasMore() const { return m_hasMore; }

private:
    const JsonWriter &m_json;
    qint64 m_limit;
    qint64 m_count = 0;
    bool m_hasMore = false;
};

} // namespace Zel::Service
