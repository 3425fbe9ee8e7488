// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/importcount.h"
#include "service/store/stagedblobs.h"

namespace Zel {

/// Takes in the bytes of the previews that are not there yet: rows must not come before them. The
/// caller has a hold for storing.
void stageNewPreviews(Store &store, const WorkspaceFiles &files, StagedBlobs &blobs);

/// The part of an import that takes in templates and themes; inside its transaction.
class ThemeImport
{
public:
    ThemeImport(Store &store, const WorkspaceFiles &files, StagedBlobs &blobs)
        : m_store(store)
        , m_files(files)
        , m_blobs(blobs)
    {
    }

    QList<ImportCount> run();

private:
    ImportOutcome takeTemplate(const WorkspaceFiles::TemplateEntry &entry);
    ImportOutcome takeTheme(const WorkspaceFiles::ThemeEntry &entry);
    ImportOutcome takeTemplates(const WorkspaceFiles::ThemeTemplatesEntry &entry);
    void expectAccount(qint64 accountId, const FilePlace &place);
    QString ownerOf(const WorkspaceFiles::ThemeEntry &entry);
    std::optional<Theme> known(const Theme &theme, const FilePlace &place);

    Store &m_store;
    const WorkspaceFiles &m_files;
    StagedBlobs &m_blobs;
};

} // namespace Zel
