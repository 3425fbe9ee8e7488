// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/controlregistry.h"
#include "platform/widgets/latebound.h"
#include "platform/widgets/twipsgeometry.h"
#include "records/datarecordmanager.h"

#include <QWidget>

#include <memory>

/// What the tests of the field widgets share: they drive them by name, as a form does.
namespace FieldTesting {

/// A new field of that class, "TextWidget" say.
inline std::unique_ptr<QWidget> make(const char *name)
{
    ZelWebServiceControls::introduceFieldWidgets();
    return std::unique_ptr<QWidget>(Zel::ControlRegistry::create(
        QStringLiteral("ZelWebServiceControls.") + QLatin1String(name)));
}

inline QVariant call(QWidget *field, const char *member, const QVariantList &arguments = {})
{
    return Zel::LateBound(field).call(QString::fromLatin1(member), arguments);
}

inline QString text(QWidget *field, const char *member)
{
    return call(field, member).toString();
}

inline void let(QWidget *field, const char *property, double twips)
{
    Zel::LateBound(field).let(QString::fromLatin1(property), twips);
}

template <typename Widget = QWidget>
Widget *child(const QWidget *field, const char *name)
{
    auto *found = field->findChild<Widget *>(QLatin1String(name));
    if (!found)
        qFatal("no child %s", name);
    return found;
}

inline Zel::TwipsRect place(const QWidget *field, const char *name)
{
    return Zel::twipsGeometry(child(field, name));
}

} // namespace FieldTesting
