// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/resultsvisualization.h"

#include "platform/widgets/hourglass.h"
#include "platform/widgets/messageboxes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardPaths>

#include <algorithm>

namespace ZelWebServiceControls {

ResultsVisualization::ResultsVisualization(QWidget *parent)
    : Form(parent)
{
    build();
    connectOptions();
}

ResultsVisualization::~ResultsVisualization() = default;

void ResultsVisualization::connectOptions()
{
    onUser(m_details, &QRadioButton::clicked, &ResultsVisualization::showDetails);
    onUser(m_byQuestion, &QRadioButton::clicked, &ResultsVisualization::showByQuestion);
    onUser(m_byUser, &QRadioButton::clicked, &ResultsVisualization::showByUser);
    onUser(m_questionList, &QComboBox::activated, &ResultsVisualization::chooseQuestion);
    onUser(m_rotate, &QCheckBox::clicked, &ResultsVisualization::rotate);
    onUser(m_showGraph, &QCheckBox::clicked, &ResultsVisualization::showGraph);
    onUser(m_save, &QPushButton::clicked, &ResultsVisualization::saveWorkbook);
}

QVariant ResultsVisualization::Init(const QString &excelXML, qint16 questionCount, qint16 userCount)
{
    m_questionCount = questionCount;
    m_userCount = userCount;
    m_questionList->clear();
    for (int question = 1; question <= questionCount; ++question)
        m_questionList->addItem(tr("Question %1").arg(question));
    m_questionList->setCurrentIndex(questionCount > 0 ? 0 : -1);
    const QVariant understood =
        Zel::LateBound(m_chart).call(QStringLiteral("LoadWorkbookXml"), {excelXML});
    if (!understood.toBool()) {
        unload();
        return false;
    }
    m_details->setChecked(true);
    showDetails();
    return true;
}

void ResultsVisualization::setModels(const ResultsModels &models)
{
    m_models = models;
    m_save->show();
}

void ResultsVisualization::callChart(const QString &operation, const QVariantList &arguments) const
{
    Zel::LateBound(m_chart).call(operation, arguments);
}

void ResultsVisualization::showDetails()
{
    m_question = qint16(m_questionList->currentIndex() + 1);
    if (m_question > 0)
        callChart(QStringLiteral("ShowQuestionDetails"), {m_question});
}

void ResultsVisualization::chooseQuestion()
{
    if (m_details->isChecked())
        showDetails();
}

void ResultsVisualization::rotate()
{
    if (m_rotate->isChecked())
        callChart(QStringLiteral("RotateChart"), {qint16(1)});
    else
        callChart(QStringLiteral("ResetRotation"), {});
}

void ResultsVisualization::showGraph()
{
    callChart(QStringLiteral("SetShowGraph"), {m_showGraph->isChecked()});
}

void ResultsVisualization::saveWorkbook()
{
    const QString spreadsheet = tr("Workbook (*.xlsx)");
    const QString xml = tr("XML spreadsheet 2003 (*.xml)");
    const QString values = tr("Comma-separated values (*.csv)");
    QFileDialog dialog(this, tr("Save Workbook"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog.setNameFilters({spreadsheet, xml, values});
    dialog.setDefaultSuffix(QStringLiteral("xlsx"));
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString &filter) {
        dialog.setDefaultSuffix(filter == xml      ? QStringLiteral("xml")
                                : filter == values ? QStringLiteral("csv")
                                                   : QStringLiteral("xlsx"));
    });
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    QString fileName = dialog.selectedFiles().constFirst();
    const QString ending = QLatin1Char('.') + dialog.defaultSuffix();
    // "results.2026" has a dot and says no format.
    const QStringList endings{QStringLiteral(".xlsx"), QStringLiteral(".xml"),
                              QStringLiteral(".csv")};
    if (std::none_of(endings.begin(), endings.end(), [&](const QString &known) {
            return fileName.endsWith(known, Qt::CaseInsensitive);
        })) {
        fileName += ending;
        // The dialog has asked about another name.
        if (QFileInfo::exists(fileName) &&
            !Zel::askUser(this,
                          tr("%1 exists already. Replace it?").arg(QFileInfo(fileName).fileName())))
            return;
    }
    const Zel::Hourglass busy(this);
    saveResults(*m_models, fileName, resultsFormat(fileName));
}

void ResultsVisualization::unload()
{
    m_questionList->clear();
    m_question = 0;
    close();
}

} // namespace ZelWebServiceControls
