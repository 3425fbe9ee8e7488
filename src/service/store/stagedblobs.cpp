// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/stagedblobs.h"

#include <QUuid>

namespace Zel {

StagedBlobs::StagedBlobs(BlobStore &blobs, Mode mode)
    : m_blobs(blobs)
    , m_mode(mode)
{
}

StagedBlobs::~StagedBlobs()
{
    for (const PartId &part : std::as_const(m_parts)) {
        try {
            m_blobs.dropPart(part);
        } catch (const std::exception &) {
            // It is cleared away later.
        }
    }
}

void StagedBlobs::add(const BlobId &blob, const CheckedPart &part)
{
    m_parts.append(part);
    m_staged.insert({blob.accountId, blob.sha}, part);
}

void StagedBlobs::take(const BlobId &blob, const QByteArray &bytes)
{
    const PartId id{blob.accountId, QUuid::createUuid().toString(QUuid::WithoutBraces), 0};
    m_parts.append(id);
    const auto part = m_blobs.openPart(id);
    part->append(bytes.constData(), bytes.size());
    m_blobs.prepare(*part, blob.sha, {});
    m_staged.insert({blob.accountId, blob.sha}, {id, part->identity()});
}

void StagedBlobs::name(const BlobId &blob)
{
    if (m_mode == Mode::NameNothing)
        return;
    const auto staged = m_staged.constFind({blob.accountId, blob.sha});
    if (staged == m_staged.constEnd())
        m_blobs.expect(blob);
    else
        m_blobs.name(*staged, blob);
    m_named.insert({blob.accountId, blob.sha});
}

void StagedBlobs::settle()
{
    for (const auto &[accountId, sha] : std::as_const(m_named))
        m_blobs.settle({accountId, sha});
}

} // namespace Zel
