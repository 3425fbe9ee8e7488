// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/assetcalls.h"
#include "service/daemon/deploymentcalls.h"
#include "service/daemon/filesection.h"
#include "service/daemon/handlers.h"
#include "service/daemon/listcall.h"
#include "service/daemon/signedaddress.h"

#include <array>

namespace Zel::Service {

namespace {

constexpr qsizetype longestScope = 16;

struct ScopeWord
{
    QLatin1String word;
    Themes::Scope scope;
};

constexpr std::array scopes{
    ScopeWord{QLatin1String("account"), Themes::Scope::Account},
    ScopeWord{QLatin1String("global"), Themes::Scope::Global},
    ScopeWord{QLatin1String("user"), Themes::Scope::User},
    ScopeWord{QLatin1String("full"), Themes::Scope::Full},
};

Themes::Scope scopeOf(const Call &call)
{
    const QString word = call.queryText("scope", longestScope);
    for (const ScopeWord &one : scopes) {
        if (word == one.word)
            return one.scope;
    }
    throw Problem::invalid(
        QStringLiteral("The scope of themes must be account, global, user or full."));
}

/// The last part changes with the picture, so that nobody keeps showing a former one.
QByteArray previewPath(const Theme &theme)
{
    constexpr qsizetype enough = 16;
    return "/p/" + theme.guid.toLatin1() + '/' + theme.preview.sha.left(enough).toLatin1();
}

void writeTheme(JsonWriter &json, const Theme &theme, const QList<TemplateUse> &templates,
                const AddressSigner &signer, qint64 expiry)
{
    json.beginArray().text(theme.guid).text(theme.name).text(theme.description);
    json.integer(theme.width).integer(theme.height);
    json.integer(theme.createdAt).integer(theme.modifiedAt).text(theme.definition);
    json.text(theme.preview.sha.isEmpty()
                  ? QString()
                  : QString::fromLatin1(signer.address(previewPath(theme), expiry)));
    json.beginArray();
    for (const TemplateUse &use : templates)
        json.beginArray().text(use.key).text(use.versionKey).boolean(use.required).endArray();
    json.endArray().endArray();
}

} // namespace

HttpResponse listThemes(const Call &call)
{
    const Themes::Scope scope = scopeOf(call);
    const AddressSigner signer(call);
    const qint64 expiry = thumbnailExpiry(call.store.clock());
    ListCall page(call, "themes", mostLongRows);
    Themes::Place after;
    if (!page.isFirst())
        after = {page.text(), page.text(), page.number()};
    return jsonResponse(call.store.database.snapshot([&] {
        JsonWriter json;
        json.beginObject();
        beginTable(json, "themes",
                   {"guid", "name", "description", "width", "height", "created", "modified",
                    "wizardXml", "previewUrl", "templates"});
        PageRows rows(json, page.limit());
        Themes::Place last;
        call.store.themes.visitAfter({call.session.accountId, call.session.userId}, scope, after,
                                     [&](const Theme &theme, const QList<TemplateUse> &templates,
                                         const Themes::Place &place) {
                                         if (!rows.takeOne())
                                             return false;
                                         writeTheme(json, theme, templates, signer, expiry);
                                         last = place;
                                         return true;
                                     });
        endTable(json);
        page.writeNext(json, rows.hasMore() ? std::optional(QJsonArray{last.nameKey, last.guid,
                                                                       last.accountId})
                                            : std::nullopt);
        json.endObject();
        return json.json();
    }));
}

HttpResponse findTemplate(const Call &call)
{
    const QString key = call.queryText("key", Themes::longestKey);
    const QString version = call.queryText("version", Themes::longestKey);
    const auto found = call.store.themes.findTemplate(call.session.accountId, key, version);
    JsonWriter json;
    json.beginObject().key("template");
    if (found)
        json.beginObject()
            .key("name")
            .text(found->name)
            .key("description")
            .text(found->description)
            .endObject();
    else
        json.null();
    json.endObject();
    return jsonResponse(json.json());
}

HttpResponse themePreview(const Call &call)
{
    const qint64 account = accountOfSignedCall(call);
    const auto found = call.store.themes.preview(account, call.parameters.first());
    if (!found)
        throw notFound(QStringLiteral("There is no such preview."));
    const ThemePreview &preview = found->preview;
    return fileResponse(call.request, call.store.blobs.open({found->accountId, preview.sha}),
                        preview.sha.toLatin1(), preview.mime.toLatin1());
}

} // namespace Zel::Service
