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
    FillingIn
};

constexpr int WidestForm = 820; // pixels
constexpr qsizetype LongestChoice = 80;

QPushButton *makeButton(QWidget *parent, const char *name, const QString &caption)
{
    auto *button = new QPushButton(caption, parent);
    button->setObjectName(QLatin1String(name));
    return button;
}

} // namespace

NewProjectFlow::NewProjectFlow(QXSC::ServiceClient &client, QXSC::StudioService &service,
                               ErrorCenter &errors, QWidget *parent)
    : QWidget(parent)
    , m_client(client)
    , m_service(service)
    , m_errors(errors)
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
    m_back->setToolTip(tr("Choose another theme; what was entered stays"));
    m_next = makeButton(this, "toProjectForm", tr("&Next"));
    m_save = makeButton(this, "saveNewProject", tr("&Save"));
    m_save->setToolTip(tr("Make the project (Ctrl+Enter)"));
    for (QPushButton *button : {m_cancel, m_back})
        button->setAutoDefault(true); // Enter on it presses it
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
    m_steps->addWidget(m_form);
}

void NewProjectFlow::renew()
{
    // A control keeps its choice when it loads again: a new project begins with none.
    delete m_themes;
    m_themes = new ThemeStep(m_client, m_errors, this);
    m_steps->insertWidget(ChoosingTheme, m_themes);
    Zel::setTabChain({m_themes, m_form, m_cancel, m_back, m_next, m_save});
    connect(m_themes, &ThemeStep::choiceChanged, this, &NewProjectFlow::showChoice);
    connect(m_themes, &ThemeStep::confirmed, this, &NewProjectFlow::next);
}

void NewProjectFlow::connectParts()
{
    connect(m_cancel, &QPushButton::clicked, this, &NewProjectFlow::cancel);
    connect(m_back, &QPushButton::clicked, this, [this] { showStep(ChoosingTheme); });
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

void NewProjectFlow::takeFocus()
{
    if (m_steps->currentIndex() == ChoosingTheme)
        m_themes->takeFocus();
    else
        m_form->takeFocus();
}

void NewProjectFlow::showStep(int step)
{
    m_steps->setCurrentIndex(step);
    const bool isLast = step == FillingIn;
    m_step->setText(isLast ? tr("Step 2 of 2: name and type") : tr("Step 1 of 2: theme"));
    m_back->setVisible(isLast);
    m_save->setVisible(isLast);
    m_next->setVisible(!isLast);
    showChoice();
    takeFocus();
}

void NewProjectFlow::showChoice()
{
    const QXSC::ThemeRecordPtr theme = m_themes->chosen();
    m_next->setEnabled(theme != nullptr);
    m_next->setToolTip(theme ? tr("Go on to name and type (Enter)")
                             : tr("Choose a theme first: click it, or press Enter on it"));
    m_choice->setText(theme
                          ? tr("Theme: %1").arg(shortened(theme->name.simplified(), LongestChoice))
                          : tr("No theme chosen yet"));
}

void NewProjectFlow::next()
{
    if (!m_themes->chosen() || m_steps->currentIndex() != ChoosingTheme)
        return;
    m_errors.attempt([this] {
        if (!m_form->hasTypes())
            loadTypes();
        showStep(FillingIn);
    });
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
