// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/resultspages.h"

#include "platform/widgets/control.h"
#include "stats/pollreport.h"
#include "stats/statssource.h"
#include "stats/surveyreport.h"

#include <QEvent>

namespace ZelWebServiceControls {

namespace {

/// A tab with a report that the range does not matter to.
template <typename Report>
class ResultsPage final : public StatsPage
{
public:
    ResultsPage(QFrame *frame, const StatsSource &source)
        : StatsPage(frame, source)
        , m_report(new Report(frame))
    {
        frame->installEventFilter(this);
    }

    /// A control has its mode before it is shown.
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show)
            m_report->setDesignTime(isDesignTime());
        return StatsPage::eventFilter(watched, event);
    }

    void load() override { m_report->load(&source().client(), source().deploymentGuid()); }

private:
    bool isDesignTime() const
    {
        for (const QWidget *around = frame(); around; around = around->parentWidget()) {
            if (const auto *const control = qobject_cast<const Zel::Control *>(around))
                return control->mode() == Zel::Control::Mode::Design;
        }
        return false;
    }

    Report *m_report;
};

} // namespace

StatsPage *makePollPage(QFrame *frame, const StatsSource &source)
{
    return new ResultsPage<PollReport>(frame, source);
}

StatsPage *makeSurveyPage(QFrame *frame, const StatsSource &source)
{
    return new ResultsPage<SurveyReport>(frame, source);
}

} // namespace ZelWebServiceControls
