// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/uploadfile.h"

#include "common/contract/serviceerror.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <vector>

namespace QXSC {

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(QXSC::ServiceError)
};

[[noreturn]] void refuse(const QString &sentence)
{
    throw ServiceError(ServiceError::Kind::Invalid, sentence);
}

} // namespace

UploadFile::UploadFile(const QString &path)
    : m_path(path)
    , m_file(path)
{
    const QString shown = QDir::toNativeSeparators(path);
    if (path.startsWith(QLatin1String("http")))
        refuse(Texts::tr("%1 is an address on the web. Only files of this computer can be "
                         "uploaded: save it as a file first, then choose that file.")
                   .arg(path));
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists())
        refuse(Texts::tr("The file \"%1\" is not there (any more). Choose it again.").arg(shown));
    if (!info.isFile())
        refuse(Texts::tr("\"%1\" is no file. Choose a file.").arg(shown));
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        refuse(Texts::tr("The file \"%1\" cannot be read: %2.").arg(shown, m_file.errorString()));
    m_size = m_file.size();
    if (m_size == 0)
        refuse(Texts::tr("The file \"%1\" is empty. There is nothing to upload.").arg(shown));
    m_modified = info.lastModified();
}

QString UploadFile::name() const
{
    return QFileInfo(m_path).fileName();
}

void UploadFile::changed() const
{
    refuse(Texts::tr("The file \"%1\" was changed while it was being uploaded. Upload it again.")
               .arg(QDir::toNativeSeparators(m_path)));
}

qint64 UploadFile::read(qint64 offset, char *to, qint64 most)
{
    const qint64 count = qMin(most, m_size - offset);
    if (!m_file.seek(offset) || m_file.read(to, count) != count)
        changed();
    // What was read before is in the checksum already.
    const qint64 fresh = offset + count - m_hashed;
    if (offset <= m_hashed && fresh > 0) {
        m_checksum.add(to + (count - fresh), static_cast<std::size_t>(fresh));
        m_hashed += fresh;
    }
    return count;
}

QByteArray UploadFile::checksum()
{
    // Where an upload went on behind a place this side has not read.
    if (m_hashed < m_size) {
        std::vector<char> buffer(256 * 1024);
        while (m_hashed < m_size)
            read(m_hashed, buffer.data(), qint64(buffer.size()));
    }
    const QFileInfo now(m_path);
    if (!now.exists() || now.size() != m_size || now.lastModified() != m_modified)
        changed();
    return m_checksum.hex();
}

} // namespace QXSC
