// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

#include <stdexcept>

namespace Zel {

/// The bytes of a file cannot be stored or had. `isFull` tells that there is no room for more.
class ZEL_EXPORT BlobError : public std::runtime_error
{
public:
    /// @param systemError as `errno` has it
    BlobError(const QString &doing, int systemError);
    ~BlobError() override;

    bool isFull() const { return m_full; }

private:
    bool m_full;
};

/// Somebody else is writing the same part: what was given is not kept, theirs is.
class ZEL_EXPORT BlobBusy : public std::runtime_error
{
public:
    BlobBusy();
    ~BlobBusy() override;
};

/// A blob that was there when it was looked for has been cleared away since. What was to use it can
/// be begun anew.
class ZEL_EXPORT BlobGone : public std::runtime_error
{
public:
    BlobGone();
    ~BlobGone() override;
};

} // namespace Zel
