// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/bloberror.h"

#include <cerrno>
#include <cstring>

namespace Zel {

BlobError::BlobError(const QString &doing, int systemError)
    : std::runtime_error(QStringLiteral("cannot %1: %2")
                             .arg(doing, QString::fromLocal8Bit(std::strerror(systemError)))
                             .toStdString())
    , m_full(systemError == ENOSPC || systemError == EDQUOT || systemError == EFBIG)
{
}

BlobError::~BlobError() = default;

BlobBusy::BlobBusy()
    : std::runtime_error("another call writes the same file")
{
}

BlobBusy::~BlobBusy() = default;

BlobGone::BlobGone()
    : std::runtime_error("a file has been cleared away meanwhile")
{
}

BlobGone::~BlobGone() = default;

} // namespace Zel
