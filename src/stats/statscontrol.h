// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "platform/widgets/control.h"

#include <QColor>
#include <QDateTime>

#include <array>
#include <memory>

namespace ZelWebServiceControls {

class StatsPage;
class StatsSource;
class StatsSummary;
struct StatsParts;

/// Shows what happened in one deployment (a published event) over a range of time: a summary, the
/// participants, the registrants, the page views, and the questions of the audience, which can be
/// answered, retracted and deleted here.
///
///     auto *stats = new StatsControl(this);
///     connect(stats, &StatsControl::runtimeError, this, &Window::tellError);
///     stats->Init(&client, deploymentGuid);
///
/// A tenth of a second after `Init`, when the host has shown the control, the report is run as by a
/// click on "Run New Report": it fills the summary and fetches the report of the tab that is shown.
/// The other tabs are fetched when they are first shown. A range that is changed counts from the
/// next report on; a tab fetched later follows the pickers at once.
///
/// After a service call that failed the button stays disabled and says "Loading data...", and the
/// figures that had arrived stay; `Init` brings the control back. Lists that a call fails to fill
/// are empty. Counts above 32,767 are an error 6. Without a client, or after it is gone, whatever
/// needs it fails with error 91.
class ZEL_EXPORT StatsControl : public Zel::Control
{
    Q_OBJECT

public:
    /// Of the tabs, in their order.
    static constexpr qint16 TabCount = 6;

    explicit StatsControl(QWidget *parent = nullptr);
    ~StatsControl() override;

    /// Keeps client and deployment, sets the range, shows the first tab and runs the report a tenth
    /// of a second later.
    ///
    /// Dates are local date-times; one that is left out, not valid or day zero is not given. A
    /// range without an end ends now, one without a start begins yesterday at this time.
    Q_INVOKABLE void Init(QXSC::ServiceClient *qxs, const QString &deploymentGuid,
                          const QDateTime &start_dt = QDateTime(),
                          const QDateTime &end_dt = QDateTime());

    /// The ten colours of result charts in their order; empty before the first `Init`.
    QList<QColor> chartColours() const;

    QSize sizeHint() const override;

private:
    void makePages();
    void connectUser();
    void selectTab(qint16 index);
    void showTab(int index);
    void runReport();
    void loadCurrentTab();

    std::unique_ptr<StatsParts> m_parts;
    std::unique_ptr<StatsSource> m_source;
    StatsSummary *m_summary;
    // By tab; null for a tab that has no report.
    std::array<StatsPage *, TabCount> m_pages{};
    std::array<bool, TabCount> m_loaded{};
    qint16 m_currentTab = 0;
};

} // namespace ZelWebServiceControls
