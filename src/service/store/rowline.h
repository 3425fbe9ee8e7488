// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/sqlvalue.h"

#include <QByteArray>

namespace Zel {

class SqlRow;
struct TableInfo;

/// A row of a table as one line of JSON: a list of its values in the order of the columns, numbers
/// as such, booleans as 0 and 1, bytes in base64, ending with a line feed. There is one way to
/// write a row and it is the same for both databases, so equal lines are equal rows and the SHA-256
/// of all lines in the order of the key is a checksum of the table.
ZEL_EXPORT QByteArray rowLine(const TableInfo &table, const SqlRow &row);

/// The values that such a line stands for. Throws `DatabaseError` (Corrupt) for a line that is none
/// of this table.
ZEL_EXPORT SqlValues rowValues(const TableInfo &table, const QByteArray &line);

} // namespace Zel
