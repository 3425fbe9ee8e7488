// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// Templates, themes and data records.
#include "service/store/exportjob.h"
#include "service/store/store.h"

namespace Zel {

namespace {

const SqlText listTemplates(R"sql(
    SELECT template_key, version_key, name, description FROM template
    WHERE account_id = $1
    ORDER BY template_key NULLS FIRST, version_key NULLS FIRST
)sql");

const SqlText listGuids(R"sql(
    SELECT guid FROM theme WHERE account_id = $1 ORDER BY name_key NULLS FIRST, guid NULLS FIRST
)sql");

const SqlText listRecords(R"sql(
    SELECT theme_guid FROM data_record WHERE account_id = $1 AND edited = $2
    ORDER BY theme_guid NULLS FIRST
)sql");

QStringList textsOf(ExportJob &job, const SqlText &text, const SqlValues &values)
{
    return job.store.database.rows(text, values, [](const SqlRow &row) { return row.text(0); });
}

/// 0, which is every account, first.
QList<qint64> accountNumbers(const ExportJob &job)
{
    QList<qint64> numbers{0};
    for (const Account &account : job.accounts)
        numbers << account.accountId;
    return numbers;
}

QString extensionFor(const QString &mime)
{
    if (mime == QLatin1String("image/svg+xml"))
        return QStringLiteral("svg");
    return mime.section(QLatin1Char('/'), 1);
}

void addTheme(ExportJob &job, CsvWriter &themes, CsvWriter &uses, const Theme &theme)
{
    const QString account = QString::number(theme.accountId);
    const QString base = QStringLiteral("themes/%1/%2.").arg(account, theme.guid);
    QString definition;
    if (!theme.definition.isEmpty()) {
        definition = base + QLatin1String("xml");
        job.folder.write(definition, theme.definition.toUtf8());
    }
    QString preview;
    if (!theme.preview.sha.isEmpty()) {
        preview = base + extensionFor(theme.preview.mime);
        job.bytes.append({theme.accountId, theme.preview.sha, preview});
    }
    themes.add({account, theme.guid, job.logins.value(theme.ownerId), theme.name, theme.description,
                QString::number(theme.width), QString::number(theme.height),
                timeText(theme.createdAt), timeText(theme.modifiedAt), definition, preview});
    const QList<TemplateUse> all = job.store.themes.templatesOf(theme.accountId, theme.guid);
    for (const TemplateUse &use : all)
        uses.add({account, theme.guid, use.key, use.versionKey, flagText(use.required)});
    job.count(QStringLiteral("themes"));
    job.count(QStringLiteral("template lists"), all.isEmpty() ? 0 : 1);
}

/// What all fields of a record have in common stands before each.
void addFields(ExportJob &job, CsvWriter &list, const QStringList &before,
               const QList<RecordEntry> &entries, const QString &base)
{
    // What is longer cannot be read in a line anyway.
    constexpr qsizetype longestInLine = 2000;
    qint64 number = 0;
    for (const RecordEntry &entry : entries) {
        ++number;
        QString text = entry.value.text;
        QString file;
        if (text.size() > longestInLine) {
            file = QStringLiteral("%1-%2.txt").arg(base).arg(number);
            job.folder.write(file, text.toUtf8());
            text.clear();
        }
        list.add(before + QStringList{entry.label, entry.type, flagText(entry.hidden), entry.ext,
                                      entry.source, entry.buttonText, QString::number(entry.width),
                                      QString::number(entry.height), entry.value.guid,
                                      entry.value.dependencies, text, file});
    }
    job.count(QStringLiteral("data records"));
}

const QStringList fieldColumns{QStringLiteral("label"),  QStringLiteral("type"),
                               QStringLiteral("hidden"), QStringLiteral("ext"),
                               QStringLiteral("source"), QStringLiteral("buttonText"),
                               QStringLiteral("width"),  QStringLiteral("height"),
                               QStringLiteral("guid"),   QStringLiteral("assetDependencies"),
                               QStringLiteral("text"),   QStringLiteral("file")};

} // namespace

void exportThemes(ExportJob &job)
{
    CsvWriter templates(job.folder, QStringLiteral("templates.csv"),
                        {QStringLiteral("account"), QStringLiteral("template"),
                         QStringLiteral("version"), QStringLiteral("name"),
                         QStringLiteral("description")});
    CsvWriter themes(job.folder, QStringLiteral("themes.csv"),
                     {QStringLiteral("account"), QStringLiteral("guid"), QStringLiteral("owner"),
                      QStringLiteral("name"), QStringLiteral("description"),
                      QStringLiteral("width"), QStringLiteral("height"), QStringLiteral("created"),
                      QStringLiteral("modified"), QStringLiteral("definition"),
                      QStringLiteral("preview")});
    CsvWriter uses(job.folder, QStringLiteral("theme-templates.csv"),
                   {QStringLiteral("account"), QStringLiteral("theme"), QStringLiteral("template"),
                    QStringLiteral("version"), QStringLiteral("required")});
    qint64 done = 0;
    const QList<qint64> numbers = accountNumbers(job);
    for (const qint64 number : numbers) {
        job.store.database.query(listTemplates, {number}, [&](const SqlRow &row) {
            templates.add(
                {QString::number(number), row.text(0), row.text(1), row.text(2), row.text(3)});
            job.count(QStringLiteral("templates"));
        });
        // One at a time: a definition may have megabytes.
        const QStringList guids = textsOf(job, listGuids, {number});
        for (const QString &guid : guids) {
            const QList<Theme> found = job.store.themes.withGuid(guid);
            for (const Theme &theme : found) {
                if (theme.accountId == number)
                    addTheme(job, themes, uses, theme);
            }
            tell(job.options.progress, QStringLiteral("themes"), ++done);
        }
    }
    templates.finish();
    themes.finish();
    uses.finish();
}

void exportDataRecords(ExportJob &job)
{
    const QStringList key{QStringLiteral("account"), QStringLiteral("theme")};
    CsvWriter imported(job.folder, QStringLiteral("data-records.csv"), key + fieldColumns);
    CsvWriter saved(job.folder, QStringLiteral("saved-data-records.csv"),
                    key + QStringList{QStringLiteral("savedBy"), QStringLiteral("version")} +
                        fieldColumns);
    const QList<qint64> numbers = accountNumbers(job);
    for (const qint64 number : numbers) {
        const QString account = QString::number(number);
        const QStringList themes = textsOf(job, listRecords, {number, false});
        for (const QString &theme : themes) {
            if (const auto record = job.store.dataRecords.imported(number, theme))
                addFields(job, imported, {account, theme}, record->entries,
                          QStringLiteral("records/%1/%2").arg(account, theme));
        }
        const QStringList edited = textsOf(job, listRecords, {number, true});
        for (const QString &theme : edited) {
            if (const auto record = job.store.dataRecords.saved(number, theme))
                addFields(job, saved,
                          {account, theme, job.logins.value(record->savedById),
                           QString::number(record->version)},
                          record->entries,
                          QStringLiteral("saved-records/%1/%2").arg(account, theme));
        }
    }
    imported.finish();
    saved.finish();
}

} // namespace Zel
