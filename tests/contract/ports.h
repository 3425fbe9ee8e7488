// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace ZelTest {

/// A free loopback port for who gives it up for a while and takes it again: below those that the
/// system gives away by itself (from 32768 on Linux, see ip(7)), so that nobody else is given it in
/// the meantime. 0 when there is none.
quint16 freePort();

} // namespace ZelTest
