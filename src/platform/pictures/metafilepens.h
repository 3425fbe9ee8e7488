// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/metafilestate.h"

namespace Zel {

/// A pen as both kinds of metafile describe it: style word, width, colour.
MetafilePen penOf(quint32 style, double width, const QColor &color);

/// A brush without a bitmap: style (0 solid, 1 none, 2 hatched), colour, hatch.
QBrush brushOf(quint32 style, const QColor &color, quint32 hatch);

} // namespace Zel
