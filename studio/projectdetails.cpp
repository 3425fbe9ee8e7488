// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/projectdetails.h"

#include "platform/core/datetext.h"
#include "studio/appearance.h"

#include <QEvent>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace Studio {

namespace {

constexpr int PanelWidth = 280;
/// A name or description beyond this many characters is shown shortened; the list's record is
/// whole.
constexpr qsizetype LongestText = 2000;

QString shortened(const QString &text)
{
    return text.size() <= LongestText ? text : text.left(LongestText) + QChar(0x2026);
}

QLabel *makeText(QWidget *parent, const char *name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

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
    show(nullptr);
    connect(m_check, &QPushButton::clicked, this, &ProjectDetails::checkRequested);
}

void ProjectDetails::build()
{
    m_hint = new QLabel(tr("Choose a project to see its details."), this);
    m_hint->setObjectName(QStringLiteral("projectHint"));
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    m_content = new QWidget;
    m_name = makeText(m_content, "detailName");
    QFont font = m_name->font();
    font.setPointSizeF(font.pointSizeF() * 1.2);
    font.setWeight(QFont::DemiBold);
    m_name->setFont(font);
    m_description = makeText(m_content, "detailDescription");
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
    m_check = new QPushButton(tr("Check &Published State"), m_content);
    m_check->setObjectName(QStringLiteral("checkPublished"));
    m_check->setToolTip(tr("Ask the service whether the project is published now"));
    auto *column = new QVBoxLayout(m_content);
    column->setContentsMargins(14, 12, 14, 12);
    column->setSpacing(12);
    column->addWidget(m_name);
    column->addWidget(m_description);
    column->addLayout(form);
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

QLabel *ProjectDetails::addRow(QFormLayout *form, const QString &caption, const char *name)
{
    auto *label = new QLabel(caption, m_content);
    m_captions << label;
    QLabel *value = makeText(m_content, name);
    value->setAccessibleName(caption);
    form->addRow(label, value);
    return value;
}

void ProjectDetails::show(const QXSC::ProjectRecordPtr &project)
{
    m_hint->setVisible(!project);
    m_scroll->setVisible(project != nullptr);
    if (!project)
        return;
    m_name->setText(shortened(project->name));
    m_description->setText(shortened(project->description));
    m_description->setVisible(!project->description.isEmpty());
    m_created->setText(dateOr(project->hasCreated, project->created));
    m_modified->setText(dateOr(project->hasModified, project->modified));
    m_createdBy->setText(project->createdBy);
    m_eventDate->setText(dateOr(project->hasEventDate, project->eventDate));
    showPublished(project->published);
}

void ProjectDetails::showPublished(bool published)
{
    m_published->setText(published ? tr("Yes") : tr("Not yet"));
}

void ProjectDetails::applyColors()
{
    const QPalette base = parentWidget() ? parentWidget()->palette() : palette();
    QPalette muted = base;
    muted.setColor(QPalette::WindowText, mutedText(base));
    m_hint->setPalette(muted);
    for (QLabel *caption : std::as_const(m_captions))
        caption->setPalette(muted);
    QPalette ground = base;
    ground.setColor(QPalette::Window, Card::ground(base));
    m_scroll->setPalette(ground);
    m_scroll->viewport()->setAutoFillBackground(true);
}

void ProjectDetails::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange)
        applyColors();
}

} // namespace Studio
