// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The files of themes and templates.
#include "service/store/workspacefiles.h"

#include "service/store/recordfile.h"
#include "service/store/themesources.h"
#include "service/store/users.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <limits>

namespace Zel {

namespace {

constexpr qint64 largestNumber = std::numeric_limits<qint32>::max();
constexpr qsizetype longestPath = 4096;

/// 0 stands for every account.
qint64 accountIn(FileRecord &record)
{
    return record.integer(QStringLiteral("account"), 0, largestNumber);
}

void expectOnce(QSet<QString> &seen, const QString &key, const FileRecord &record)
{
    if (seen.contains(key))
        record.refuse(QStringLiteral("stands in this file twice."));
    seen.insert(key);
}

qint64 timeIn(FileRecord &record, const QString &name)
{
    const auto time = record.timeOrEmpty(name);
    if (!time)
        record.refuse(QStringLiteral("\"%1\" must be a time.").arg(name));
    return *time;
}

/// The file a field names, from where the list lies; empty for an empty field.
QString fileIn(FileRecord &record, const QString &name)
{
    const QString file = record.textOrEmpty(name, longestPath);
    return file.isEmpty() ? QString() : QFileInfo(record.place.file).dir().filePath(file);
}

} // namespace

void WorkspaceFiles::readTemplates(const QString &path)
{
    QSet<QString> seen;
    for (FileRecord &record : readCsvRecords(path)) {
        TemplateEntry entry;
        entry.place = record.place;
        entry.accountId = accountIn(record);
        entry.entry.key = record.text(QStringLiteral("template"), Themes::longestKey);
        entry.entry.versionKey = record.text(QStringLiteral("version"), Themes::longestKey);
        entry.entry.name = record.text(QStringLiteral("name"), Themes::longestName);
        entry.entry.description =
            record.textOrEmpty(QStringLiteral("description"), Themes::longestDescription);
        record.expectNoMore();
        expectOnce(
            seen,
            QStringLiteral("%1\n%2\n%3")
                .arg(QString::number(entry.accountId), entry.entry.key, entry.entry.versionKey),
            record);
        templates << entry;
    }
}

void WorkspaceFiles::readThemes(const QString &path)
{
    QSet<QString> seen;
    for (FileRecord &record : readCsvRecords(path)) {
        ThemeEntry entry;
        entry.place = record.place;
        Theme &theme = entry.theme;
        theme.accountId = accountIn(record);
        theme.guid = record.guid(QStringLiteral("guid"));
        entry.ownerLogin = record.textOrEmpty(QStringLiteral("owner"), Users::longestLogin);
        if (theme.accountId == 0 && !entry.ownerLogin.isEmpty())
            record.refuse(QStringLiteral("a theme of every account has no owner."));
        theme.name = record.text(QStringLiteral("name"), Themes::longestName);
        theme.description =
            record.textOrEmpty(QStringLiteral("description"), Themes::longestDescription);
        theme.width = record.integer(QStringLiteral("width"), 0, largestNumber);
        theme.height = record.integer(QStringLiteral("height"), 0, largestNumber);
        theme.createdAt = timeIn(record, QStringLiteral("created"));
        theme.modifiedAt = timeIn(record, QStringLiteral("modified"));
        entry.definitionFile = fileIn(record, QStringLiteral("definition"));
        entry.previewFile = fileIn(record, QStringLiteral("preview"));
        record.expectNoMore();
        expectOnce(seen, theme.guid, record);
        // Only to find what is wrong with them: they are read again one by one when stored.
        if (!entry.definitionFile.isEmpty())
            readDefinition(entry.definitionFile, entry.place);
        if (!entry.previewFile.isEmpty())
            readPreview(entry.previewFile, entry.place, theme.preview);
        themes << entry;
    }
}

void WorkspaceFiles::readThemeTemplates(const QString &path)
{
    QHash<QString, qsizetype> known; // by account and theme
    for (FileRecord &record : readCsvRecords(path)) {
        ThemeTemplatesEntry entry;
        entry.place = record.place;
        entry.accountId = accountIn(record);
        entry.guid = record.guid(QStringLiteral("theme"));
        TemplateUse use;
        use.key = record.text(QStringLiteral("template"), Themes::longestKey);
        use.versionKey = record.text(QStringLiteral("version"), Themes::longestKey);
        use.required = record.boolean(QStringLiteral("required"));
        record.expectNoMore();
        const QString key = QStringLiteral("%1/%2").arg(entry.accountId).arg(entry.guid);
        if (!known.contains(key)) {
            known.insert(key, themeTemplates.size());
            themeTemplates << entry;
        }
        ThemeTemplatesEntry &all = themeTemplates[known.value(key)];
        for (const TemplateUse &other : std::as_const(all.templates)) {
            if (other.key == use.key && other.versionKey == use.versionKey)
                record.refuse(QStringLiteral("the theme has this template already."));
        }
        if (all.templates.size() == Themes::mostTemplates)
            record.refuse(
                QStringLiteral("a theme has at most %1 templates.").arg(Themes::mostTemplates));
        all.templates << use;
        all.places << record.place;
    }
}

} // namespace Zel
