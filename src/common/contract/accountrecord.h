// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/collection.h"

#include <QString>

#include <memory>

namespace QXSC {

/// One account the signed-in user may act for.
struct AccountRecord
{
    QString accountName;
    qint32 accountID = 0;
};

using AccountRecordPtr = std::shared_ptr<const AccountRecord>;
using AccountCollection = Zel::Collection<AccountRecordPtr>;
/// Null when the service answered nothing.
using AccountCollectionPtr = std::shared_ptr<const AccountCollection>;

} // namespace QXSC
