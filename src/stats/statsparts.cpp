// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/statsparts.h"

#include "stats/statscontrol.h"
#include "stats/workbooktemplate.h"

#include <QBoxLayout>
#include <QDateTimeEdit>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTabBar>
#include <QTimer>

#include <tuple>

namespace ZelWebServiceControls {

namespace {

constexpr int TimerMilliseconds = 100;

/// The first year that a date may be in.
constexpr int FirstYear = 100;

QString tr(const char *text)
{
    return StatsControl::tr(text);
}

template <typename Widget>
Widget *named(Widget *widget, const char *name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

} // namespace

StatsParts::StatsParts(QWidget *parent)
{
    makeParameters(parent);
    Frame2 = named(new QGroupBox(tr("Summary"), parent), "Frame2");
    makeTabs(parent);
    Timer1 = new QTimer(parent);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setInterval(TimerMilliseconds);
    Timer1->setSingleShot(true);
    excelTemplate = named(new QLabel(parent), "excelTemplate");
    excelTemplate->setTextFormat(Qt::PlainText);
    excelTemplate->setText(workbookTemplate().toString());
    excelTemplate->hide();
    arrange(parent);
}

void StatsParts::makeParameters(QWidget *parent)
{
    Frame1 = named(new QGroupBox(tr("Report Parameters"), parent), "Frame1");
    auto *rows = new QFormLayout(Frame1);
    rows->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    startDateTime = makePicker("startDateTime", "Label1", "Start Date");
    endDateTime = makePicker("endDateTime", "Label2", "End Date");
    runReportCmd = named(new QPushButton(tr("Run New Report"), Frame1), "runReportCmd");
    // In a dialog around the control the Enter key is not for its buttons.
    runReportCmd->setAutoDefault(false);
    rows->addRow(runReportCmd);
}

QDateTimeEdit *StatsParts::makePicker(const char *name, const char *labelName, const char *caption)
{
    auto *label = named(new QLabel(tr(caption), Frame1), labelName);
    auto *picker = named(new QDateTimeEdit(Frame1), name);
    picker->setAccessibleName(label->text());
    picker->setMinimumDate(QDate(FirstYear, 1, 1));
    // Two blanks between date and time, as hosts know it.
    picker->setDisplayFormat(QStringLiteral("MM/dd/yyyy  hh:mm:ss AP"));
    picker->setCalendarPopup(true);
    // Empty until the control is bound; an empty text would mean that there is none.
    picker->setSpecialValueText(QStringLiteral(" "));
    picker->setDateTime(picker->minimumDateTime());
    label->setBuddy(picker);
    static_cast<QFormLayout *>(Frame1->layout())->addRow(label, picker);
    return picker;
}

void StatsParts::makeTabs(QWidget *parent)
{
    reportsTabs = named(new QTabBar(parent), "reportsTabs");
    reportsTabs->setAccessibleName(tr("Reports"));
    reportsTabs->setDrawBase(true);
    reportsTabs->setExpanding(false);
    for (const char *caption :
         {"Participants", "Registrants", "Page Views", "Q and A", "Polls", "Surveys/Quizzes"}) {
        const int index = reportsTabs->addTab(tr(caption));
        auto *frame = new QFrame(parent);
        frame->setObjectName(QStringLiteral("reportsTabFrame_%1").arg(index));
        frame->setFrameShape(QFrame::NoFrame);
        frame->setVisible(index == 0);
        reportsTabFrame[static_cast<size_t>(index)] = frame;
    }
}

void StatsParts::arrange(QWidget *parent)
{
    auto *left = new QVBoxLayout;
    left->addWidget(Frame1);
    left->addWidget(Frame2);
    left->addStretch();
    auto *right = new QVBoxLayout;
    right->setSpacing(6);
    right->addWidget(reportsTabs);
    for (QFrame *frame : reportsTabFrame)
        right->addWidget(frame, 1);
    auto *halves = new QHBoxLayout(parent);
    halves->addLayout(left);
    halves->addLayout(right, 1);
    QWidget::setTabOrder(Frame2, reportsTabs);
}

} // namespace ZelWebServiceControls
