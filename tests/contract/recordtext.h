// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/projectrecord.h"

#include <QString>

namespace ZelTest {

/// A text on one line, to be read and compared: line ends, other characters that are not seen,
/// backslashes and bars as \uhhhh, four hexadecimal digits.
QString oneLine(const QString &text);

/// Every field of a record in one line, in the order of the contract and separated by " | ". A date
/// is written in UTC to the millisecond, "-" where its `has` flag is not set.
QString textOf(const QXSC::ProjectRecord &project);

} // namespace ZelTest
