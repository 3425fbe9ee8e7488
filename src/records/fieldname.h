// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ZelWebServiceControls {

/// The control name of the field of that label.
inline QString fieldName(const QString &label)
{
    return QStringLiteral("widget_") + QString(label).replace(u' ', u'_');
}

} // namespace ZelWebServiceControls
