// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMetaObject>

namespace ZelWebControls {

/// Makes assistive technology take widgets of a class for pictures.
void announceAsGraphic(const QMetaObject &widgetClass);

} // namespace ZelWebControls
