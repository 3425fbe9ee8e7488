// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace Zel::Service {

/// The first field that an object of a valid JSON text names twice. Readers differ in which of the
/// two values they take, so whoever looked at a request before may have seen another one.
ZEL_EXPORT std::optional<QString> repeatedField(const QByteArray &json);

} // namespace Zel::Service
