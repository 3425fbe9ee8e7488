// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/statssource.h"

#include "platform/core/runtimeerror.h"

#include <QDateTimeEdit>

namespace ZelWebServiceControls {

StatsSource::StatsSource(const QDateTimeEdit *startDateTime, const QDateTimeEdit *endDateTime)
    : m_start(startDateTime)
    , m_end(endDateTime)
{
}

void StatsSource::bind(QXSC::ServiceClient *client, const QString &deploymentGuid)
{
    m_client = client;
    m_deploymentGuid = deploymentGuid;
    m_chartColours = {QColor(0, 255, 0),    QColor(255, 0, 0),     QColor(0, 0, 255),
                      QColor(255, 255, 0),  QColor(255, 0, 255),   QColor(0, 255, 255),
                      QColor(232, 192, 64), QColor(128, 128, 128), QColor(172, 236, 172),
                      QColor(164, 134, 106)};
}

QXSC::ServiceClient &StatsSource::client() const
{
    if (!m_client)
        throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    return *m_client;
}

QDateTime StatsSource::start() const
{
    return m_start->dateTime();
}

QDateTime StatsSource::end() const
{
    return m_end->dateTime();
}

} // namespace ZelWebServiceControls
