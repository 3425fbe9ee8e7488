// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <initializer_list>

class QWidget;

namespace Zel {

/// Lets the Tab key go through widgets in this order.
ZEL_EXPORT void setTabChain(std::initializer_list<QWidget *> widgets);

} // namespace Zel
