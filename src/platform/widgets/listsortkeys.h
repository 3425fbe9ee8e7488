// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QHash>
#include <QString>

#include <functional>

namespace Zel {

/// Makes the sort key of a cell from its shown text; an empty key sorts before all others.
using ListSortKeyMaker = std::function<QString(const QString &text)>;
/// Key makers by column tag.
using ListSortKeyMakers = QHash<QString, ListSortKeyMaker>;

/// The makers every new ListView starts with.
ZEL_EXPORT const ListSortKeyMakers &defaultSortKeyMakers();

} // namespace Zel
