// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/recorddrafts.h"

#include "studio/log.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUuid>

#include <algorithm>

namespace Studio {

namespace {

constexpr int FormatNumber = 1;
/// The service takes records of 16 MiB; a draft has every value twice, and JSON may double a text.
constexpr qint64 LargestFile = 96LL * 1024 * 1024;

QJsonObject toJson(const QXSC::DataRecordValue &value)
{
    return {{QStringLiteral("text"), value.text},
            {QStringLiteral("guid"), value.guid},
            {QStringLiteral("assetDependencies"), value.assetDependencies}};
}

QXSC::DataRecordValue valueFrom(const QJsonValue &json)
{
    return {json[QStringLiteral("text")].toString(), json[QStringLiteral("guid")].toString(),
            json[QStringLiteral("assetDependencies")].toString()};
}

QByteArray written(const RecordDraft &draft)
{
    QJsonArray entries;
    for (const RecordDraft::Entry &entry : draft.entries)
        entries.append(QJsonObject{{QStringLiteral("label"), entry.label},
                                   {QStringLiteral("type"), entry.type},
                                   {QStringLiteral("loaded"), toJson(entry.loaded)},
                                   {QStringLiteral("value"), toJson(entry.value)}});
    return QJsonDocument(
               QJsonObject{{QStringLiteral("format"), FormatNumber},
                           {QStringLiteral("theme"), draft.themeGuid},
                           {QStringLiteral("themeName"), draft.themeName},
                           {QStringLiteral("kept"), draft.kept.toUTC().toString(Qt::ISODateWithMs)},
                           {QStringLiteral("entries"), entries}})
        .toJson(QJsonDocument::Compact);
}

std::optional<RecordDraft> readDraft(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > LargestFile)
        return std::nullopt;
    const QJsonDocument json = QJsonDocument::fromJson(file.readAll());
    if (json[QStringLiteral("format")].toInt() != FormatNumber ||
        !json[QStringLiteral("entries")].isArray())
        return std::nullopt;
    RecordDraft draft;
    draft.file = path;
    draft.themeGuid = json[QStringLiteral("theme")].toString();
    draft.themeName = json[QStringLiteral("themeName")].toString();
    draft.kept = QDateTime::fromString(json[QStringLiteral("kept")].toString(), Qt::ISODateWithMs);
    const QJsonArray entries = json[QStringLiteral("entries")].toArray();
    for (const QJsonValue &entry : entries)
        draft.entries.append({entry[QStringLiteral("label")].toString(),
                              entry[QStringLiteral("type")].toString(),
                              valueFrom(entry[QStringLiteral("loaded")]),
                              valueFrom(entry[QStringLiteral("value")])});
    if (draft.themeGuid.isEmpty() || !draft.kept.isValid() || draft.entries.isEmpty())
        return std::nullopt;
    return draft;
}

QString lockOf(const QString &file)
{
    return file + QStringLiteral(".lock");
}

} // namespace

DraftFile::DraftFile(const QString &path)
    : m_path(path)
{
}

DraftFile::~DraftFile() = default;

bool DraftFile::claim()
{
    if (m_lock)
        return true;
    if (!QDir().mkpath(QFileInfo(m_path).path()))
        return false;
    auto lock = std::make_unique<QLockFile>(lockOf(m_path));
    lock->setStaleLockTime(0); // only a process that has ended gives it up
    if (!lock->tryLock(0))
        return false;
    m_lock = std::move(lock);
    return true;
}

QString DraftFile::keep(const RecordDraft &draft)
{
    if (!claim())
        return QObject::tr("The folder %1 cannot be written.")
            .arg(QDir::toNativeSeparators(QFileInfo(m_path).path()));
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    file.write(written(draft));
    return file.commit() ? QString() : file.errorString();
}

void DraftFile::remove()
{
    if (m_lock)
        QFile::remove(m_path);
}

RecordDrafts::RecordDrafts(const QString &folder)
    : m_folder(folder)
{
}

QString RecordDrafts::usualFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/zel-studio/drafts");
}

QString RecordDrafts::prefix() const
{
    const QByteArray owner = m_owner.join(QChar(0)).toUtf8();
    return QString::fromLatin1(
        QCryptographicHash::hash(owner, QCryptographicHash::Sha256).toHex().left(24));
}

std::unique_ptr<DraftFile> RecordDrafts::begin() const
{
    return std::make_unique<DraftFile>(
        QStringLiteral("%1/%2-%3.json")
            .arg(m_folder, prefix(), QUuid::createUuid().toString(QUuid::Id128)));
}

QList<RecordDraft> RecordDrafts::waiting() const
{
    QList<RecordDraft> drafts;
    const QStringList names =
        QDir(m_folder).entryList({prefix() + QStringLiteral("-*.json")}, QDir::Files);
    for (const QString &name : names) {
        const QString path = m_folder + QLatin1Char('/') + name;
        QLockFile lock(lockOf(path));
        lock.setStaleLockTime(0);
        if (!lock.tryLock(0))
            continue; // being edited
        if (std::optional<RecordDraft> draft = readDraft(path))
            drafts.append(*std::move(draft));
        else
            qCWarning(studioLog, "The draft %ls cannot be read.", qUtf16Printable(path));
    }
    std::sort(drafts.begin(), drafts.end(),
              [](const RecordDraft &a, const RecordDraft &b) { return a.kept > b.kept; });
    return drafts;
}

void RecordDrafts::discard(const RecordDraft &draft)
{
    QFile::remove(draft.file);
}

} // namespace Studio
