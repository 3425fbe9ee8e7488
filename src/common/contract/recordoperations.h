// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/datarecord.h"
#include "platform/core/export.h"

namespace QXSC {

/// Reading data records of the active account.
class ZEL_EXPORT RecordOperations
{
public:
    virtual ~RecordOperations();

    /// The data record of a theme, the caller's own to edit; null when the theme has none or is
    /// unknown.
    virtual DataRecordPtr GetThemeDataRecord(const QString &themeGuid) = 0;
    /// The address of the server without a slash at its end ("https://host:port"), to which the
    /// paths of component pages are appended. Empty while there is none.
    virtual QString serverUrl() const = 0;
};

} // namespace QXSC
