// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/themes.h"

#include "service/store/database.h"
#include "service/store/storabletext.h"

#include <QHash>

namespace Zel {

namespace {

// What a person sees of two accounts (the chosen one and 0, for every account; or twice the same
// one), with ($4) or without what belongs to nobody and with ($5) or without their own.
const SqlText listThemes(R"sql(
    SELECT t.account_id, t.guid, t.owner_user, t.name, t.description, t.width, t.height,
           t.created_at, t.modified_at, t.definition, t.preview_sha, v.mime, v.size, t.name_key
    FROM theme t
    LEFT JOIN theme_preview v ON v.account_id = t.account_id AND v.sha = t.preview_sha
    WHERE t.account_id IN ($1, $2)
      AND ((t.owner_user IS NULL AND $4) OR (t.owner_user = $3 AND $5))
      AND (t.name_key, t.guid, t.account_id) > ($6, $7, $8)
    ORDER BY t.name_key NULLS FIRST, t.guid NULLS FIRST, t.account_id NULLS FIRST
    LIMIT $9
)sql");

// The templates of all themes between two of them, the first one not included.
const SqlText listUses(R"sql(
    SELECT u.account_id, u.theme_guid, u.template_key, u.version_key, u.required
    FROM theme_template u
    JOIN theme t ON t.account_id = u.account_id AND t.guid = u.theme_guid
    WHERE u.account_id IN ($1, $2)
      AND ((t.owner_user IS NULL AND $4) OR (t.owner_user = $3 AND $5))
      AND (t.name_key, t.guid, t.account_id) > ($6, $7, $8)
      AND (t.name_key, t.guid, t.account_id) <= ($9, $10, $11)
    ORDER BY u.account_id NULLS FIRST, u.theme_guid NULLS FIRST, u.pos NULLS FIRST
)sql");

const SqlText findTemplateByKeys(R"sql(
    SELECT template_key, version_key, name, description FROM template
    WHERE account_id IN ($1, 0) AND template_key = $2 AND version_key = $3
    ORDER BY account_id DESC NULLS LAST
)sql");

const SqlText findOwnTemplate(R"sql(
    SELECT template_key, version_key, name, description FROM template
    WHERE account_id = $1 AND template_key = $2 AND version_key = $3
)sql");

const SqlText findVisible(R"sql(
    SELECT guid FROM theme
    WHERE account_id IN ($1, 0) AND guid = $2 AND (owner_user IS NULL OR owner_user = $3)
)sql");

const SqlText findPreview(R"sql(
    SELECT v.account_id, v.sha, v.mime, v.size
    FROM theme t
    JOIN theme_preview v ON v.account_id = t.account_id AND v.sha = t.preview_sha
    WHERE t.account_id IN ($1, 0) AND t.guid = $2
    ORDER BY t.account_id DESC NULLS LAST
)sql");

const SqlText listWithGuid(R"sql(
    SELECT t.account_id, t.guid, t.owner_user, t.name, t.description, t.width, t.height,
           t.created_at, t.modified_at, t.definition, t.preview_sha, v.mime, v.size
    FROM theme t
    LEFT JOIN theme_preview v ON v.account_id = t.account_id AND v.sha = t.preview_sha
    WHERE t.guid = $1
    ORDER BY t.account_id NULLS FIRST
)sql");

const SqlText listTemplatesOf(R"sql(
    SELECT template_key, version_key, required FROM theme_template
    WHERE account_id = $1 AND theme_guid = $2
    ORDER BY pos NULLS FIRST
)sql");

const SqlText putPreview(R"sql(
    INSERT INTO theme_preview (account_id, sha, size, mime) VALUES ($1, $2, $3, $4)
    ON CONFLICT (account_id, sha) DO UPDATE SET size = excluded.size, mime = excluded.mime
)sql");

const SqlText addTheme(R"sql(
    INSERT INTO theme (account_id, guid, owner_user, name, name_key, description, width, height,
                       created_at, modified_at, definition, preview_sha)
    VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9, $10, $11, $12)
)sql");

const SqlText changeTheme(R"sql(
    UPDATE theme SET owner_user = $3, name = $4, name_key = $5, description = $6, width = $7,
                     height = $8, created_at = $9, modified_at = $10, definition = $11,
                     preview_sha = $12
    WHERE account_id = $1 AND guid = $2
)sql");

const SqlText dropUses(R"sql(
    DELETE FROM theme_template WHERE account_id = $1 AND theme_guid = $2
)sql");

const SqlText addUse(R"sql(
    INSERT INTO theme_template (account_id, theme_guid, pos, template_key, version_key, required)
    VALUES ($1, $2, $3, $4, $5, $6)
)sql");

const SqlText putTemplate(R"sql(
    INSERT INTO template (account_id, template_key, version_key, name, description)
    VALUES ($1, $2, $3, $4, $5)
    ON CONFLICT (account_id, template_key, version_key) DO UPDATE SET name = excluded.name,
        description = excluded.description
)sql");

Theme themeOf(const SqlRow &row)
{
    Theme theme;
    theme.accountId = row.integer(0);
    theme.guid = row.text(1);
    theme.ownerId = row.optionalText(2).value_or(QString());
    theme.name = row.text(3);
    theme.description = row.text(4);
    theme.width = row.integer(5);
    theme.height = row.integer(6);
    theme.createdAt = row.integer(7);
    theme.modifiedAt = row.integer(8);
    theme.definition = row.text(9);
    if (!row.isNull(10))
        theme.preview = {row.text(10), row.text(11), row.integer(12)};
    return theme;
}

Template templateOf(const SqlRow &row)
{
    return {row.text(0), row.text(1), row.text(2), row.text(3)};
}

std::optional<QString> noneIfEmpty(const QString &text)
{
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

SqlValues valuesOf(const Theme &theme)
{
    return {theme.accountId,  theme.guid,           noneIfEmpty(theme.ownerId),
            theme.name,       orderKey(theme.name), theme.description,
            theme.width,      theme.height,         theme.createdAt,
            theme.modifiedAt, theme.definition,     noneIfEmpty(theme.preview.sha)};
}

SqlValues valuesOf(const ThemeUser &user, Themes::Scope scope)
{
    using Scope = Themes::Scope;
    const qint64 first = scope == Scope::Global ? 0 : user.accountId;
    const qint64 second = scope == Scope::Full ? 0 : first;
    return {first, second, user.userId, scope != Scope::User,
            scope == Scope::User || scope == Scope::Full};
}

} // namespace

Themes::Themes(Database &database)
    : m_database(database)
{
}

void Themes::visitAfter(const ThemeUser &user, Scope scope, const Place &after,
                        const PageVisitor &visit)
{
    constexpr qint64 rowsAtOnce = 8;
    const auto valuesFrom = [&](const Place &place) {
        return valuesOf(user, scope) << place.nameKey << place.guid << place.accountId;
    };
    for (Place begin = after;;) {
        const auto batch =
            m_database.rows(listThemes, valuesFrom(begin) << rowsAtOnce, [](const SqlRow &row) {
                const Theme theme = themeOf(row);
                return std::pair(theme, Place{row.text(13), theme.guid, theme.accountId});
            });
        if (batch.isEmpty())
            return;
        const Place end = batch.last().second;
        QHash<std::pair<qint64, QString>, QList<TemplateUse>> uses;
        m_database.query(listUses, valuesFrom(begin) << end.nameKey << end.guid << end.accountId,
                         [&uses](const SqlRow &row) {
                             uses[{row.integer(0), row.text(1)}].append(
                                 {row.text(2), row.text(3), row.boolean(4)});
                         });
        for (const auto &[theme, place] : batch) {
            if (!visit(theme, uses.value({theme.accountId, theme.guid}), place))
                return;
        }
        if (batch.size() < rowsAtOnce)
            return;
        begin = end;
    }
}

void Themes::list(const ThemeUser &user, Scope scope, const Visitor &visit)
{
    visitAfter(user, scope, {},
               [&visit](const Theme &theme, const QList<TemplateUse> &uses, const Place &) {
                   visit(theme, uses);
                   return true;
               });
}

std::optional<Template> Themes::findTemplate(qint64 accountId, const QString &key,
                                             const QString &versionKey)
{
    return m_database.row(findTemplateByKeys, {accountId, key, versionKey}, templateOf);
}

std::optional<Template> Themes::ownTemplate(qint64 accountId, const QString &key,
                                            const QString &versionKey)
{
    return m_database.row(findOwnTemplate, {accountId, key, versionKey}, templateOf);
}

bool Themes::isVisible(const ThemeUser &user, const QString &guid)
{
    return m_database
        .row(findVisible, {user.accountId, guid, user.userId},
             [](const SqlRow &row) { return row.text(0); })
        .has_value();
}

std::optional<FoundPreview> Themes::preview(qint64 accountId, const QString &guid)
{
    return m_database.row(findPreview, {accountId, guid}, [](const SqlRow &row) {
        return FoundPreview{row.integer(0), {row.text(1), row.text(2), row.integer(3)}};
    });
}

QList<Theme> Themes::withGuid(const QString &guid)
{
    return m_database.rows(listWithGuid, {guid}, themeOf);
}

QList<TemplateUse> Themes::templatesOf(qint64 accountId, const QString &guid)
{
    return m_database.rows(listTemplatesOf, {accountId, guid}, [](const SqlRow &row) {
        return TemplateUse{row.text(0), row.text(1), row.boolean(2)};
    });
}

void Themes::notePreview(const Theme &theme)
{
    if (!theme.preview.sha.isEmpty())
        m_database.exec(putPreview, {theme.accountId, theme.preview.sha, theme.preview.size,
                                     theme.preview.mime});
}

void Themes::add(const Theme &theme)
{
    notePreview(theme);
    m_database.exec(addTheme, valuesOf(theme));
}

void Themes::change(const Theme &theme)
{
    notePreview(theme);
    m_database.exec(changeTheme, valuesOf(theme));
}

void Themes::setTemplates(qint64 accountId, const QString &guid,
                          const QList<TemplateUse> &templates)
{
    m_database.exec(dropUses, {accountId, guid});
    qint64 position = 0;
    for (const TemplateUse &use : templates)
        m_database.exec(addUse,
                        {accountId, guid, position++, use.key, use.versionKey, use.required});
}

void Themes::storeTemplate(qint64 accountId, const Template &entry)
{
    m_database.exec(putTemplate,
                    {accountId, entry.key, entry.versionKey, entry.name, entry.description});
}

} // namespace Zel
