// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/tabletransfer.h"

#include <QList>

namespace ZelTest {

/// Migrates an empty database step by step up to `step` and puts the rows of
/// tests/fixtures/migrations into the tables of each as it comes. Throws `std::runtime_error` for a
/// step without rows.
void fillUpTo(Zel::Database &database, int step);

/// The checksum of every table of a workspace.
QList<Zel::TableSum> sumsOf(Zel::Database &database);

/// The same of the columns that given tables have.
QList<Zel::TableSum> sumsOf(Zel::Database &database, const QList<Zel::TableInfo> &tables);

} // namespace ZelTest
