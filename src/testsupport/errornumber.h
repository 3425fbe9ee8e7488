// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/runtimeerror.h"

namespace ZelTest {

/// The number of the run-time error that an action ends in, 0 when it ends in none:
///
///     QCOMPARE(errorNumber([&] { dialog.showOpen(); }), 32755);
template <typename Action>
int errorNumber(Action action)
{
    try {
        action();
    } catch (const Zel::RuntimeError &error) {
        return error.number();
    }
    return 0;
}

} // namespace ZelTest
