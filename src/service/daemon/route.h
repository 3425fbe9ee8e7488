// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/daemon/httpmessage.h"
#include "service/daemon/routetext.h"
#include "service/store/store.h"

#include <QByteArrayList>
#include <QStringList>

#include <functional>
#include <optional>

namespace Zel::Service {

class Monitor;

/// Who may call a route.
enum class Access
{
    Public,  ///< anyone
    Session, ///< a signed-in user
    Account  ///< a signed-in user who has chosen an account
};

/// One call of a route, with everything its handler needs.
struct ZEL_EXPORT Call
{
    const HttpRequest &request;
    Store &store;
    QStringList parameters; ///< what stood in the pattern's {places}, in their order
    Session session;        ///< empty on public routes
    Monitor *monitor = nullptr;

    /// The value of a query parameter that must be there once. Throws `Problem`.
    QString queryText(const QByteArray &name, qsizetype longest) const;
    /// The same for one that may be missing, which reads as empty.
    QString queryTextOrEmpty(const QByteArray &name, qsizetype longest) const;
    /// The same, nothing when it is missing.
    std::optional<QString> queryTextIfGiven(const QByteArray &name, qsizetype longest) const;
    /// A whole number of the query from 0 to `most`; `fallback` when it is missing.
    qint64 queryNumber(const QByteArray &name, qint64 most, qint64 fallback) const;
};

using Handler = HttpResponse (*)(const Call &);
using StreamHandler = std::shared_ptr<BodySink> (*)(const Call &);

constexpr qint64 jsonBodyLimit = 1024 * 1024;
/// Of a data record to be saved: twice what its values may have, because JSON writes line breaks
/// and quotes with two bytes, and as much as the rest of it takes.
constexpr qint64 recordBodyLimit = 2 * DataRecords::largestRecord + 4 * jsonBodyLimit;
/// Of what players report in one call.
constexpr qint64 intakeBodyLimit = 4 * jsonBodyLimit;

/// A row of the route table: what is called and what the interface says of it. The functions fill a
/// row in as sentences do, see routes*.cpp.
struct ZEL_EXPORT Route
{
    QByteArray method;
    QByteArray pattern; ///< "/v1/projects/{guid}/published"
    Access access = Access::Account;
    Lane lane = Lane::Worker;
    Handler handler = nullptr;
    qint64 bodyLimit = jsonBodyLimit;
    /// Instead of a handler: takes the body in piece by piece.
    StreamHandler stream = nullptr;
    RouteText text = {};

    Route &by(Access who);
    Route &on(Lane where);
    /// Bodies of that many bytes, where `jsonBodyLimit` is too few.
    Route &upTo(qint64 bytes);
    Route &named(const char *id, const char *summary);
    /// More than the summary: what holds and what does not go without saying.
    Route &says(const char *description);
    /// What opens a public route all the same: a security scheme of openapi/document.json.
    Route &openedBy(const char *permission);
    Route &place(const RouteParameter &place);
    Route &query(const char *name, const char *schema, const char *says);
    Route &optionalQuery(const char *name, const char *schema, const char *says);
    /// A list that comes page by page: see `ListCall`.
    Route &paged();
    Route &takes(const char *schema);
    Route &takesBytes(const char *contentType = "application/octet-stream");
    /// A JSON answer; without a schema one without a body.
    Route &gives(int status, const char *schema = "", const char *says = "");
    /// An answer of another type than JSON.
    Route &givesText(int status, const char *contentType, const char *says);
    /// The bytes of a file, whole or a section of them, or that they have not changed.
    Route &givesFile(const char *says);
    /// @param code what the table of problem codes does not give every such route already
    Route &refuses(const char *code, const char *schema = "");
};

Route get(const char *pattern, Handler handler);
Route post(const char *pattern, Handler handler);
Route post(const char *pattern, StreamHandler handler, qint64 bodyLimit);
Route put(const char *pattern, Handler handler);
Route put(const char *pattern, StreamHandler handler, qint64 bodyLimit);
Route del(const char *pattern, Handler handler);

/// The texts at the {places} of a pattern, percent-decoded; nothing when the path does not match. A
/// last place {with*} takes all the rest of the path.
/// Throws `Problem` for a text that cannot be stored.
ZEL_EXPORT std::optional<QStringList> matchPath(const QByteArray &pattern, const QByteArray &path);

/// Percent-decodes a part of an address. Throws `Problem` when the result is no storable text.
ZEL_EXPORT QString decodedPart(const QByteArray &part, const QString &name);

/// The answer that something is done and there is nothing to say.
ZEL_EXPORT HttpResponse noContent();

/// An answer with a JSON body.
ZEL_EXPORT HttpResponse jsonResponse(const QByteArray &json, int status = 200);

} // namespace Zel::Service
