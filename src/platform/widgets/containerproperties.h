// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QVariant>

#include <optional>

class QWidget;

namespace Zel {

/// A property that the container gives every widget, whatever the widget's class: Visible (a
/// boolean: not hidden) and Left, Top, Width, Height (doubles, exact twips).
class ZEL_EXPORT ContainerProperty
{
public:
    /// The container property of that name in any case; nothing for other names and for objects
    /// that are no widgets.
    static std::optional<ContainerProperty> find(QObject &object, const QString &name);

    QVariant read() const;
    /// Errors: 13 when the value does not convert, 6 when it is no finite number.
    void write(const QVariant &value) const;

private:
    enum class Kind
    {
        Visible,
        Left,
        Top,
        Width,
        Height
    };

    ContainerProperty(QWidget &widget, Kind kind)
        : m_widget(&widget)
        , m_kind(kind)
    {
    }

    QWidget *m_widget;
    Kind m_kind;
};

} // namespace Zel
