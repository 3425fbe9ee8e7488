// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPainter>

namespace Zel {

/// How a pen or brush meets what is there: R2_BLACK (1) to R2_WHITE (16).
QPainter::CompositionMode modeOfBinaryOperation(int operation);

/// How an image or brush meets what is there: the codes SRCCOPY (0x00CC0020) and so on. What is not
/// known is drawn over what is there.
QPainter::CompositionMode modeOfTernaryOperation(quint32 operation);

/// Whether an operation draws with the brush, and not with an image or a fixed colour.
bool usesPattern(quint32 operation);

/// Whether an operation needs an image.
bool usesSource(quint32 operation);

} // namespace Zel
