// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/contract/calls.h"

#include <QList>
#include <QMetaType>

namespace ZelTest {

using Call = std::function<void(Client &)>;

/// One operation with arguments that nora may use in "Contract Studio".
struct NamedCall
{
    const char *name;
    Call call;
    /// How it ends when nothing is in the way, see `failureOf`: "none", or that what it asks for is
    /// not there.
    QString ending = QStringLiteral("none");
    bool needsAccount = true;
};

/// Every operation that needs a session. Signing out is none of them: it never fails.
const QList<NamedCall> &everyCall();

/// A row for each of `everyCall` with the columns "call" and "ending".
void addEveryCall();

} // namespace ZelTest

Q_DECLARE_METATYPE(ZelTest::Call)
