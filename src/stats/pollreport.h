// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "platform/core/export.h"
#include "platform/widgets/errorreport.h"

#include <QFrame>
#include <QPointer>

class QComboBox;
class QPushButton;

namespace Zel {
class FlexGrid;
}

namespace ZelWebServiceControls {

/// The votes for the polls of a deployment, one poll at a time, inside a frame.
///
/// Shows all votes, whatever the time. Errors of the service propagate from `load`; those of what a
/// person does reach the host of the control around the frame.
class ZEL_EXPORT PollReport : public QObject
{
    Q_OBJECT

public:
    explicit PollReport(QFrame *frame);

    /// Fetches the polls and shows the first. Without any, what is shown stays and does nothing.
    /// Error 91 without a client.
    void load(QXSC::ServiceClient *client, const QString &deploymentGuid);

    /// At design time the buttons without an action are hidden.
    void setDesignTime(bool designTime);

    /// "A1", "A2", ... and the percentages of the answers shown.
    using Percentages = QList<std::pair<QString, double>>;

    const Percentages &percentages() const { return m_percentages; }

private:
    void build();
    void choose(int index);
    void showPollQuestion(const QXSC::PollQuestion &question);
    void visualize();
    QXSC::ServiceClient &client() const;

    QFrame *m_frame;
    QComboBox *m_combo = nullptr;
    Zel::FlexGrid *m_grid = nullptr;
    QList<QPushButton *> m_plain;
    QPushButton *m_visualize = nullptr;
    QPointer<QXSC::ServiceClient> m_client;
    QString m_deployment;
    QXSC::PollQuestionCollectionPtr m_polls;
    Percentages m_percentages;
};

} // namespace ZelWebServiceControls
