// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/recordeditor.h"

#include "platform/widgets/hourglass.h"
#include "platform/widgets/taborder.h"
#include "records/datarecordmanager.h"
#include "studio/appearance.h"
#include "studio/card.h"
#include "studio/errorcenter.h"
#include "studio/pageheader.h"
#include "studio/recordconflict.h"
#include "studio/recorddrafts.h"
#include "studio/textlabel.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace Studio {

using ZelWebServiceControls::DataRecordManager;

namespace {

using namespace std::chrono_literals;

constexpr auto DraftDelay = 500ms;
constexpr auto RestDelay = 200ms;
constexpr qsizetype LongestName = 80;
constexpr qsizetype LongestMessage = 300;

} // namespace

RecordEditor::RecordEditor(QXSC::ServiceClient &client, QXSC::StudioService &service,
                           ErrorCenter &errors, const RecordDrafts &drafts, QWidget *parent)
    : QWidget(parent)
    , m_client(client)
    , m_service(service)
    , m_errors(errors)
    , m_drafts(drafts)
{
    setObjectName(QStringLiteral("recordEditor"));
    build();
    connectParts();
    applyColors();
    clear();
}

RecordEditor::~RecordEditor()
{
    // Fields tell of their last edit while they go.
    delete m_form;
}

void RecordEditor::build()
{
    m_sheet = new Card(this);
    auto *room = new QVBoxLayout(m_sheet);
    room->setContentsMargins(16, 12, 12, 12);
    m_message = new TextLabel("recordMessage", LongestMessage, this);
    m_message->setAlignment(Qt::AlignCenter);
    m_stack = new QStackedWidget(this);
    m_stack->addWidget(m_sheet);
    m_stack->addWidget(m_message);
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("recordStatus"));
    m_status->setTextFormat(Qt::PlainText);
    m_status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_revert = makeButton(this, "revertRecord", tr("&Revert…"),
                          tr("Bring the values back that were loaded"));
    m_save = makeButton(this, "saveRecord", tr("&Save"), tr("Save the record (Ctrl+S)"));
    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(m_status, 1);
    row->addWidget(m_revert);
    row->addWidget(m_save);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(12);
    column->addWidget(m_stack, 1);
    column->addLayout(row);
}

void RecordEditor::connectParts()
{
    for (QTimer *timer : {&m_marking, &m_drafting, &m_resting})
        timer->setSingleShot(true);
    m_drafting.setInterval(DraftDelay);
    m_resting.setInterval(RestDelay);
    connect(&m_marking, &QTimer::timeout, this, &RecordEditor::showChanges);
    connect(&m_drafting, &QTimer::timeout, this, &RecordEditor::keepDraft);
    connect(&m_resting, &QTimer::timeout, this, &RecordEditor::fitSize);
    connect(m_save, &QPushButton::clicked, this, &RecordEditor::store);
    connect(m_revert, &QPushButton::clicked, this, &RecordEditor::askToRevert);
    auto *shortcut = new QShortcut(QKeySequence::Save, this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this, &RecordEditor::store);
}

void RecordEditor::store()
{
    if (m_marking.isActive())
        showChanges();
    if (m_save->isEnabled())
        m_errors.attempt([this] { save(); });
}

void RecordEditor::renewForm()
{
    delete m_form;
    m_form = new DataRecordManager(m_sheet);
    m_form->setObjectName(QStringLiteral("record"));
    m_form->setAccessibleName(tr("Record"));
    m_sheet->layout()->addWidget(m_form);
    m_form->installEventFilter(this);
    m_form->setFieldEditedHandler([this](const QString &) { fieldEdited(); });
    connect(m_form, &DataRecordManager::runtimeError, this,
            [this](const Zel::RuntimeError &error) { m_errors.report(error); });
    Zel::setTabChain({m_form, m_revert, m_save});
}

void RecordEditor::clear()
{
    if (m_drafting.isActive())
        keepDraft();
    for (QTimer *timer : {&m_marking, &m_drafting, &m_resting})
        timer->stop();
    m_draft.reset();
    m_isWhole = false;
    m_themeGuid.clear();
    m_themeName.clear();
    m_loaded.clear();
    m_marked.clear();
    renewForm();
    m_message->showText(QString());
    m_stack->setCurrentWidget(m_message);
    showStatus(QString());
    m_save->setEnabled(false);
    m_revert->setEnabled(false);
}

void RecordEditor::fetch(const QString &themeGuid, const QString &themeName)
{
    clear();
    m_themeGuid = themeGuid;
    m_themeName = themeName;
    m_message->showText(tr("The record could not be loaded"));
    // The fields are built as wide as the form is.
    m_stack->setCurrentWidget(m_sheet);
    m_sheet->layout()->activate();
    m_builtSize = m_form->size();
    m_form->Init(&m_client);
    const Zel::Hourglass hourglass(this);
    try {
        m_form->LoadThemeDataRecord(themeGuid);
    } catch (...) {
        // What was built of it is for looking; it may lack fields and values.
        m_form->setEnabled(false);
        if (!record())
            m_stack->setCurrentWidget(m_message);
        throw;
    }
    m_isWhole = true;
    if (record())
        m_loaded = draftEntries(*record());
}

void RecordEditor::load(const QString &themeGuid, const QString &themeName)
{
    fetch(themeGuid, themeName);
    showForm();
}

bool RecordEditor::resume(const RecordDraft &draft)
{
    fetch(draft.themeGuid, draft.themeName);
    QList<FieldConflict> conflicts =
        record() ? conflictsBetween(draft.entries, *record()) : QList<FieldConflict>();
    const bool isClear =
        std::all_of(conflicts.begin(), conflicts.end(), [](const FieldConflict &conflict) {
            return conflict.changed == FieldConflict::Changed::Here;
        });
    const QString explanation =
        tr("The record of \"%1\" was saved on the server after this draft was kept. Choose what "
           "to go on with; nothing is saved yet.")
            .arg(shortened(m_themeName.simplified(), LongestName));
    if (!isClear && !decide(conflicts, explanation, tr("&Go On"))) {
        clear();
        return false;
    }
    if (!record()) {
        showForm(); // says that there is nothing to fill in
        throw QXSC::ServiceError(QXSC::ServiceError::Kind::NotFound,
                                 tr("The theme of this draft has no record any more. The draft "
                                    "stays where it is."));
    }
    applyChoices(conflicts, *record());
    rebuild();
    showForm();
    // What could not be taken over is not given up. What the author has given up for theirs is.
    const bool isGivenUp =
        std::all_of(conflicts.begin(), conflicts.end(), [](const FieldConflict &conflict) {
            return !conflict.keepsMine && conflict.changed != FieldConflict::Changed::Gone;
        });
    if (keepDraft() || isGivenUp)
        RecordDrafts::discard(draft);
    return true;
}

QXSC::DataRecordPtr RecordEditor::record() const
{
    return m_form->GetDataRecord();
}

bool RecordEditor::hasFields() const
{
    if (!m_isWhole || !record())
        return false;
    const QList<QWidget *> fields = m_form->findChildren<QWidget *>();
    return std::any_of(fields.begin(), fields.end(), [](const QWidget *field) {
        return field->objectName().startsWith(QLatin1String("widget_"));
    });
}

void RecordEditor::showForm()
{
    if (!record())
        m_message->showText(tr("This theme has no record: there is nothing to fill in."));
    else
        m_message->showText(tr("The record of this theme has no field that can be edited."));
    m_stack->setCurrentWidget(hasFields() ? m_sheet : m_message);
    showChanges();
    m_resting.start(); // a scroll bar that came in may have left the fields less room
}

bool RecordEditor::hasChanges() const
{
    return m_isWhole && !m_form->changedLabels().isEmpty();
}

QList<RecordDraft::Entry> RecordEditor::edited()
{
    m_form->UpdateDataRecord();
    const QStringList changed = m_form->changedLabels();
    QList<RecordDraft::Entry> entries = m_loaded;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        // A field may write what it was given in words of its own: that is no change.
        if (changed.contains(entries.at(i).label))
            entries[i].value = record()->entries->item(i + 1)->value;
    }
    return entries;
}

bool RecordEditor::save()
{
    if (!hasChanges())
        return true;
    const QXSC::DataRecordPtr mine = record();
    for (;;) {
        m_form->UpdateDataRecord();
        QXSC::DataRecordSave result;
        {
            const Zel::Hourglass hourglass(this);
            result = m_service.saveThemeDataRecord(m_themeGuid, *mine);
        }
        if (result.isSaved) {
            accepted(result.version);
            return true;
        }
        if (!result.newer || !result.newer->entries)
            throw QXSC::ServiceError(
                QXSC::ServiceError::Kind::Conflict,
                tr("Somebody has saved this record since it was loaded, and the service did not "
                   "say what it holds now. Try again; what you typed is still here."));
        if (!resolve(result.newer))
            return false;
        if (!hasChanges()) { // an earlier save whose answer was lost, or all of theirs
            accepted(record()->version);
            return true;
        }
    }
}

bool RecordEditor::resolve(const QXSC::DataRecordPtr &newer)
{
    QList<FieldConflict> conflicts = conflictsBetween(edited(), *newer);
    const QString explanation =
        tr("Somebody has saved the record of \"%1\" since you loaded it. Choose the values to "
           "save; Cancel saves nothing and keeps what you typed.")
            .arg(shortened(m_themeName.simplified(), LongestName));
    if (!conflicts.isEmpty() && !decide(conflicts, explanation, tr("&Save")))
        return false;
    adopt(newer, conflicts);
    return true;
}

bool RecordEditor::decide(QList<FieldConflict> &conflicts, const QString &explanation,
                          const QString &confirm)
{
    RecordConflictDialog dialog(conflicts, explanation, confirm, this);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    conflicts = dialog.conflicts();
    return true;
}

void RecordEditor::adopt(const QXSC::DataRecordPtr &newer, const QList<FieldConflict> &choices)
{
    for (const QString &label : std::as_const(m_marked))
        m_form->setFieldMark(label, false);
    m_marked.clear();
    m_loaded = draftEntries(*newer);
    record()->version = newer->version;
    record()->entries = newer->entries;
    rebuild(); // what the fields hold now is what counts as loaded
    applyChoices(choices, *record());
    rebuild();
    showChanges();
    keepDraft();
}

void RecordEditor::accepted(qint64 version)
{
    record()->version = version;
    m_form->acceptChanges();
    m_loaded = draftEntries(*record());
    dropDraft();
    showChanges();
    showStatus(
        tr("Saved at %1").arg(QLocale().toString(QTime::currentTime(), QLocale::ShortFormat)));
}

void RecordEditor::askToRevert()
{
    QMessageBox box(QMessageBox::Question, tr("Revert"),
                    tr("Bring back the values that were loaded?"),
                    QMessageBox::Discard | QMessageBox::Cancel, this);
    box.setObjectName(QStringLiteral("confirmRevert"));
    box.setInformativeText(tr("What you have changed since then is lost."));
    box.button(QMessageBox::Discard)->setText(tr("&Revert"));
    box.button(QMessageBox::Cancel)->setText(tr("&Keep Editing"));
    box.setDefaultButton(QMessageBox::Cancel);
    if (box.exec() == QMessageBox::Discard)
        m_errors.attempt([this] { revert(); });
}

void RecordEditor::revert()
{
    for (qsizetype i = 0; i < m_loaded.size(); ++i)
        record()->entries->item(i + 1)->value = m_loaded.at(i).loaded;
    rebuild();
    dropDraft();
    showChanges();
}

bool RecordEditor::maySetAside()
{
    if (!hasChanges())
        return true;
    QMessageBox box(QMessageBox::Question, tr("Record"),
                    tr("The record of \"%1\" has changes that are not saved.")
                        .arg(shortened(m_themeName.simplified(), LongestName)),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
    box.setObjectName(QStringLiteral("leaveRecord"));
    box.setTextFormat(Qt::PlainText);
    box.button(QMessageBox::Cancel)->setText(tr("&Keep Editing"));
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
    case QMessageBox::Save:
        return m_errors.attempt([this] { save(); }) && !hasChanges();
    case QMessageBox::Discard:
        return m_errors.attempt([this] { revert(); });
    default:
        return false;
    }
}

void RecordEditor::fieldEdited()
{
    if (!m_isWhole)
        return;
    m_marking.start(0);
    if (!m_drafting.isActive()) // also of one who never pauses
        m_drafting.start();
}

void RecordEditor::showChanges()
{
    m_marking.stop();
    QStringList changed;
    try {
        if (m_isWhole)
            changed = m_form->changedLabels();
    } catch (const Zel::RuntimeError &error) {
        m_errors.report(error);
        return;
    }
    for (const QString &label : std::as_const(m_marked)) {
        if (!changed.contains(label))
            m_form->setFieldMark(label, false);
    }
    for (const QString &label : std::as_const(changed)) {
        if (!m_marked.contains(label))
            m_form->setFieldMark(label, true);
    }
    m_marked = changed;
    m_save->setEnabled(!changed.isEmpty());
    m_revert->setEnabled(!changed.isEmpty());
    if (changed.isEmpty())
        showStatus(hasFields() ? tr("No changes") : QString());
    else if (changed.size() == 1)
        showStatus(tr("1 field changed"));
    else
        showStatus(tr("%1 fields changed").arg(QLocale().toString(changed.size())));
    emit this->changed();
}

bool RecordEditor::keepDraft()
{
    m_drafting.stop();
    if (!m_isWhole || !record())
        return false;
    try {
        if (!hasChanges()) {
            dropDraft();
            return false;
        }
        RecordDraft draft;
        draft.themeGuid = m_themeGuid;
        draft.themeName = m_themeName;
        draft.kept = QDateTime::currentDateTimeUtc();
        draft.entries = edited();
        if (!m_draft)
            m_draft = m_drafts.begin();
        const QString problem = m_draft->keep(draft);
        if (problem.isEmpty())
            return true;
        showStatus(tr("Save soon: no draft can be kept. %1").arg(problem), true);
    } catch (const Zel::RuntimeError &error) {
        m_errors.report(error);
    }
    return false;
}

void RecordEditor::dropDraft()
{
    m_drafting.stop();
    if (m_draft)
        m_draft->remove();
    m_draft.reset();
}

void RecordEditor::fitSize()
{
    if (!m_isWhole || !record() || m_form->size() == m_builtSize)
        return;
    // A field that has a dialog open must not go under it.
    if (QApplication::activeModalWidget() || QApplication::activePopupWidget()) {
        m_resting.start();
        return;
    }
    try {
        m_form->UpdateDataRecord();
        rebuild();
    } catch (const Zel::RuntimeError &error) {
        m_errors.report(error);
    }
}

void RecordEditor::rebuild()
{
    m_builtSize = m_form->size();
    try {
        m_form->rebuild();
    } catch (...) {
        // A form that lacks fields must not be saved, and its draft stays as it was kept.
        m_isWhole = false;
        m_form->setEnabled(false);
        m_draft.reset();
        throw;
    }
}

void RecordEditor::takeFocus()
{
    for (QWidget *next = m_form->nextInFocusChain(); next && m_form->isAncestorOf(next);
         next = next->nextInFocusChain()) {
        if ((next->focusPolicy() & Qt::TabFocus) && next->isVisible() && next->isEnabled()) {
            next->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
    m_save->setFocus(Qt::OtherFocusReason);
}

void RecordEditor::showStatus(const QString &text, bool isAlarm)
{
    m_status->setText(text);
    m_status->setToolTip(isAlarm ? text : QString());
    m_isAlarm = isAlarm;
    applyColors();
}

void RecordEditor::applyColors()
{
    const QPalette palette = QApplication::palette();
    setOwnColor(m_status, QPalette::WindowText,
                m_isAlarm ? alarmText(palette) : mutedText(palette));
    setOwnColor(m_message, QPalette::WindowText, mutedText(palette));
}

void RecordEditor::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

bool RecordEditor::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_form && event->type() == QEvent::Resize && m_isWhole)
        m_resting.start();
    return QWidget::eventFilter(watched, event);
}

} // namespace Studio
