// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/themerecord.h"

#include <QByteArray>
#include <QJsonObject>

namespace QXSC {

// The records of themes from the bodies of answers; see recordreader.h.

/// Null when the service says null.
ThemeCollectionPtr readThemes(const QJsonObject &answer);
/// Null when the service says null: there is no such template.
TemplateRecordPtr readTemplate(const QByteArray &body);

} // namespace QXSC
