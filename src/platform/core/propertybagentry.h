// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/propertybag.h"

#include <optional>

namespace Zel {

/// One entry as a format reader found it, before it is known to be a property.
struct PropertyBagEntry
{
    /// Where it stands, for people: "line 3".
    QString place;
    std::optional<QString> name;
    std::optional<QString> escapedName;
    /// Empty when it was not given: a text.
    QString type;
    bool hasValue = false;
    /// The value read as its type; nothing when it is none.
    std::optional<QVariant> value;
    QString shownValue;

    /// Writes the entry into the bag, or tells the bag's problems why not.
    void addTo(PropertyBag &bag) const;
};

} // namespace Zel
