// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/newprojectflow.h"

#include "common/contract/serviceerror.h"
#include "platform/widgets/hourglass.h"
#include "platform/widgets/taborder.h"
#include "studio/appearance.h"
#include "studio/errorcenter.h"
#include "studio/pageheader.h"
#include "studio/projectform.h"
#include "studio/recordeditor.h"
#include "studio/textlabel.h"
#include "studio/themestep.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QStackedWidget>
#include <QUuid>
#include <QVBoxLayout>

namespace Studio {

namespace {

enum Step
{
    ChoosingTheme,
    EditingRecord,
    FillingIn
};

constexpr int WidestForm = 820; // pixels
constexpr qsizetype LongestChoice = 80;

} // namespace

NewProjectFlow::NewProjectFlow(QXSC::ServiceClient &client, QXSC::StudioService &service,
                               ErrorCenter &errors, const RecordDrafts &drafts, QWidget *parent)
    : QWidget(parent)
    , m_client(client)
    , m_service(service)
    , m_errors(errors)
    , m_record(new RecordEditor(client, service, errors, drafts, this))
{
    setObjectName(QStringLiteral("newProjectFlow"));
    build();
    connectParts();
    applyColors();
}

NewProjectFlow::~NewProjectFlow() = default;

void NewProjectFlow::build()
{
    m_step = new QLabel(this);
    m_step->setObjectName(QStringLiteral("newProjectStep"));
    m_steps = new QStackedWidget(this);
    m_form = new ProjectForm(this);
    m_form->setMaximumWidth(WidestForm);
    m_choice = new QLabel(this);
    m_choice->setObjectName(QStringLiteral("chosenTheme"));
    m_choice->setTextFormat(Qt::PlainText);
    m_choice->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_cancel = makeButton(this, "cancelNewProject", tr("&Cancel"));
    m_cancel->setToolTip(tr("Go back to the projects without a new one (Esc)"));
    m_back = makeButton(this, "backToThemes", tr("&Back"));
    m_back->setToolTip(tr("Back to the step before; what was entered stays"));
    m_next = makeButton(this, "toProjectForm", tr("&Next"));
    m_save = makeButton(this, "saveNewProject", tr("&Save"));
    m_save->setToolTip(tr("Make the project (Ctrl+Enter)"));
    m_next->setDefault(true);
    m_save->setDefault(true);
    auto *head = new QHBoxLayout;
    head->addWidget(makeHeading(this, tr("New Project")));
    head->addSpacing(8);
    head->addWidget(m_step, 1);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(m_choice, 1);
    for (QPushButton *button : {m_cancel, m_back, m_next, m_save})
        buttons->addWidget(button);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 16, 20, 16);
    column->setSpacing(12);
    column->addLayout(head);
    column->addWidget(m_steps, 1);
    column->addLayout(buttons);
    renew();
    m_steps->addWidget(m_record);
    m_steps->addWidget(m_form);
}

void NewProjectFlow::renew()
{
    // A control keeps its choice when it loads again: a new project begins with none.
    delete m_themes;
    m_themes = new ThemeStep(m_client, m_errors, this);
    m_steps->insertWidget(ChoosingTheme, m_themes);
    Zel::setTabChain({m_themes, m_record, m_form, m_cancel, m_back, m_next, m_save});
    connect(m_themes, &ThemeStep::choiceChanged, this, &NewProjectFlow::showChoice);
    connect(m_themes, &ThemeStep::confirmed, this, &NewProjectFlow::next);
}

void NewProjectFlow::connectParts()
{
    connect(m_cancel, &QPushButton::clicked, this, &NewProjectFlow::cancel);
    connect(m_back, &QPushButton::clicked, this, &NewProjectFlow::back);
    connect(m_record, &RecordEditor::changed, this, &NewProjectFlow::showChoice);
    connect(m_next, &QPushButton::clicked, this, &NewProjectFlow::next);
    connect(m_save, &QPushButton::clicked, this, &NewProjectFlow::save);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *finish = new QShortcut(QKeySequence(Qt::CTRL | key), m_form);
        finish->setContext(Qt::WidgetWithChildrenShortcut);
        connect(finish, &QShortcut::activated, this, &NewProjectFlow::save);
    }
}

void NewProjectFlow::start(const QString &typeID)
{
    m_typeID = typeID;
    m_guid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    renew();
    m_record->clear();
    m_form->start();
    showStep(ChoosingTheme);
    m_errors.attempt([this] { load(); });
}

void NewProjectFlow::load()
{
    m_themes->load();
    loadTypes();
}

void NewProjectFlow::loadTypes()
{
    const Zel::Hourglass hourglass(this);
    m_form->offerTypes(m_service.projectTypes(), m_typeID);
}

void NewProjectFlow::leave()
{
    m_record->clear();
}

void NewProjectFlow::takeFocus()
{
    switch (m_steps->currentIndex()) {
    case ChoosingTheme:
        m_themes->takeFocus();
        break;
    case EditingRecord:
        m_record->takeFocus();
        break;
    default:
        m_form->takeFocus();
    }
}

void NewProjectFlow::showStep(int step)
{
    m_steps->setCurrentIndex(step);
    const bool isLast = step == FillingIn;
    const QString steps[] = {tr("Step 1 of 3: theme"), tr("Step 2 of 3: record of the theme"),
                             tr("Step 3 of 3: name and type")};
    m_step->setText(steps[step]);
    m_back->setVisible(step != ChoosingTheme);
    m_save->setVisible(isLast);
    m_next->setVisible(!isLast);
    showChoice();
    takeFocus();
}

void NewProjectFlow::showChoice()
{
    const QXSC::ThemeRecordPtr theme = m_themes->chosen();
    m_next->setEnabled(theme != nullptr);
    const bool savesRecord = m_steps->currentIndex() == EditingRecord && m_record->hasChanges();
    if (savesRecord)
        m_next->setToolTip(tr("Save the record and go on to name and type"));
    else
        m_next->setToolTip(theme ? tr("Go on to the next step (Enter)")
                                 : tr("Choose a theme first: click it, or press Enter on it"));
    m_next->setText(savesRecord ? tr("Save, &Next") : tr("&Next"));
    m_choice->setText(theme
                          ? tr("Theme: %1").arg(shortened(theme->name.simplified(), LongestChoice))
                          : tr("No theme chosen yet"));
}

bool NewProjectFlow::hasRecordStep() const
{
    return m_record->hasFields();
}

void NewProjectFlow::next()
{
    if (m_steps->currentIndex() == ChoosingTheme && m_themes->chosen())
        openRecord();
    else if (m_steps->currentIndex() == EditingRecord)
        m_errors.attempt([this] {
            if (m_record->save())
                openForm();
        });
}

void NewProjectFlow::back()
{
    const bool toRecord = m_steps->currentIndex() == FillingIn && hasRecordStep();
    showStep(toRecord ? EditingRecord : ChoosingTheme);
}

void NewProjectFlow::openRecord()
{
    const QXSC::ThemeRecordPtr theme = m_themes->chosen();
    const bool isLoaded = theme->guid == m_record->themeGuid();
    // Another theme was chosen after the first one's record was edited.
    if (!isLoaded && !m_record->maySetAside())
        return;
    m_errors.attempt([this, theme] {
        if (theme->guid != m_record->themeGuid()) {
            // Fields are built as wide as there is room: the step is shown first.
            m_steps->setCurrentIndex(EditingRecord);
            m_steps->layout()->activate();
            m_record->layout()->activate();
            try {
                m_record->load(theme->guid, theme->name);
            } catch (const QXSC::ServiceError &) {
                m_record->clear();
                m_steps->setCurrentIndex(ChoosingTheme);
                throw;
            } catch (const Zel::RuntimeError &error) {
                // The record cannot be shown to its end and is left as it is; a project can be
                // made.
                m_errors.report(error);
                openForm();
                return;
            }
        }
        if (hasRecordStep())
            showStep(EditingRecord);
        else
            openForm();
    });
}

void NewProjectFlow::openForm()
{
    if (!m_form->hasTypes())
        loadTypes();
    showStep(FillingIn);
}

bool NewProjectFlow::holdsChanges() const
{
    return m_form->hasEntries() || m_record->hasChanges();
}

void NewProjectFlow::save()
{
    if (m_isSaving || !m_form->check())
        return;
    m_errors.attempt([this] { create(); });
}

QXSC::ProjectRecordPtr NewProjectFlow::request(const QXSC::NewProject &project)
{
    const Zel::Hourglass hourglass(this);
    try {
        return m_service.createProject(project);
    } catch (const QXSC::ServiceError &error) {
        if (error.kind() != QXSC::ServiceError::Kind::Conflict)
            throw;
        // An earlier try whose answer was lost has come through, with other entries.
        throw QXSC::ServiceError(
            error.kind(),
            tr("The project was made before its entries were changed. Cancel, then refresh the "
               "list to find it as it was first saved."),
            error.code(), error.details());
    }
}

void NewProjectFlow::create()
{
    // What was changed since a try that failed counts.
    if (m_isSaving || !isVisible() || !m_form->check())
        return;
    const QScopedValueRollback<bool> saving(m_isSaving, true);
    QXSC::NewProject project = m_form->entries();
    project.guid = m_guid;
    project.themeGuid = m_themes->chosen()->guid;
    const QXSC::ProjectRecordPtr made = request(project);
    if (!made)
        throw QXSC::ServiceError(
            QXSC::ServiceError::Kind::Unavailable,
            tr("The service answered nothing. Try again; what was entered is still here."));
    emit created(made->guid, project.typeID);
}

bool NewProjectFlow::maySetAside()
{
    if (!m_record->maySetAside())
        return false;
    if (!m_form->hasEntries())
        return true;
    QMessageBox box(QMessageBox::Question, tr("New Project"),
                    tr("What you have entered for the new project is not saved."),
                    QMessageBox::Discard | QMessageBox::Cancel, this);
    box.setObjectName(QStringLiteral("discardNewProject"));
    box.setInformativeText(tr("Discard it?"));
    box.button(QMessageBox::Cancel)->setText(tr("&Keep Editing"));
    box.setDefaultButton(QMessageBox::Cancel);
    return box.exec() == QMessageBox::Discard;
}

void NewProjectFlow::cancel()
{
    if (m_isSaving || !maySetAside())
        return;
    m_errors.clear(); // with the form goes what it could try again
    m_record->clear();
    emit cancelled();
}

void NewProjectFlow::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    // A problem that stands is what Esc closes first.
    if (event->key() == Qt::Key_Escape && !m_errors.hasProblem())
        cancel();
    else if (isEnter && m_steps->currentIndex() == FillingIn)
        save();
    else
        QWidget::keyPressEvent(event);
}

void NewProjectFlow::applyColors()
{
    const QColor muted = mutedText(QApplication::palette());
    setOwnColor(m_step, QPalette::WindowText, muted);
    setOwnColor(m_choice, QPalette::WindowText, muted);
}

void NewProjectFlow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

} // namespace Studio
