// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/workspacefileerror.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QSet>
#include <QString>

#include <functional>
#include <optional>

namespace Zel {

/// One record of a JSON or CSV file with the place it stands at. Each field is read once by its
/// type; whatever is wrong throws `WorkspaceFileError` with that place.
class ZEL_EXPORT FileRecord
{
public:
    FilePlace place;
    QJsonObject fields;

    /// A text of at most `longest` UTF-16 units, not empty.
    QString text(const QString &name, qsizetype longest);
    QString textOrEmpty(const QString &name, qsizetype longest);
    /// A whole number from `least` to `most`; in CSV its digits.
    qint64 integer(const QString &name, qint64 least, qint64 most);
    /// "true" or "false".
    bool boolean(const QString &name);
    /// An ISO 8601 date and time with its zone ("2026-03-04T15:00:00Z") as milliseconds UTC;
    /// nothing for an empty text. In JSON also the number of milliseconds, and null for nothing.
    std::optional<qint64> timeOrEmpty(const QString &name);
    /// The same for a time that must be there.
    qint64 time(const QString &name);
    QJsonArray list(const QString &name);
    QJsonObject object(const QString &name);
    /// A UUID without braces, in lower case.
    QString guid(const QString &name);

    /// Whether the record has the field; for those that may be left out.
    bool has(const QString &name) const { return fields.contains(name); }

    /// Called after the last field: throws when there is one that nobody asked for.
    void expectNoMore() const;

    [[noreturn]] void refuse(const QString &sentence) const;

private:
    QJsonValue take(const QString &name);

    QSet<QString> m_taken;
};

/// The records of a JSON file that holds a list of objects.
ZEL_EXPORT QList<FileRecord> readJsonRecords(const QString &path);

using RecordVisitor = std::function<void(FileRecord &)>;

/// Shows the records of a file that holds one JSON object a line to `visit`, one at a time: a list
/// of a million takes gigabytes. Empty lines are passed over.
ZEL_EXPORT void visitJsonLines(const QString &path, const RecordVisitor &visit);

/// The same for a CSV file (RFC 4180, UTF-8, comma) whose first line names the columns.
ZEL_EXPORT void visitCsvRecords(const QString &path, const RecordVisitor &visit);

/// The records of a CSV file that is not long.
ZEL_EXPORT QList<FileRecord> readCsvRecords(const QString &path);

} // namespace Zel
