// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/studioservice.h"

#include <QByteArray>

namespace QXSC {

// Data records from the bodies of answers; see recordreader.h.

/// Null when the service says null: the theme has no record or is not to be seen.
DataRecordPtr readDataRecord(const QByteArray &body);
/// What came of a save that was carried out.
DataRecordSave readSavedRecord(const QByteArray &body);
/// What came of a save that was refused because somebody else had saved the record.
DataRecordSave readNewerRecord(const QByteArray &body);

} // namespace QXSC
