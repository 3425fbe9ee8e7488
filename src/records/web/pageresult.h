// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>
#include <QVariant>

#include <optional>

namespace ZelWebServiceControls {

/// The most characters that all texts of a page's result may have together: what the service takes
/// as one record.
constexpr int MostResultCharacters = 16 * 1024 * 1024;
/// The most elements that all arrays of a page's result may have together.
constexpr int MostResultElements = 100'000;
/// How deep a page's arrays are read; what lies deeper is not looked at.
constexpr int DeepestResult = 32;

/// A page's `returnValue`, as the page's script wrote it down.
///
/// A string is a QString, a number a double, a boolean a bool, a script object with a length a list
/// of its elements; unset is an invalid variant, null a null pointer, and everything else an empty
/// map.
struct ZEL_EXPORT PageValue
{
    QVariant value;
    bool hasAnswer = false;  ///< false when the page did not tell anything
    bool isTooLarge = false; ///< over one of the limits above; `value` is empty then
};

ZEL_EXPORT PageValue pageValueFrom(const QString &written);

/// What a page's result means.
struct ZEL_EXPORT PageResult
{
    QString value;
    std::optional<QString> dependencies; ///< nothing keeps the ones there are
};

/// A string is the value. An array whose first element is an array with a first element gives that
/// as the value, and its second element's second element the dependencies when there is one. Every
/// other shape is no result.
///
/// A value or dependencies are a text, a number (written with "." whatever the locale) or a boolean
/// ("True", "False"); unset, null and objects are not there.
ZEL_EXPORT std::optional<PageResult> pageResultFrom(const QVariant &parsed);

/// Whether a page's `childWindowType` asks for the asset picker: a number, or a text that reads as
/// one, that rounds to 0.
/// @param kind the script's name of the type
/// @param text the value as the script writes it
ZEL_EXPORT bool asksForPicker(const QString &kind, const QString &text);

} // namespace ZelWebServiceControls
