// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QObject>
#include <QPointer>

namespace ZelWebServiceControls {

/// An object to call: it passes the call on to a member of another object, by name.
///
///     clsForward forward;
///     forward.Set_Destination(dialog, "ResizeCallback");
///     forward(); // calls dialog->ResizeCallback()
class ZEL_EXPORT clsForward : public QObject
{
    Q_OBJECT

public:
    explicit clsForward(QObject *parent = nullptr);
    ~clsForward() override;

    /// The object is held weakly.
    Q_INVOKABLE void Set_Destination(QObject *oInObject, const QString &sInMethod);
    /// Calls the member as a method without arguments. Errors: 91 when there is no object or it is
    /// gone, 438 when it has no such member; errors of the member propagate.
    Q_INVOKABLE void My_Default_Method();

    /// The default member: what calling the object itself does.
    void operator()() { My_Default_Method(); }

private:
    QPointer<QObject> m_object;
    QString m_method;
};

} // namespace ZelWebServiceControls
