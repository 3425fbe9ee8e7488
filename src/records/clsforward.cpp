// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/clsforward.h"

#include "platform/widgets/latebound.h"

namespace ZelWebServiceControls {

clsForward::clsForward(QObject *parent)
    : QObject(parent)
{
}

clsForward::~clsForward() = default;

void clsForward::Set_Destination(QObject *oInObject, const QString &sInMethod)
{
    m_object = oInObject;
    m_method = sInMethod;
}

void clsForward::My_Default_Method()
{
    Zel::LateBound(m_object).call(m_method);
}

} // namespace ZelWebServiceControls
