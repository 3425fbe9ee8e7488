// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/accountrecord.h"
#include "platform/core/export.h"

namespace QXSC {

/// Signing in and choosing an account. A refusal is an answer (`success` false); a call that fails
/// throws `ServiceError`.
class ZEL_EXPORT SessionOperations
{
public:
    virtual ~SessionOperations();

    /// Signs a user in. An empty server address means the client's own default server. `reserved`
    /// is always empty and `reservedFlag` always true; both are carried for the server's sake only.
    /// `useProxy` sends this client's calls through the system's proxy from now on.
    virtual void authenticate(const QString &serverAddress, const QString &userName,
                              const QString &password, const QString &appName,
                              const QString &reserved, bool useProxy, bool reservedFlag,
                              bool &success) = 0;
    /// The accounts of the signed-in user, in the order they are to be shown.
    virtual void getAccounts(AccountCollectionPtr &accounts) = 0;
    /// Binds the session to an account, named by its number as decimal text.
    virtual void setActiveAccount(const QString &accountNumber, bool &success) = 0;
};

} // namespace QXSC
