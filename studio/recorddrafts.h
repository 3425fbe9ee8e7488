// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/datarecord.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class QLockFile;

namespace Studio {

/// What was typed into a record and not saved yet.
struct RecordDraft
{
    /// A field with the value it was loaded with and the one it has now. The label, the type and
    /// how many of these came before it in the record name it.
    struct Entry
    {
        QString label;
        QString type;
        QXSC::DataRecordValue loaded;
        QXSC::DataRecordValue value;

        bool operator==(const Entry &) const = default;
    };

    QString themeGuid;
    QString themeName;
    /// When it was kept.
    QDateTime kept;
    /// All entries, also those that were not changed.
    QList<Entry> entries;
    /// The file it came from; empty for one that was not read.
    QString file;
};

/// The file of the draft being edited, locked meanwhile: another Studio of the same person does not
/// offer it. Readable by the person alone.
class DraftFile
{
public:
    explicit DraftFile(const QString &path);
    /// The draft stays for the next start.
    ~DraftFile();

    /// Keeps the draft in place of the one kept before. Returns why it cannot be; empty when it is
    /// kept.
    QString keep(const RecordDraft &draft);
    void remove();

private:
    bool claim();

    QString m_path;
    std::unique_ptr<QLockFile> m_lock;
};

/// Drafts of records on this computer, so that a crash does not take what was typed. They belong to
/// a person at a server, and an account.
class RecordDrafts
{
public:
    /// @param folder where the drafts lie; made when the first one is kept
    explicit RecordDrafts(const QString &folder = usualFolder());

    static QString usualFolder();

    /// Whose drafts are meant from now on: server, person, account.
    void setOwner(const QStringList &owner) { m_owner = owner; }

    /// A file for a draft to come.
    std::unique_ptr<DraftFile> begin() const;
    /// Drafts that nobody edits, the newest first. Files that cannot be read are left alone.
    QList<RecordDraft> waiting() const;
    /// Deletes a draft that was waiting.
    static void discard(const RecordDraft &draft);

private:
    QString prefix() const;

    QString m_folder;
    QStringList m_owner;
};

} // namespace Studio
