// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <optional>

class QXmlStreamAttributes;

namespace Zel {
class CommonDialog;
}

/// The small functions that several controls share. None of them keeps state.
namespace ZelWebServiceControls::Common {

/// An array a service operation returns; without a value it was never dimensioned.
template <typename T>
using Array = std::optional<QList<T>>;

/// Turns the five XML entities back into characters, one pass each, "&amp;" first: a doubly escaped
/// entity is unescaped twice ("&amp;lt;" becomes "<"), which callers rely on. Never fails: a value
/// that is no text is read as its text, one that has none (an object) as the empty text.
ZEL_EXPORT QString XmlUnescape(const QVariant &text);

/// Shows the Open dialog and returns its file name text. With `multiSelect` several files come back
/// as the folder and the names, parted by the character with code 0. Cancel reaches the caller as
/// error 32755.
ZEL_EXPORT QString ShowOpenFileDialog(Zel::CommonDialog &dialog, const QString &title,
                                      const QString &pattern, const QString &filter,
                                      const QString &initialFolder, bool multiSelect);

/// Seconds as "hours:minutes:seconds", at least two digits each. Hours and minutes truncate while
/// seconds round, halves to even, so 59.6 gives "00:00:00". Error 6 from 32,768 hours on.
ZEL_EXPORT QString FormatDuration(double seconds);

/// The decimal text of a number, with a "0" before it when it is below 10 (also when negative:
/// -5 gives "0-5").
ZEL_EXPORT QString PadTwoDigits(qint16 number);

/// Whether an array has no bounds because it was never dimensioned. One without elements that was
/// dimensioned is not empty in this sense.
template <typename T>
bool IsArrayEmpty(const Array<T> &array)
{
    return !array.has_value();
}

/// The value of an attribute, empty when the element has none of that name or `element` is null.
ZEL_EXPORT QString GetAttributeText(const QXmlStreamAttributes *element, const QString &name);

} // namespace ZelWebServiceControls::Common
