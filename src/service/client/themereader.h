// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/themerecord.h"

#include <QByteArray>

namespace QXSC {

// The records of themes from the bodies of answers; see recordreader.h.

/// Null when the service says null.
ThemeCollectionPtr readThemes(const QByteArray &body);
/// Null when the service says null: there is no such template.
TemplateRecordPtr readTemplate(const QByteArray &body);

} // namespace QXSC
