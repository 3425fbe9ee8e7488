// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/statssummary.h"

#include "common/common.h"
#include "platform/core/numbertext.h"
#include "stats/statscontrol.h"
#include "stats/statssource.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>

namespace ZelWebServiceControls {

namespace {

struct Box
{
    const char *name;
    const char *caption;
};

/// From top to bottom. Two captions say "Vistors": hosts know them so.
constexpr Box boxes[] = {
    {"totalViewLength",
     QT_TRANSLATE_NOOP("ZelWebServiceControls::StatsControl", "Total Page View Length (hh:mm:ss)")},
    {"summaryTotalHits",
     QT_TRANSLATE_NOOP("ZelWebServiceControls::StatsControl", "Total Page Views (Hits)")},
    {"summaryUniqueHits", QT_TRANSLATE_NOOP("ZelWebServiceControls::StatsControl",
                                            "Total Participants (Unique Viewers)")},
    {"summaryIEHits",
     QT_TRANSLATE_NOOP("ZelWebServiceControls::StatsControl", "Visitors Using IE")},
    {"summaryNetscapeHits",
     QT_TRANSLATE_NOOP("ZelWebServiceControls::StatsControl", "Visitors Using Netscape")},
    {"summaryJS13Hits",
     QT_TRANSLATE_NOOP("ZelWebServiceControls::StatsControl", "Visitors Using JS 1.3")},
    {"summary24DepthHits",
     QT_TRANSLATE_NOOP("ZelWebServiceControls::StatsControl", "Vistors Using 24 bit")},
    {"summary32DepthHits",
     QT_TRANSLATE_NOOP("ZelWebServiceControls::StatsControl", "Vistors Using 32 bit")},
    {"summaryReg", QT_TRANSLATE_NOOP("ZelWebServiceControls::StatsControl", "Total Registrants")},
    {"summaryRegPart",
     QT_TRANSLATE_NOOP("ZelWebServiceControls::StatsControl", "Total Registered Participants")},
    {"summaryRegNonPart",
     QT_TRANSLATE_NOOP("ZelWebServiceControls::StatsControl", "Total Registered Nonparticipants")},
};

double statistic(const StatsSource &of, const char *name)
{
    return of.client().GetDeploymentStatistic(of.deploymentGuid(), of.start(), of.end(),
                                              QLatin1String(name));
}

QString hits(const StatsSource &of, const char *attribute, const char *value)
{
    return QString::number(of.client().GetPageHitCountByAttribute(
        of.deploymentGuid(), of.start(), of.end(), QLatin1String(attribute), QStringLiteral("="),
        QLatin1String(value)));
}

struct Figure
{
    const char *box;
    QString (*ask)(const StatsSource &of);
};

/// In the order in which the service is asked.
constexpr Figure figures[] = {
    {"summaryTotalHits",
     [](const StatsSource &of) { return Zel::numberText(statistic(of, "TotalPageHits")); }},
    {"summaryUniqueHits",
     [](const StatsSource &of) {
         return QString::number(
             of.client().GetUniqueParticipantCount(of.deploymentGuid(), of.start(), of.end()));
     }},
    {"summaryReg",
     [](const StatsSource &of) {
         return QString::number(of.client().GetRegistrantCount(of.deploymentGuid()));
     }},
    {"summaryRegPart",
     [](const StatsSource &of) {
         return QString::number(
             of.client().GetRegisteredParticipantCount(of.deploymentGuid(), of.start(), of.end()));
     }},
    {"summaryRegNonPart",
     [](const StatsSource &of) {
         return QString::number(of.client().GetRegisteredNonParticipantCount(of.deploymentGuid(),
                                                                             of.start(), of.end()));
     }},
    {"summaryIEHits", [](const StatsSource &of) { return hits(of, "BrowserType", "IE"); }},
    {"summaryNetscapeHits", [](const StatsSource &of) { return hits(of, "BrowserType", "NS"); }},
    {"summaryJS13Hits", [](const StatsSource &of) { return hits(of, "JSVersion", "1.3"); }},
    {"summary24DepthHits", [](const StatsSource &of) { return hits(of, "ScreenDepth", "24"); }},
    {"summary32DepthHits", [](const StatsSource &of) { return hits(of, "ScreenDepth", "32"); }},
    {"totalViewLength",
     [](const StatsSource &of) {
         return Common::FormatDuration(statistic(of, "TotalPageViewTime"));
     }},
};

} // namespace

StatsSummary::StatsSummary(QGroupBox *frame, const StatsSource &source)
    : QObject(frame)
    , m_source(source)
{
    auto *rows = new QFormLayout(frame);
    rows->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    rows->setVerticalSpacing(4);
    for (const Box &each : boxes) {
        const QString caption = StatsControl::tr(each.caption);
        auto *box = new QLineEdit(frame);
        box->setObjectName(QLatin1String(each.name));
        box->setAccessibleName(caption);
        box->setReadOnly(true);
        box->setAlignment(Qt::AlignRight);
        box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("00000:00:00  ")));
        auto *label = new QLabel(caption, frame);
        label->setBuddy(box);
        rows->addRow(label, box);
        m_boxes.insert(box->objectName(), box);
    }
}

void StatsSummary::fill()
{
    const QPointer<StatsSummary> self(this);
    for (const Figure &figure : figures) {
        const QString text = figure.ask(m_source);
        if (!self)
            return;
        QLineEdit *box = m_boxes.value(QLatin1String(figure.box));
        box->setText(text);
        // Windows are not painted while the service is asked.
        box->repaint();
    }
}

} // namespace ZelWebServiceControls
