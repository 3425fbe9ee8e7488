// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

/// How the formats of a property bag write what XML cannot hold.
namespace Zel::PropertyValue {

/// Whether XML cannot hold the text as it is: it has control characters, lone halves of surrogate
/// pairs or non-characters.
bool needsEscape(QStringView text);
/// "\uhhhh" (four hexadecimal digits) for what XML cannot hold, "\\" for "\".
QString escaped(QStringView text);
/// Nothing when a "\" begins neither of the two.
std::optional<QString> unescaped(QStringView text);

} // namespace Zel::PropertyValue
