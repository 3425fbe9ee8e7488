// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/projectdetails.h"

#include "platform/core/datetext.h"
#include "studio/appearance.h"
#include "studio/textlabel.h"

#include <QApplication>
#include <QEvent>
#include <QFormLayout>
#include <QHash>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace Studio {

namespace {

constexpr int PanelWidth = 280;
/// Longer names and descriptions are shown shortened; the list's record is whole.
constexpr qsizetype LongestText = 2000;

QString dateOr(bool has, const QDateTime &date)
{
    return has ? Zel::generalDateText(date) : QString(QChar(0x2013));
}

} // namespace

ProjectDetails::ProjectDetails(QWidget *parent)
    : Card(parent)
{
    setObjectName(QStringLiteral("projectDetails"));
    setAccessibleName(tr("Project details"));
    setMinimumWidth(PanelWidth);
    setFocusPolicy(Qt::TabFocus);
    build();
    applyColors();
    showProject(nullptr, false);
    connect(m_open, &QPushButton::clicked, this, &ProjectDetails::openRequested);
    connect(m_check, &QPushButton::clicked, this, &ProjectDetails::checkRequested);
}

void ProjectDetails::build()
{
    m_hint = new QLabel(tr("Choose a project to see its details."), this);
    m_hint->setObjectName(QStringLiteral("projectHint"));
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    m_content = new QWidget;
    m_name = new TextLabel("detailName", LongestText, m_content);
    QFont font = m_name->font();
    font.setPointSizeF(font.pointSizeF() * 1.2);
    font.setWeight(QFont::DemiBold);
    m_name->setFont(font);
    m_description = new TextLabel("detailDescription", LongestText, m_content);
    auto *form = new QFormLayout;
    form->setHorizontalSpacing(14);
    form->setVerticalSpacing(7);
    form->setLabelAlignment(Qt::AlignLeft);
    form->setRowWrapPolicy(QFormLayout::DontWrapRows);
    m_eventDate = addRow(form, tr("Event date"), "detailEventDate");
    m_created = addRow(form, tr("Created"), "detailCreated");
    m_modified = addRow(form, tr("Modified"), "detailModified");
    m_createdBy = addRow(form, tr("Created by"), "detailCreatedBy");
    m_published = addRow(form, tr("Published"), "detailPublished");
    m_open = new QPushButton(tr("&Statistics"), m_content);
    m_open->setObjectName(QStringLiteral("openStatistics"));
    m_open->setToolTip(
        tr("See what happened in the project and answer its questions (double-click, "
           "or Enter in the list)"));
    m_check = new QPushButton(tr("Check &Published State"), m_content);
    m_check->setObjectName(QStringLiteral("checkPublished"));
    m_check->setToolTip(tr("Ask the service whether the project is published now"));
    auto *column = new QVBoxLayout(m_content);
    column->setContentsMargins(14, 12, 14, 12);
    column->setSpacing(12);
    column->addWidget(m_name);
    column->addWidget(m_description);
    column->addLayout(form);
    column->addWidget(m_open, 0, Qt::AlignLeft);
    column->addWidget(m_check, 0, Qt::AlignLeft);
    column->addStretch(1);

    m_scroll = new QScrollArea(this);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setWidgetResizable(true);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setWidget(m_content);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(4, 4, 4, 4); // clear of the card's round corners
    outer->addWidget(m_hint, 1);
    outer->addWidget(m_scroll, 1);
}

TextLabel *ProjectDetails::addRow(QFormLayout *form, const QString &caption, const char *name)
{
    auto *label = new QLabel(caption, m_content);
    m_captions << label;
    auto *value = new TextLabel(name, LongestText, m_content);
    value->setAccessibleName(caption);
    form->addRow(label, value);
    return value;
}

void ProjectDetails::showProject(const QXSC::ProjectRecordPtr &project, bool published)
{
    m_hint->setVisible(!project);
    m_scroll->setVisible(project != nullptr);
    // What nobody sees any more is not kept either: somebody else may sign in next.
    const QXSC::ProjectRecord shown = project ? *project : QXSC::ProjectRecord();
    m_name->showText(shown.name);
    m_description->showText(shown.description);
    m_description->setVisible(!shown.description.isEmpty());
    m_created->setText(dateOr(shown.hasCreated, shown.created));
    m_modified->setText(dateOr(shown.hasModified, shown.modified));
    m_createdBy->showText(shown.createdBy);
    m_eventDate->setText(dateOr(shown.hasEventDate, shown.eventDate));
    m_published->setText(published ? tr("Yes") : tr("Not yet"));
}

void ProjectDetails::applyColors()
{
    const QPalette base = QApplication::palette();
    setOwnColor(m_hint, QPalette::WindowText, mutedText(base));
    for (QLabel *caption : std::as_const(m_captions))
        setOwnColor(caption, QPalette::WindowText, mutedText(base));
    setOwnColor(m_scroll, QPalette::Window, Card::ground(base));
    m_scroll->viewport()->setAutoFillBackground(true);
}

void ProjectDetails::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

void ProjectDetails::keyPressEvent(QKeyEvent *event)
{
    static const QHash<int, QAbstractSlider::SliderAction> actions{
        {Qt::Key_Up, QAbstractSlider::SliderSingleStepSub},
        {Qt::Key_Down, QAbstractSlider::SliderSingleStepAdd},
        {Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub},
        {Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd},
        {Qt::Key_Home, QAbstractSlider::SliderToMinimum},
        {Qt::Key_End, QAbstractSlider::SliderToMaximum}};
    const auto action = actions.constFind(event->key());
    if (action != actions.cend())
        m_scroll->verticalScrollBar()->triggerAction(*action);
    else
        Card::keyPressEvent(event);
}

} // namespace Studio
