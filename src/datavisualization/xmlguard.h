// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QStringView>

namespace ZelDataVisualization {

/// Whether a text has what makes QXmlStreamReader slow or unsafe: a tag with a run of more than
/// 4,096 characters outside of quotes (its prefixes are 16-bit numbers), with more than 64
/// attributes (it compares each with each), or more than 64 declarations of namespaces in all (it
/// looks for each prefix among them). Whether the text is well-formed does not matter here.
ZEL_EXPORT bool isHostileXml(QStringView text);

} // namespace ZelDataVisualization
