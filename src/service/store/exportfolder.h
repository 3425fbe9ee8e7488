// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <stdexcept>

class QFile;

namespace Zel {

/// An export that could not be written: the folder is not to be used, or the disk refuses.
class ZEL_EXPORT ExportError : public std::runtime_error
{
public:
    explicit ExportError(const QString &sentence);
    ~ExportError() override;
    ExportError(const ExportError &);
    ExportError &operator=(const ExportError &);
};

/// The folder that is written. Until `finish` it lies beside its place under a name with ".part-",
/// so that what was cut is never taken for a whole one; without `finish` it is removed. Only its
/// owner may read it. Functions throw `ExportError`.
class ZEL_EXPORT ExportFolder
{
public:
    /// Refuses a place where something is already, but for an empty folder.
    explicit ExportFolder(const QString &place);
    ~ExportFolder();
    ExportFolder(const ExportFolder &) = delete;
    ExportFolder &operator=(const ExportFolder &) = delete;

    /// Makes a file by its path inside the folder, "themes/NAME.xml", with the folders it needs.
    std::unique_ptr<QFile> open(const QString &path);
    void write(const QString &path, const QByteArray &bytes);

    /// Removes what was written, to begin once more.
    void clear();
    /// Has everything written out to the disk and gives the folder its name.
    void finish();

private:
    QString m_place;
    QString m_folder;
};

/// Writes to a file, or throws with the reason.
void writeAll(QFile &file, const QByteArray &bytes);
void closeWhole(QFile &file);

/// A list as comma-separated values (RFC 4180, UTF-8, lines end with LF), of any length.
class CsvWriter
{
public:
    CsvWriter(ExportFolder &folder, const QString &path, const QStringList &columns);
    ~CsvWriter();

    void add(const QStringList &cells);
    /// To be called last.
    void finish();

private:
    std::unique_ptr<QFile> m_file;
    qsizetype m_columns;
    QByteArray m_buffer;
};

/// A `CsvWriter` that makes its file when there is a first line.
class LazyCsv
{
public:
    LazyCsv(ExportFolder &folder, const QString &path, const QStringList &columns);

    void add(const QStringList &cells);
    void finish();

    qint64 lines() const { return m_lines; }

private:
    ExportFolder &m_folder;
    QString m_path;
    QStringList m_columns;
    std::unique_ptr<CsvWriter> m_writer;
    qint64 m_lines = 0;
};

} // namespace Zel
