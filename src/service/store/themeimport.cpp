// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/themeimport.h"

#include "service/store/store.h"
#include "service/store/themesources.h"

#include <algorithm>

namespace Zel {

void stageNewPreviews(Store &store, const WorkspaceFiles &files, StagedBlobs &blobs)
{
    for (const WorkspaceFiles::ThemeEntry &entry : files.themes) {
        const QString sha = entry.theme.preview.sha;
        const BlobId blob{entry.theme.accountId, sha};
        if (sha.isEmpty() || store.blobs.has(blob))
            continue;
        ThemePreview now;
        const QByteArray bytes = readPreview(entry.previewFile, entry.place, now);
        if (now.sha != sha)
            throw WorkspaceFileError(
                entry.place,
                QStringLiteral("the file %1 changes while it is read.").arg(entry.previewFile));
        blobs.take(blob, bytes);
    }
}

QList<ImportCount> ThemeImport::run()
{
    return {countImports(QStringLiteral("templates"), m_files.templates,
                         [this](const auto &entry) { return takeTemplate(entry); }),
            countImports(QStringLiteral("themes"), m_files.themes,
                         [this](const auto &entry) { return takeTheme(entry); }),
            countImports(QStringLiteral("template lists"), m_files.themeTemplates,
                         [this](const auto &entry) { return takeTemplates(entry); })};
}

void ThemeImport::expectAccount(qint64 accountId, const FilePlace &place)
{
    if (accountId != 0 && !m_store.accounts.find(accountId))
        throw WorkspaceFileError(place, QStringLiteral("there is no account %1.").arg(accountId));
}

QString ThemeImport::ownerOf(const WorkspaceFiles::ThemeEntry &entry)
{
    if (entry.ownerLogin.isEmpty())
        return QString();
    const auto owner = m_store.users.find(entry.ownerLogin);
    if (!owner)
        throw WorkspaceFileError(entry.place,
                                 QStringLiteral("there is no user \"%1\".").arg(entry.ownerLogin));
    // Who has left the account has their themes back on coming again.
    return owner->userId;
}

/// A project names its theme by the guid alone, so that is one theme's wherever it is seen.
std::optional<Theme> ThemeImport::known(const Theme &theme, const FilePlace &place)
{
    const QList<Theme> all = m_store.themes.withGuid(theme.guid);
    if (all.isEmpty())
        return std::nullopt;
    if (all.first().accountId != theme.accountId)
        throw WorkspaceFileError(place, QStringLiteral("the theme %1 belongs to account %2.")
                                            .arg(theme.guid)
                                            .arg(all.first().accountId));
    return all.first();
}

ImportOutcome ThemeImport::takeTemplate(const WorkspaceFiles::TemplateEntry &entry)
{
    expectAccount(entry.accountId, entry.place);
    const auto known =
        m_store.themes.ownTemplate(entry.accountId, entry.entry.key, entry.entry.versionKey);
    if (known == entry.entry)
        return ImportOutcome::Unchanged;
    m_store.themes.storeTemplate(entry.accountId, entry.entry);
    return known ? ImportOutcome::Changed : ImportOutcome::Added;
}

ImportOutcome ThemeImport::takeTheme(const WorkspaceFiles::ThemeEntry &entry)
{
    expectAccount(entry.theme.accountId, entry.place);
    Theme theme = entry.theme;
    theme.ownerId = ownerOf(entry);
    if (!entry.definitionFile.isEmpty())
        theme.definition = readDefinition(entry.definitionFile, entry.place);
    if (!theme.preview.sha.isEmpty())
        m_blobs.name({theme.accountId, theme.preview.sha});
    const auto before = known(theme, entry.place);
    if (before == theme)
        return ImportOutcome::Unchanged;
    if (before)
        m_store.themes.change(theme);
    else
        m_store.themes.add(theme);
    return before ? ImportOutcome::Changed : ImportOutcome::Added;
}

ImportOutcome ThemeImport::takeTemplates(const WorkspaceFiles::ThemeTemplatesEntry &entry)
{
    Theme theme;
    theme.accountId = entry.accountId;
    theme.guid = entry.guid;
    if (!known(theme, entry.place))
        throw WorkspaceFileError(
            entry.place,
            QStringLiteral("account %1 has no theme %2.").arg(entry.accountId).arg(entry.guid));
    for (qsizetype i = 0; i < entry.templates.size(); ++i) {
        const TemplateUse &use = entry.templates.at(i);
        if (!m_store.themes.findTemplate(entry.accountId, use.key, use.versionKey))
            throw WorkspaceFileError(
                entry.places.at(i),
                QStringLiteral("account %1 has no template \"%2\" of version \"%3\".")
                    .arg(QString::number(entry.accountId), use.key, use.versionKey));
    }
    const QList<TemplateUse> before = m_store.themes.templatesOf(entry.accountId, entry.guid);
    if (before == entry.templates)
        return ImportOutcome::Unchanged;
    m_store.themes.setTemplates(entry.accountId, entry.guid, entry.templates);
    return before.isEmpty() ? ImportOutcome::Added : ImportOutcome::Changed;
}

} // namespace Zel
