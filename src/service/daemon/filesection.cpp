// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/filesection.h"

#include "service/daemon/assetcalls.h"

#include <algorithm>
#include <optional>

namespace Zel::Service {

namespace {

struct Section
{
    qint64 first = 0;
    qint64 last = 0;
};

std::optional<qint64> number(const QByteArray &digits)
{
    bool ok = false;
    const qint64 value = digits.toLongLong(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

/// Whether the header is one range in bytes; anything else is passed over and gives the whole file.
bool isOneRange(const QByteArray &range)
{
    const QByteArray text = range.mid(6).trimmed();
    return range.startsWith("bytes=") && text.size() > 1 && text.count('-') == 1 &&
           std::all_of(text.begin(), text.end(),
                       [](char c) { return c == '-' || (c >= '0' && c <= '9'); });
}

/// The section asked for; nothing when it lies behind the end.
std::optional<Section> sectionOf(const QByteArray &range, qint64 size)
{
    const QByteArray text = range.mid(6).trimmed();
    const qsizetype dash = text.indexOf('-');
    const auto first = number(text.left(dash));
    const auto last = number(text.mid(dash + 1));
    if (dash == 0 && last && *last > 0 && size > 0)
        return Section{std::max<qint64>(0, size - *last), size - 1};
    if (!first || *first >= size || (last && *last < *first))
        return std::nullopt;
    return Section{*first, last ? std::min(*last, size - 1) : size - 1};
}

/// Whether a list of tags, weak ones among them, or "*", names this one (RFC 9110, 13.1.2).
bool names(const QByteArray &list, const QByteArray &quoted)
{
    const QByteArrayList tags = list.split(',');
    return std::any_of(tags.begin(), tags.end(), [&quoted](const QByteArray &item) {
        const QByteArray tag = item.trimmed();
        return tag == "*" || tag == quoted || tag == "W/" + quoted;
    });
}

} // namespace

bool isUnchanged(const HttpRequest &request, const QByteArray &quotedTag)
{
    return names(request.header("If-None-Match"), quotedTag);
}

HttpResponse fileResponse(const HttpRequest &request, const std::shared_ptr<ByteSource> &file,
                          const QByteArray &tag, const QByteArray &contentType)
{
    if (!file)
        throw notFound(QStringLiteral("There is no such file."));
    const QByteArray quoted = '"' + tag + '"';
    HttpResponse response;
    response.headers = {{"ETag", quoted},
                        {"Cache-Control", "private, max-age=86400"},
                        {"Accept-Ranges", "bytes"},
                        // What people upload must not act as a page of this service.
                        {"Content-Security-Policy", "default-src 'none'; sandbox"}};
    if (isUnchanged(request, quoted)) {
        response.status = 304;
        return response;
    }
    response.contentType = contentType;
    HttpResponse::FileSection whole{file, 0, file->size()};
    const QByteArray range = request.header("Range");
    const QByteArray condition = request.header("If-Range");
    if (isOneRange(range) && (condition.isEmpty() || condition == quoted)) {
        const auto section = sectionOf(range, whole.length);
        const QByteArray size = QByteArray::number(whole.length);
        if (!section)
            throw Problem(416, QByteArrayLiteral("bad-range"),
                          QStringLiteral("The file has no such section."),
                          {{"Content-Range", "bytes */" + size}});
        whole.offset = section->first;
        whole.length = section->last - section->first + 1;
        response.status = 206;
        response.headers.append({"Content-Range", "bytes " + QByteArray::number(section->first) +
                                                      '-' + QByteArray::number(section->last) +
                                                      '/' + size});
    }
    response.file = whole;
    return response;
}

} // namespace Zel::Service
