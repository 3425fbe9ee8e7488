// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/exportfolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace Zel {

namespace {

[[noreturn]] void fail(const QString &doing, int systemError)
{
    throw ExportError(QStringLiteral("cannot %1: %2.")
                          .arg(doing, QString::fromLocal8Bit(std::strerror(systemError))));
}

[[noreturn]] void refuse(const QFile &file)
{
    throw ExportError(
        QStringLiteral("%1 cannot be written: %2.").arg(file.fileName(), file.errorString()));
}

/// One cell; quoted where it could be taken for more than one.
QByteArray cellOf(const QString &text)
{
    QByteArray bytes = text.toUtf8();
    const bool isPlain = bytes.indexOf('"') < 0 && bytes.indexOf(',') < 0 &&
                         bytes.indexOf('\n') < 0 && bytes.indexOf('\r') < 0;
    return isPlain ? bytes : '"' + bytes.replace('"', "\"\"") + '"';
}

} // namespace

ExportError::ExportError(const QString &sentence)
    : std::runtime_error(sentence.toStdString())
{
}

ExportError::~ExportError() = default;
ExportError::ExportError(const ExportError &) = default;
ExportError &ExportError::operator=(const ExportError &) = default;

ExportFolder::ExportFolder(const QString &place)
    : m_place(QDir::cleanPath(QFileInfo(place).absoluteFilePath()))
{
    const QFileInfo info(m_place);
    const bool isEmptyFolder = info.isDir() && !info.isSymLink() && QDir(m_place).isEmpty();
    if ((info.exists() || info.isSymLink()) && !isEmptyFolder)
        throw ExportError(
            QStringLiteral("%1 is there already and not an empty folder.").arg(m_place));
    QByteArray name = QFile::encodeName(m_place + QStringLiteral(".part-XXXXXX"));
    if (::mkdtemp(name.data()) == nullptr)
        fail(QStringLiteral("make a folder beside %1").arg(m_place), errno);
    m_folder = QFile::decodeName(name);
}

ExportFolder::~ExportFolder()
{
    if (!m_folder.isEmpty())
        QDir(m_folder).removeRecursively();
}

std::unique_ptr<QFile> ExportFolder::open(const QString &path)
{
    const QString whole = m_folder + QLatin1Char('/') + path;
    if (!QDir().mkpath(QFileInfo(whole).path()))
        throw ExportError(
            QStringLiteral("the folder %1 cannot be made.").arg(QFileInfo(whole).path()));
    auto file = std::make_unique<QFile>(whole);
    // Whoever writes has large pieces; a buffer would only hide why one could not be written.
    if (!file->open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        refuse(*file);
    return file;
}

void ExportFolder::write(const QString &path, const QByteArray &bytes)
{
    const auto file = open(path);
    writeAll(*file, bytes);
    closeWhole(*file);
}

void ExportFolder::clear()
{
    const QFileInfoList all =
        QDir(m_folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QFileInfo &one : all) {
        if (!(one.isDir() ? QDir(one.filePath()).removeRecursively()
                          : QFile::remove(one.filePath())))
            throw ExportError(QStringLiteral("%1 cannot be removed.").arg(one.filePath()));
    }
}

void ExportFolder::finish()
{
    const QByteArray name = QFile::encodeName(m_folder);
    const int handle = ::open(name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        fail(QStringLiteral("open %1").arg(m_folder), errno);
    // Everything at once: waiting for each of many small files takes minutes.
    const int result = ::syncfs(handle);
    const int error = errno;
    ::close(handle);
    if (result != 0)
        fail(QStringLiteral("write out %1").arg(m_folder), error);
    // Only an empty folder can be replaced by another one, so nothing is lost that came meanwhile.
    if (std::rename(name.constData(), QFile::encodeName(m_place).constData()) != 0)
        fail(QStringLiteral("name the folder %1").arg(m_place), errno);
    m_folder.clear();
}

void writeAll(QFile &file, const QByteArray &bytes)
{
    // A disk that is filling up takes the beginning of a piece and says why with the rest.
    for (qsizetype at = 0; at < bytes.size();) {
        const qint64 count = file.write(bytes.constData() + at, bytes.size() - at);
        if (count <= 0)
            refuse(file);
        at += count;
    }
}

void closeWhole(QFile &file)
{
    file.close();
    if (file.error() != QFileDevice::NoError)
        refuse(file);
}

CsvWriter::CsvWriter(ExportFolder &folder, const QString &path, const QStringList &columns)
    : m_file(folder.open(path))
    , m_columns(columns.size())
{
    add(columns);
}

CsvWriter::~CsvWriter() = default;

void CsvWriter::add(const QStringList &cells)
{
    constexpr qsizetype bufferBytes = 64 * 1024;
    if (cells.size() != m_columns)
        throw std::logic_error("a line of an export has another number of cells than its head");
    for (qsizetype i = 0; i < cells.size(); ++i) {
        if (i > 0)
            m_buffer += ',';
        m_buffer += cellOf(cells.at(i));
    }
    m_buffer += '\n';
    if (m_buffer.size() < bufferBytes)
        return;
    writeAll(*m_file, m_buffer);
    m_buffer.clear();
}

void CsvWriter::finish()
{
    writeAll(*m_file, m_buffer);
    m_buffer.clear();
    closeWhole(*m_file);
}

LazyCsv::LazyCsv(ExportFolder &folder, const QString &path, const QStringList &columns)
    : m_folder(folder)
    , m_path(path)
    , m_columns(columns)
{
}

void LazyCsv::add(const QStringList &cells)
{
    if (!m_writer)
        m_writer = std::make_unique<CsvWriter>(m_folder, m_path, m_columns);
    m_writer->add(cells);
    ++m_lines;
}

void LazyCsv::finish()
{
    if (m_writer)
        m_writer->finish();
}

} // namespace Zel
