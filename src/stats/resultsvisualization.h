// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/form.h"
#include "platform/widgets/latebound.h"
#include "stats/resultsfile.h"

#include <QVariant>

#include <optional>

class QCheckBox;
class QComboBox;
class QFrame;
class QPushButton;
class QRadioButton;

namespace ZelWebServiceControls {

/// What the chart forms of polls and of surveys have in common: a chart, the choice of what it
/// shows, and room for both.
///
/// Each use is a new form:
///
///     SurveyVisualization form;
///     if (form.Init(workbook, questions, respondents).toBool())
///         form.showModal(this);
///
/// The chart is the control that goes by ZelDataVisualization.GridChart in the registry; making the
/// form is error 429 when there is none. Errors of the chart propagate from `Init`; those of what a
/// person does reach the host.
class ZEL_EXPORT ResultsVisualization : public Zel::Form
{
    Q_OBJECT

public:
    ~ResultsVisualization() override;

    /// Loads the results and shows the first question.
    /// @param excelXML the workbook (workbook.h)
    /// @param questionCount how many questions can be chosen
    /// @param userCount respondents; kept, the form itself does not use it
    /// @return whether the chart understood the workbook; if not, the form is unloaded
    Q_INVOKABLE QVariant Init(const QString &excelXML, qint16 questionCount, qint16 userCount);

    qint16 questionCount() const { return m_questionCount; }

    qint16 userCount() const { return m_userCount; }

    /// Hands over what the workbook was made from, so that a person can save it: shows the button
    /// "Save Workbook…".
    void setModels(const ResultsModels &models);

protected:
    explicit ResultsVisualization(QWidget *parent);

    /// Shows how much was answered right, by question or by respondent.
    virtual void showByQuestion() = 0;
    virtual void showByUser() = 0;

    /// Calls an operation of the chart.
    void callChart(const QString &operation, const QVariantList &arguments) const;

    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void build();
    void buildOptions();
    void connectOptions();
    void place();
    void showDetails();
    void chooseQuestion();
    void rotate();
    void showGraph();
    void saveWorkbook();
    void unload();

    QWidget *m_chart = nullptr;
    QFrame *m_options = nullptr;
    QComboBox *m_questionList = nullptr;
    QRadioButton *m_details = nullptr;
    QRadioButton *m_byQuestion = nullptr;
    QRadioButton *m_byUser = nullptr;
    QCheckBox *m_rotate = nullptr;
    QCheckBox *m_showGraph = nullptr;
    QPushButton *m_save = nullptr;
    std::optional<ResultsModels> m_models;
    qint16 m_questionCount = 0;
    qint16 m_userCount = 0;
    /// The question shown in detail, from 1.
    qint16 m_question = 0;
};

} // namespace ZelWebServiceControls
