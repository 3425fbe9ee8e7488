// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// What stands where in the chart forms.
#include "platform/widgets/controlregistry.h"
#include "platform/widgets/taborder.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/twipsgeometry.h"
#include "stats/resultsvisualization.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>

namespace ZelWebServiceControls {

namespace {

// Twips.
constexpr double margin = 120;
constexpr double optionsWidth = 5745;
constexpr double optionsHeight = 2055;
constexpr double formWidth = 13500;
constexpr double formHeight = 10500;
constexpr double leastWidth = 9000;
constexpr double leastHeight = 6000;
constexpr double buttonWidth = 2400;
constexpr double buttonHeight = 450;

template <typename Button>
Button *option(const QString &name, const QString &caption, QWidget *parent)
{
    auto *button = new Button(caption, parent);
    button->setObjectName(name);
    return button;
}

} // namespace

void ResultsVisualization::build()
{
    setSizeGripEnabled(false);
    m_chart = Zel::ControlRegistry::create(QStringLiteral("ZelDataVisualization.GridChart"), this);
    m_chart->setObjectName(QStringLiteral("GridChart1"));
    m_options = new QFrame(this);
    m_options->setObjectName(QStringLiteral("graphOptionsFrame"));
    buildOptions();
    m_save = new QPushButton(tr("Save Workbook…"), this);
    m_save->setObjectName(QStringLiteral("saveWorkbook"));
    m_save->setAutoDefault(false);
    m_save->hide();
    Zel::setTabChain({m_chart, m_details, m_questionList, m_byQuestion, m_byUser, m_showGraph,
                      m_rotate, m_save});
    const int dpi = Zel::logicalDpi(this);
    setMinimumSize(Zel::pixelsFromTwips(leastWidth, dpi), Zel::pixelsFromTwips(leastHeight, dpi));
    resize(Zel::pixelsFromTwips(formWidth, dpi), Zel::pixelsFromTwips(formHeight, dpi));
    place();
}

void ResultsVisualization::buildOptions()
{
    auto *shown = new QGroupBox(tr("Show"), m_options);
    shown->setObjectName(QStringLiteral("Frame1"));
    m_details =
        option<QRadioButton>(QStringLiteral("sortByQuestionDetails"), tr("&Details of"), shown);
    m_questionList = new QComboBox(shown);
    m_questionList->setObjectName(QStringLiteral("questionList"));
    m_questionList->setAccessibleName(tr("Question"));
    m_questionList->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_questionList->setMinimumContentsLength(10);
    m_byQuestion =
        option<QRadioButton>(QStringLiteral("sortByQuestion"), tr("Correct by &question"), shown);
    m_byUser = option<QRadioButton>(QStringLiteral("sortByUser"), tr("Correct by &user"), shown);
    auto *choices = new QGridLayout(shown);
    choices->addWidget(m_details, 0, 0);
    choices->addWidget(m_questionList, 0, 1);
    choices->addWidget(m_byQuestion, 1, 0, 1, 2);
    choices->addWidget(m_byUser, 2, 0, 1, 2);
    choices->setColumnStretch(1, 1);
    choices->setContentsMargins(8, 8, 8, 8);

    auto *graph = new QGroupBox(tr("Graph"), m_options);
    graph->setObjectName(QStringLiteral("Frame2"));
    m_showGraph = option<QCheckBox>(QStringLiteral("showGraph"), tr("Show &graph"), graph);
    m_showGraph->setChecked(true);
    m_rotate = option<QCheckBox>(QStringLiteral("rotateChart"), tr("&Rotate"), graph);
    auto *boxes = new QVBoxLayout(graph);
    boxes->addWidget(m_showGraph);
    boxes->addWidget(m_rotate);
    boxes->addStretch();
    boxes->setContentsMargins(8, 8, 8, 8);

    auto *row = new QHBoxLayout(m_options);
    row->setContentsMargins({});
    row->addWidget(shown, 1);
    row->addWidget(graph);
}

void ResultsVisualization::place()
{
    const int dpi = Zel::logicalDpi(this);
    const double formWide = Zel::twipsFromPixels(width(), dpi);
    const double formHigh = Zel::twipsFromPixels(height(), dpi);
    Zel::setTwipsGeometry(m_chart,
                          {margin, margin, formWide - 345, formHigh - (optionsHeight + 840)});
    Zel::setTwipsGeometry(m_options,
                          {formWide - 5880, formHigh - 2190, optionsWidth, optionsHeight});
    Zel::setTwipsGeometry(m_save,
                          {margin, formHigh - margin - buttonHeight, buttonWidth, buttonHeight});
}

void ResultsVisualization::resizeEvent(QResizeEvent *event)
{
    Form::resizeEvent(event);
    place();
}

void ResultsVisualization::showEvent(QShowEvent *event)
{
    Form::showEvent(event);
    place();
}

} // namespace ZelWebServiceControls
