// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/httpmessage.h"

#include <algorithm>

namespace Zel::Service {

namespace {

const HttpHeader *find(const QList<HttpHeader> &headers, QByteArrayView name)
{
    const auto found = std::find_if(headers.begin(), headers.end(), [name](const HttpHeader &one) {
        return one.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == headers.end() ? nullptr : &*found;
}

} // namespace

BodySink::~BodySink() = default;

QByteArray HttpRequest::header(QByteArrayView name) const
{
    const HttpHeader *found = find(headers, name);
    return found ? found->value : QByteArray();
}

bool HttpRequest::hasHeader(QByteArrayView name) const
{
    return find(headers, name) != nullptr;
}

QByteArray HttpRequest::path() const
{
    const qsizetype mark = target.indexOf('?');
    return mark < 0 ? target : target.left(mark);
}

} // namespace Zel::Service
