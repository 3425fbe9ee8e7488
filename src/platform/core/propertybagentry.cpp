// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/propertybagentry.h"

#include "platform/core/propertyescape.h"
#include "platform/core/propertyvalue.h"

namespace Zel {

void PropertyBagEntry::addTo(PropertyBag &bag) const
{
    std::optional<QString> ownName = name;
    if (!ownName && escapedName)
        ownName = PropertyValue::unescaped(*escapedName);
    const QString named = name ? *name : escapedName.value_or(QString());
    const auto leftOut = [&](const QString &why) {
        bag.addProblem(named.isEmpty()
                           ? PropertyBag::tr("The entry at %1 is left out: %2.").arg(place, why)
                           : PropertyBag::tr("The entry “%1” at %2 is left out: %3.")
                                 .arg(PropertyValue::shown(named), place, why));
    };
    if (!ownName || ownName->isEmpty())
        leftOut(PropertyBag::tr("it has no name"));
    else if (bag.contains(*ownName))
        leftOut(PropertyBag::tr("there is one of this name before it"));
    else if (!PropertyValue::isTypeName(type))
        leftOut(PropertyBag::tr("“%1” is not a known type").arg(PropertyValue::shown(type)));
    else if (!hasValue)
        leftOut(PropertyBag::tr("it has no value"));
    else if (!value)
        leftOut(PropertyBag::tr("“%1” is not a value of type %2")
                    .arg(PropertyValue::shown(shownValue), type));
    else
        bag.write(*ownName, *value);
}

} // namespace Zel
