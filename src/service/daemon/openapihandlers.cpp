// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The interface as the service tells it to programs.
#include "service/daemon/api.h"
#include "service/daemon/filesection.h"
#include "service/daemon/handlers.h"
#include "service/daemon/openapidocument.h"

#include <QCryptographicHash>
#include <QJsonDocument>

namespace Zel::Service {

namespace {

struct Document
{
    QByteArray json;
    QByteArray tag;
};

/// Made once: it depends on nothing but the program.
const Document &document()
{
    static const Document made = [] {
        const QByteArray json =
            QJsonDocument(openApiDocument(Api::routes())).toJson(QJsonDocument::Compact);
        const QByteArray hash = QCryptographicHash::hash(json, QCryptographicHash::Sha256);
        return Document{json, '"' + hash.toHex().left(32) + '"'};
    }();
    return made;
}

} // namespace

HttpResponse interfaceDocument(const Call &call)
{
    const QList<HttpHeader> headers{{"ETag", document().tag}, {"Cache-Control", "no-cache"}};
    HttpResponse response = jsonResponse(document().json);
    if (isUnchanged(call.request, document().tag)) {
        response = HttpResponse();
        response.status = 304;
    }
    response.headers = headers;
    return response;
}

} // namespace Zel::Service
