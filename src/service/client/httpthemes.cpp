// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The theme operations over HTTP.
#include "service/client/httpserviceclient.h"

#include "service/client/callfailure.h"
#include "service/client/jsoncall.h"
#include "service/client/listcall.h"
#include "service/client/themereader.h"
#include "service/client/transport.h"

#include <array>

namespace QXSC {

namespace {

struct ListMethod
{
    QLatin1String name;
    const char *scope; ///< as the service calls it
};

constexpr std::array listMethods{
    ListMethod{QLatin1String("getAccountThemeList_Array"), "account"},
    ListMethod{QLatin1String("getFullThemeList_Array"), "full"},
    ListMethod{QLatin1String("getGlobalThemeList_Array"), "global"},
    ListMethod{QLatin1String("getUserThemeList_Array"), "user"},
};

QByteArray scopeOf(const QString &methodName)
{
    for (const ListMethod &method : listMethods) {
        if (methodName == method.name)
            return method.scope;
    }
    throw ServiceError(
        ServiceError::Kind::Invalid,
        HttpServiceClient::tr("There is no list \"%1\" to ask the service for.").arg(methodName));
}

} // namespace

void HttpServiceClient::callListMethod(const QString &, const QString &methodName,
                                       ThemeCollectionPtr &list)
{
    const Request request = sessionRequest("GET", "/v1/themes", "scope=" + scopeOf(methodName));
    list = readList(request, readThemes);
}

void HttpServiceClient::getTemplate(const QString &templateKey, const QString &templateVersionKey,
                                    TemplateRecordPtr &record)
{
    const Request request =
        sessionRequest("GET", "/v1/templates",
                       "key=" + QUrl::toPercentEncoding(templateKey) +
                           "&version=" + QUrl::toPercentEncoding(templateVersionKey));
    record = readAnswer(request, *ask(request), readTemplate);
}

} // namespace QXSC
