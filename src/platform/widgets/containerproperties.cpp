// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/containerproperties.h"

#include "platform/core/runtimeerror.h"
#include "platform/core/variantconversion.h"
#include "platform/widgets/twipsgeometry.h"

#include <QWidget>

#include <array>
#include <cmath>
#include <utility>

namespace Zel {

std::optional<ContainerProperty> ContainerProperty::find(QObject &object, const QString &name)
{
    constexpr std::array names{
        std::pair{"Visible", Kind::Visible}, std::pair{"Left", Kind::Left},
        std::pair{"Top", Kind::Top},         std::pair{"Width", Kind::Width},
        std::pair{"Height", Kind::Height},
    };
    auto *widget = qobject_cast<QWidget *>(&object);
    if (!widget)
        return std::nullopt;
    for (const auto &[text, kind] : names) {
        if (name.compare(QLatin1String(text), Qt::CaseInsensitive) == 0)
            return ContainerProperty(*widget, kind);
    }
    return std::nullopt;
}

QVariant ContainerProperty::read() const
{
    const TwipsRect rect = twipsGeometry(m_widget);
    switch (m_kind) {
    case Kind::Visible:
        return !m_widget->isHidden();
    case Kind::Left:
        return rect.left;
    case Kind::Top:
        return rect.top;
    case Kind::Width:
        return rect.width;
    case Kind::Height:
        return rect.height;
    }
    return {};
}

void ContainerProperty::write(const QVariant &value) const
{
    if (m_kind == Kind::Visible) {
        m_widget->setVisible(booleanFrom(value));
        return;
    }
    const double twips = doubleFrom(value);
    if (!std::isfinite(twips))
        throw RuntimeError(RuntimeError::Overflow);
    TwipsRect rect = twipsGeometry(m_widget);
    switch (m_kind) {
    case Kind::Left:
        rect.left = twips;
        break;
    case Kind::Top:
        rect.top = twips;
        break;
    case Kind::Width:
        rect.width = twips;
        break;
    default:
        rect.height = twips;
        break;
    }
    setTwipsGeometry(m_widget, rect);
}

} // namespace Zel
