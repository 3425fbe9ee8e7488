// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"

#include <QColor>
#include <QDateTime>
#include <QList>
#include <QPointer>

class QDateTimeEdit;

namespace ZelWebServiceControls {

/// What the reports of a statistics control are about. The range is read from the pickers at the
/// moment of each question, so that a report follows them even while it loads.
class StatsSource
{
public:
    StatsSource(const QDateTimeEdit *startDateTime, const QDateTimeEdit *endDateTime);

    void bind(QXSC::ServiceClient *client, const QString &deploymentGuid);

    /// Error 91 while no client was given or after it is gone.
    QXSC::ServiceClient &client() const;

    /// By value: it is handed to calls that may outlive the control.
    QString deploymentGuid() const { return m_deploymentGuid; }

    /// Local date-times in whole seconds; both belong to the range.
    QDateTime start() const;
    QDateTime end() const;

    /// The colours of result charts in their order; empty before the first `bind`.
    const QList<QColor> &chartColours() const { return m_chartColours; }

private:
    const QDateTimeEdit *m_start;
    const QDateTimeEdit *m_end;
    QPointer<QXSC::ServiceClient> m_client;
    QString m_deploymentGuid;
    QList<QColor> m_chartColours;
};

} // namespace ZelWebServiceControls
