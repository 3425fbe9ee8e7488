// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QObject>
#include <QPointer>

namespace ZelWebServiceControls {

/// Calls one member of an object, by name, for a caller that knows neither.
class ZEL_EXPORT clsForward : public QObject
{
    Q_OBJECT

public:
    explicit clsForward(QObject *parent = nullptr);
    ~clsForward() override;

    Q_INVOKABLE void Set_Destination(QObject *oInObject, const QString &sInMethod);
    Q_INVOKABLE void My_Default_Method();

private:
    QPointer<QObject> m_object;
    QString m_method;
};

} // namespace ZelWebServiceControls
