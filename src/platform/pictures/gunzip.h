// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <optional>

namespace Zel {

/// Unpacks a gzip stream; nothing when it is damaged, cut off or longer than `limit` bytes.
std::optional<QByteArray> gunzip(const QByteArray &packed, qint64 limit);

} // namespace Zel
