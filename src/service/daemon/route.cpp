// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/route.h"

#include "service/daemon/problem.h"
#include "service/store/storabletext.h"

#include <QStringDecoder>
#include <QVarLengthArray>

#include <utility>

namespace Zel::Service {

QString decodedPart(const QByteArray &part, const QString &name)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(QByteArray::fromPercentEncoding(part));
    if (decoder.hasError() || !isStorableText(text))
        throw Problem::invalidText(name);
    return text;
}

namespace {

/// Takes the part before the next slash off a path; all of it, and null is left, when there is
/// none.
QByteArrayView takePart(QByteArrayView &path)
{
    const qsizetype slash = path.indexOf('/');
    const QByteArrayView part = slash < 0 ? path : path.first(slash);
    path = slash < 0 ? QByteArrayView() : path.sliced(slash + 1);
    return part;
}

} // namespace

// Asked for row after row of the table by every call: nothing is copied before the path matches.
std::optional<QStringList> matchPath(const QByteArray &pattern, const QByteArray &path)
{
    QVarLengthArray<std::pair<QByteArrayView, QByteArrayView>, 8> places;
    QByteArrayView expected = pattern;
    QByteArrayView found = path;
    while (!expected.isNull() && !found.isNull()) {
        const QByteArrayView name = takePart(expected);
        const QByteArrayView text =
            name.endsWith("*}") ? std::exchange(found, {}) : takePart(found);
        if (name.startsWith('{') && !text.isEmpty())
            places.append({name.sliced(1, name.size() - 2), text});
        else if (name != text)
            return std::nullopt;
    }
    if (!expected.isNull() || !found.isNull())
        return std::nullopt;
    QStringList parameters;
    for (const auto &[name, text] : places)
        parameters << decodedPart(text.toByteArray(), QString::fromLatin1(name));
    return parameters;
}

namespace {

/// A query parameter that may be there once.
std::optional<QString> findQueryText(const QByteArray &target, const QByteArray &name,
                                     qsizetype longest)
{
    const QString shownName = QString::fromLatin1(name);
    std::optional<QString> found;
    const qsizetype mark = target.indexOf('?');
    const QByteArrayList items = mark < 0 ? QByteArrayList() : target.mid(mark + 1).split('&');
    for (const QByteArray &item : items) {
        const qsizetype equals = item.indexOf('=');
        if ((equals < 0 ? item : item.left(equals)) != name)
            continue;
        if (found)
            throw Problem::invalid(QStringLiteral("\"%1\" is given twice.").arg(shownName));
        found = equals < 0 ? QString() : decodedPart(item.mid(equals + 1), shownName);
    }
    if (found && found->size() > longest)
        throw Problem::invalid(QStringLiteral("\"%1\" is too long.").arg(shownName));
    return found;
}

} // namespace

QString Call::queryText(const QByteArray &name, qsizetype longest) const
{
    const auto found = findQueryText(request.target, name, longest);
    if (!found)
        throw Problem::invalid(QStringLiteral("\"%1\" is missing.").arg(QString::fromLatin1(name)));
    return *found;
}

QString Call::queryTextOrEmpty(const QByteArray &name, qsizetype longest) const
{
    return findQueryText(request.target, name, longest).value_or(QString());
}

std::optional<QString> Call::queryTextIfGiven(const QByteArray &name, qsizetype longest) const
{
    return findQueryText(request.target, name, longest);
}

qint64 Call::queryNumber(const QByteArray &name, qint64 most, qint64 fallback) const
{
    constexpr qsizetype longestNumber = 20;
    const auto found = findQueryText(request.target, name, longestNumber);
    if (!found)
        return fallback;
    bool ok = false;
    const qint64 number = found->toLongLong(&ok);
    if (!ok || number < 0 || number > most)
        throw Problem::invalid(QStringLiteral("\"%1\" must be a whole number from 0 to %2.")
                                   .arg(QString::fromLatin1(name))
                                   .arg(most));
    return number;
}

HttpResponse noContent()
{
    HttpResponse response;
    response.status = 204;
    return response;
}

HttpResponse jsonResponse(const QByteArray &json, int status)
{
    HttpResponse response;
    response.status = status;
    response.contentType = QByteArrayLiteral("application/json");
    response.body = json;
    return response;
}

} // namespace Zel::Service
