// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/collection.h"
#include "service/client/answerreader.h"
#include "service/client/httpserviceclient.h"
#include "service/client/jsoncall.h"
#include "service/client/message.h"
#include "service/client/operationtime.h"

#include <memory>
#include <optional>
#include <vector>

namespace QXSC {

// Long lists come page by page; here they become one again.

template <typename Item>
using CollectionPtr = std::shared_ptr<const Zel::Collection<Item>>;

/// The pages of a list as one. Null as soon as a page is: what was asked for is gone.
template <typename Item>
CollectionPtr<Item> joined(std::vector<CollectionPtr<Item>> &&pages)
{
    if (pages.size() == 1)
        return pages.front();
    qsizetype count = 0;
    for (const CollectionPtr<Item> &page : pages) {
        if (!page)
            return nullptr;
        count += page->count();
    }
    auto whole = std::make_shared<Zel::Collection<Item>>();
    whole->reserve(count);
    for (const CollectionPtr<Item> &page : pages) {
        for (const Item &item : *page)
            whole->add(item);
    }
    return whole;
}

template <typename Item>
QList<Item> joined(std::vector<QList<Item>> &&pages)
{
    QList<Item> whole;
    for (QList<Item> &page : pages)
        whole.append(std::move(page));
    return whole;
}

template <typename Item>
std::optional<QList<Item>> joined(std::vector<std::optional<QList<Item>>> &&pages)
{
    QList<Item> whole;
    for (std::optional<QList<Item>> &page : pages) {
        if (!page)
            return std::nullopt;
        whole.append(std::move(*page));
    }
    return whole;
}

/// The place after which the next page begins; empty at the end of the list. A service that has no
/// pages says nothing of it.
/// @param before the place after which this page begins
QByteArray readNext(const QJsonObject &answer, const QByteArray &before);

/// The query of a page.
/// @param place empty for the first one
/// @param rows how many rows to ask for; 0 leaves that to the service
QByteArray pageQuery(const QByteArray &query, const QByteArray &place, qint64 rows);

template <typename Read>
auto HttpServiceClient::readList(Request request, Read read, QLatin1String refusal)
{
    using List = std::decay_t<std::invoke_result_t<Read, const QJsonObject &>>;
    const OperationTime time(m_policy);
    const QByteArray query = request.query;
    std::vector<List> pages;
    QByteArray place;
    do {
        request.query = pageQuery(query, place, time.policy().pageRows);
        const std::optional<Reply> reply = ask(request, time, refusal);
        if (!reply)
            return List();
        place = readAnswer(request, *reply, [&](const QByteArray &body) {
            const QJsonObject answer = readObject(body);
            pages.push_back(read(answer));
            return readNext(answer, place);
        });
    } while (!place.isEmpty());
    return joined(std::move(pages));
}

} // namespace QXSC
