// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/route.h"

#include "service/daemon/problem.h"
#include "service/store/storabletext.h"

#include <QStringDecoder>

namespace Zel::Service {

QString decodedPart(const QByteArray &part, const QString &name)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(QByteArray::fromPercentEncoding(part));
    if (decoder.hasError() || !isStorableText(text))
        throw Problem::invalidText(name);
    return text;
}

std::optional<QStringList> matchPath(const QByteArray &pattern, const QByteArray &path)
{
    const QByteArrayList expected = pattern.split('/');
    QByteArrayList found = path.split('/');
    if (pattern.endsWith("*}") && found.size() > expected.size()) {
        const QByteArray rest = found.mid(expected.size() - 1).join('/');
        found = found.first(expected.size() - 1) << rest;
    }
    if (expected.size() != found.size())
        return std::nullopt;
    QList<std::pair<QByteArray, QByteArray>> places;
    for (qsizetype i = 0; i < expected.size(); ++i) {
        if (expected.at(i).startsWith('{') && !found.at(i).isEmpty())
            places.append({expected.at(i).mid(1, expected.at(i).size() - 2), found.at(i)});
        else if (expected.at(i) != found.at(i))
            return std::nullopt;
    }
    QStringList parameters;
    for (const auto &[name, text] : places)
        parameters << decodedPart(text, QString::fromLatin1(name));
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

HttpResponse jsonResponse(const QByteArray &json, int status)
{
    HttpResponse response;
    response.status = status;
    response.contentType = QByteArrayLiteral("application/json");
    response.body = json;
    return response;
}

} // namespace Zel::Service
