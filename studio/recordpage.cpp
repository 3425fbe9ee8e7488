// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/recordpage.h"

#include "platform/widgets/taborder.h"
#include "studio/appearance.h"
#include "studio/errorcenter.h"
#include "studio/pageheader.h"
#include "studio/recorddrafts.h"
#include "studio/recordeditor.h"
#include "studio/textlabel.h"
#include "studio/themestep.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStackedLayout>
#include <QToolButton>
#include <QVBoxLayout>

namespace Studio {

namespace {

constexpr qsizetype LongestName = 120;

QVBoxLayout *makeColumn(QWidget *parent)
{
    auto *column = new QVBoxLayout(parent);
    column->setContentsMargins(20, 16, 20, 16);
    column->setSpacing(12);
    return column;
}

} // namespace

RecordPage::RecordPage(QXSC::ServiceClient &client, QXSC::StudioService &service,
                       ErrorCenter &errors, const RecordDrafts &drafts, QWidget *parent)
    : Page(parent)
    , m_client(client)
    , m_errors(errors)
    , m_editor(new RecordEditor(client, service, errors, drafts, this))
{
    setObjectName(QStringLiteral("recordPage"));
    m_stack = new QStackedLayout(this);
    m_chooser = makeChooser();
    m_desk = makeDesk();
    m_stack->addWidget(m_chooser);
    m_stack->addWidget(m_desk);
    connect(m_edit, &QPushButton::clicked, this, &RecordPage::edit);
    connect(m_refresh, &QToolButton::clicked, this, &RecordPage::refresh);
    connect(m_back, &QToolButton::clicked, this, &RecordPage::goBack);
    applyColors();
    leave();
}

RecordPage::~RecordPage() = default;

QString RecordPage::title() const
{
    return tr("Record");
}

QString RecordPage::icon() const
{
    return QStringLiteral("record");
}

QWidget *RecordPage::makeChooser()
{
    auto *chooser = new QWidget(this);
    m_refresh = makeTool(chooser, "refreshRecordThemes", QStringLiteral("refresh"), tr("Refresh"),
                         tr("Load the themes again (F5)"));
    m_refresh->setShortcut(QKeySequence(Qt::Key_F5));
    m_choice = new QLabel(chooser);
    m_choice->setObjectName(QStringLiteral("recordChoice"));
    m_choice->setTextFormat(Qt::PlainText);
    m_choice->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_edit = new QPushButton(tr("&Edit Record"), chooser);
    m_edit->setObjectName(QStringLiteral("editRecord"));
    m_edit->setDefault(true);
    auto *head = new QHBoxLayout;
    head->addWidget(makeHeading(chooser, title()));
    head->addStretch(1);
    head->addWidget(m_refresh);
    auto *foot = new QHBoxLayout;
    foot->addWidget(m_choice, 1);
    foot->addWidget(m_edit);
    QVBoxLayout *column = makeColumn(chooser);
    column->addLayout(head);
    column->addLayout(foot);
    return chooser;
}

QWidget *RecordPage::makeDesk()
{
    auto *desk = new QWidget(this);
    m_back = makeTool(desk, "backToRecordThemes", QStringLiteral("back"), tr("Themes"),
                      tr("Choose another theme (Esc)"));
    m_theme = new TextLabel("recordTheme", LongestName, desk);
    m_theme->setFont(makeHeading(desk, QString())->font());
    auto *head = new QHBoxLayout;
    head->setSpacing(12);
    head->addWidget(m_back, 0, Qt::AlignTop);
    head->addWidget(m_theme, 1);
    QVBoxLayout *column = makeColumn(desk);
    column->addLayout(head);
    column->addWidget(m_editor, 1);
    Zel::setTabChain({m_back, m_editor});
    return desk;
}

void RecordPage::renewThemes()
{
    // A control keeps its choice when it loads again: another person begins with none.
    delete m_themes;
    m_themes = new ThemeStep(m_client, m_errors, m_chooser);
    static_cast<QVBoxLayout *>(m_chooser->layout())->insertWidget(1, m_themes, 1);
    Zel::setTabChain({m_refresh, m_themes, m_edit});
    connect(m_themes, &ThemeStep::choiceChanged, this, &RecordPage::showChoice);
    connect(m_themes, &ThemeStep::confirmed, this, &RecordPage::edit);
    showChoice();
}

void RecordPage::open()
{
    if (!m_isLoaded && !isEditing())
        loadThemes();
}

void RecordPage::leave()
{
    m_editor->clear();
    m_stack->setCurrentWidget(m_chooser);
    renewThemes();
    m_isLoaded = false;
}

void RecordPage::loadThemes()
{
    m_isLoaded = false;
    m_themes->load();
    m_isLoaded = true;
}

void RecordPage::refresh()
{
    m_errors.attempt([this] { loadThemes(); });
}

void RecordPage::showChoice()
{
    const QXSC::ThemeRecordPtr theme = m_themes->chosen();
    m_edit->setEnabled(theme != nullptr);
    m_edit->setToolTip(theme ? tr("Edit the record of this theme (Enter)")
                             : tr("Choose a theme first: click it, or press Enter on it"));
    m_choice->setText(theme ? tr("Theme: %1").arg(shortened(theme->name.simplified(), LongestName))
                            : tr("Choose the theme whose record you want to edit"));
}

void RecordPage::edit()
{
    const QXSC::ThemeRecordPtr theme = m_themes->chosen();
    if (!theme || isEditing())
        return;
    m_errors.attempt([this, theme] {
        showDesk(theme->name);
        m_editor->load(theme->guid, theme->name);
        m_editor->takeFocus();
    });
}

void RecordPage::resume(const RecordDraft &draft)
{
    if (isEditing() && !m_editor->maySetAside())
        return;
    showDesk(draft.themeName);
    if (m_editor->resume(draft))
        m_editor->takeFocus();
    else
        showChooser();
}

void RecordPage::showDesk(const QString &themeName)
{
    m_theme->showText(themeName.simplified());
    m_stack->setCurrentWidget(m_desk);
    m_stack->activate(); // fields are built as wide as there is room
    m_desk->layout()->activate();
    m_editor->layout()->activate();
}

void RecordPage::showChooser()
{
    m_editor->clear();
    m_stack->setCurrentWidget(m_chooser);
    if (!m_isLoaded)
        refresh();
    m_themes->takeFocus();
}

void RecordPage::goBack()
{
    if (!m_editor->maySetAside())
        return;
    m_errors.clear(); // with the form goes what could be tried again
    showChooser();
}

bool RecordPage::isEditing() const
{
    return m_stack->currentWidget() == m_desk;
}

bool RecordPage::holdsChanges() const
{
    return isEditing() && m_editor->hasChanges();
}

bool RecordPage::mayClose()
{
    return mayLeave();
}

bool RecordPage::mayLeave()
{
    return !isEditing() || m_editor->maySetAside();
}

void RecordPage::focusInEvent(QFocusEvent *)
{
    if (isEditing())
        m_editor->takeFocus();
    else
        m_themes->takeFocus();
}

void RecordPage::keyPressEvent(QKeyEvent *event)
{
    // A problem that stands is what Esc closes first.
    if (event->key() == Qt::Key_Escape && isEditing() && !m_errors.hasProblem())
        goBack();
    else
        Page::keyPressEvent(event);
}

void RecordPage::applyColors()
{
    setOwnColor(m_choice, QPalette::WindowText, mutedText(QApplication::palette()));
}

void RecordPage::changeEvent(QEvent *event)
{
    Page::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

} // namespace Studio
