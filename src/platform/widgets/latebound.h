// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QPointer>
#include <QVariant>

namespace Zel {

/// Reaches the members of a control by name, as a container or a generated form does.
///
/// A name is looked up first among the container properties (Visible, Left, Top, Width, Height, in
/// twips; a widget that is not hidden is visible), then among the members its class declares below
/// `Control`, or below QWidget for a class of the host's own. Exact case comes first, then any
/// case. Signals and members that are not public do not take part. Values convert as in
/// variantconversion.h.
///
/// Errors: 91 the object is gone, 438 no such member, 450 a wrong number of arguments or a property
/// that cannot be set, 13 a value that does not convert, 6 a number that the member's type does not
/// hold; errors of the member itself propagate.
class ZEL_EXPORT LateBound
{
public:
    explicit LateBound(QObject *object);

    /// The value of a property, or what a method without arguments returns.
    QVariant get(const QString &name) const;
    void let(const QString &name, const QVariant &value) const;
    /// Calls a method; of several with one name the number of arguments decides, of a method that
    /// the class and its base both have that of the class. Without arguments also reads a property.
    QVariant call(const QString &name, const QVariantList &arguments = {}) const;

    QObject *object() const { return m_object; }

private:
    QObject &target() const;

    QPointer<QObject> m_object;
};

} // namespace Zel
