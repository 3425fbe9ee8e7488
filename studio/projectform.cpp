// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/projectform.h"

#include "studio/appearance.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

namespace Studio {

namespace {

// Device-independent pixels.
constexpr int NarrowestMessage = 64;
constexpr int NarrowestDate = 190;
constexpr int HighestDescription = 260;

void tell(QLabel &label, const QString &text)
{
    if (label.text() == text)
        return;
    label.setText(text);
    label.setVisible(!text.isEmpty());
    if (text.isEmpty())
        return;
    QAccessibleEvent event(&label, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace

ProjectForm::ProjectForm(QWidget *parent)
    : QWidget(parent)
{
    build();
    connect(m_hasDate, &QCheckBox::toggled, m_date, &QWidget::setEnabled);
    connect(m_name, &QLineEdit::textChanged, this, &ProjectForm::showProblems);
    connect(m_type, &QComboBox::currentIndexChanged, this, &ProjectForm::showProblems);
    connect(m_description, &QPlainTextEdit::textChanged, this, &ProjectForm::showProblems);
    applyColors();
    start();
}

QLabel *ProjectForm::addMessage(QGridLayout &grid, int row, const char *name)
{
    auto *label = new QLabel(this);
    label->setObjectName(QLatin1String(name));
    label->setWordWrap(true);
    label->setMinimumWidth(NarrowestMessage);
    label->hide();
    grid.addWidget(label, row, 1);
    return label;
}

void ProjectForm::build()
{
    m_name = new QLineEdit(this);
    m_name->setObjectName(QStringLiteral("newName"));
    m_name->setAccessibleDescription(tr("required"));
    m_name->setMaxLength(LongestName * 10); // too long is said, not cut off
    m_type = new QComboBox(this);
    m_type->setObjectName(QStringLiteral("newType"));
    m_type->setAccessibleDescription(tr("required"));
    m_type->setToolTip(tr("The project appears in the list of this type"));
    m_description = new QPlainTextEdit(this);
    m_description->setObjectName(QStringLiteral("newDescription"));
    m_description->setTabChangesFocus(true);
    m_description->setMaximumHeight(HighestDescription);
    m_hasDate = new QCheckBox(tr("&Event date"), this);
    m_hasDate->setObjectName(QStringLiteral("newHasDate"));
    m_hasDate->setToolTip(tr("Whether the date of the event is known"));
    m_date = new QDateTimeEdit(this);
    m_date->setObjectName(QStringLiteral("newDate"));
    m_date->setAccessibleName(tr("Event date"));
    m_date->setCalendarPopup(true);
    m_date->setEnabled(false);
    m_date->setMinimumWidth(NarrowestDate);
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 8, 0, 0);
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(8);
    const auto add = [this, grid](int row, const QString &caption, QWidget *field,
                                  Qt::Alignment alignment) {
        auto *label = new QLabel(caption, this);
        label->setBuddy(field);
        grid->addWidget(label, row, 0, alignment);
        grid->addWidget(field, row, 1);
    };
    add(0, tr("Na&me (required)"), m_name, Qt::AlignVCenter);
    m_nameProblem = addMessage(*grid, 1, "newNameProblem");
    add(2, tr("&Type (required)"), m_type, Qt::AlignVCenter);
    m_typeProblem = addMessage(*grid, 3, "newTypeProblem");
    add(4, tr("&Description"), m_description, Qt::AlignTop);
    m_descriptionProblem = addMessage(*grid, 5, "newDescriptionProblem");
    grid->addWidget(m_hasDate, 6, 0);
    grid->addWidget(m_date, 6, 1, Qt::AlignLeft);
    grid->setRowStretch(4, 3);
    grid->setRowStretch(7, 1);
    grid->setColumnStretch(1, 1);
}

void ProjectForm::start()
{
    m_isChecked = false;
    m_name->clear();
    m_type->clear();
    m_description->clear();
    m_hasDate->setChecked(false);
    m_date->setDateTime(QDateTime(QDate::currentDate().addDays(7), QTime(19, 0)));
    showProblems();
}

void ProjectForm::offerTypes(const QList<QXSC::ProjectType> &types, const QString &preferred)
{
    const QString before = hasTypes() ? m_type->currentData().toString() : preferred;
    m_type->clear();
    for (const QXSC::ProjectType &type : types)
        m_type->addItem(type.name, type.typeID);
    const int known = m_type->findData(before);
    m_type->setCurrentIndex(known >= 0 || types.isEmpty() ? known : 0);
}

bool ProjectForm::hasTypes() const
{
    return m_type->count() > 0;
}

bool ProjectForm::hasEntries() const
{
    return !m_name->text().isEmpty() || !m_description->document()->isEmpty() ||
           m_hasDate->isChecked();
}

QString ProjectForm::nameProblem() const
{
    const QString name = m_name->text().trimmed();
    if (name.isEmpty())
        return m_isChecked ? tr("A project needs a name.") : QString();
    if (name.size() > LongestName)
        return tr("A name has at most %1 characters; these are %2.")
            .arg(locale().toString(LongestName), locale().toString(name.size()));
    return {};
}

QString ProjectForm::descriptionProblem() const
{
    // A character counts as in the text itself, a line break as one.
    const int length = m_description->document()->characterCount() - 1;
    if (length <= LongestDescription)
        return {};
    return tr("A description has at most %1 characters; these are %2.")
        .arg(locale().toString(LongestDescription), locale().toString(length));
}

void ProjectForm::showProblems()
{
    tell(*m_nameProblem, nameProblem());
    tell(*m_typeProblem, m_isChecked && m_type->currentIndex() < 0
                             ? tr("A project needs a type, and this account has none.")
                             : QString());
    tell(*m_descriptionProblem, descriptionProblem());
}

bool ProjectForm::check()
{
    m_isChecked = true;
    showProblems();
    QWidget *wrong = nullptr;
    if (!m_nameProblem->text().isEmpty())
        wrong = m_name;
    else if (!m_typeProblem->text().isEmpty())
        wrong = m_type;
    else if (!m_descriptionProblem->text().isEmpty())
        wrong = m_description;
    if (wrong)
        wrong->setFocus(Qt::OtherFocusReason);
    return !wrong;
}

QXSC::NewProject ProjectForm::entries() const
{
    QXSC::NewProject project;
    project.name = m_name->text().trimmed();
    project.typeID = m_type->currentData().toString();
    project.description = m_description->toPlainText();
    if (m_hasDate->isChecked())
        project.eventDate = m_date->dateTime();
    return project;
}

void ProjectForm::takeFocus()
{
    m_name->setFocus(Qt::OtherFocusReason);
}

void ProjectForm::applyColors()
{
    const QColor alarm = alarmText(QApplication::palette());
    for (QLabel *label : {m_nameProblem, m_typeProblem, m_descriptionProblem})
        setOwnColor(label, QPalette::WindowText, alarm);
}

void ProjectForm::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

} // namespace Studio
