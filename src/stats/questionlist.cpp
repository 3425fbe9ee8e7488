// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/questionlist.h"

#include "common/common.h"
#include "platform/widgets/form.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/messageboxes.h"
#include "platform/widgets/yielding.h"
#include "stats/qadialog.h"
#include "stats/questionrows.h"
#include "stats/statscontrol.h"
#include "stats/statssource.h"

#include <QBoxLayout>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>

namespace ZelWebServiceControls {

namespace {

/// Whom the editor names as the sender.
QString senderOf(const QXSC::QuestionRecord &question)
{
    const QString email = userText(question.User, UserText::Email);
    return email.isEmpty() ? userText(question.User, UserText::UserID) : email;
}

} // namespace

QuestionList::QuestionList(QFrame *frame, const StatsSource &source)
    : StatsPage(frame, source)
{
    makeList();
    m_reply =
        makeButton("replyCmd", StatsControl::tr("Answer"),
                   StatsControl::tr("Answer or reword the selected question (Alt+A)"), Qt::Key_A);
    m_retract = makeButton("retractCmd", StatsControl::tr("Retract"),
                           StatsControl::tr("Take the selected question back (Alt+T)"), Qt::Key_T);
    m_delete = makeButton("deleteCmd", StatsControl::tr("Delete"),
                          StatsControl::tr("Delete the selected question (Alt+D)"), Qt::Key_D);
    m_refresh = makeButton("refreshCmd", StatsControl::tr("Refresh"),
                           StatsControl::tr("Fetch the questions up to now (Alt+R)"), Qt::Key_R);
    arrange();
    onUser(m_reply, &QPushButton::clicked, &QuestionList::answerSelected);
    onUser(m_retract, &QPushButton::clicked, &QuestionList::retractSelected);
    onUser(m_delete, &QPushButton::clicked, &QuestionList::deleteSelected);
    onUser(m_refresh, &QPushButton::clicked, &QuestionList::refresh);
}

void QuestionList::makeList()
{
    m_list = new Zel::ListView(frame());
    m_list->setObjectName(QStringLiteral("qaListView"));
    m_list->setAccessibleName(StatsControl::tr("Questions"));
    m_list->addColumn(StatsControl::tr("Status"), 1300);
    m_list->addColumn(StatsControl::tr("User ID"), 1300);
    m_list->addColumn(StatsControl::tr("First Name"), 1300);
    m_list->addColumn(StatsControl::tr("Last Name"), 1300);
    m_list->addColumn(StatsControl::tr("Email"), 2300);
    m_list->addColumn(StatsControl::tr("Question"), 4000);
    m_list->addColumn(StatsControl::tr("Answer"), 4000);
    m_list->addColumn(StatsControl::tr("Submitted"), 2250);
    m_list->addColumn(StatsControl::tr("Answered"), 2250);
}

QPushButton *QuestionList::makeButton(const char *name, const QString &caption,
                                      const QString &toolTip, Qt::Key mnemonic)
{
    auto *button = new QPushButton(caption, frame());
    button->setObjectName(QLatin1String(name));
    button->setToolTip(toolTip);
    // In a dialog around the control the Enter key is not for its buttons.
    button->setAutoDefault(false);
    // The caption is what hosts know and stays without a mark; the key works in this tab alone.
    auto *shortcut = new QShortcut(QKeySequence(Qt::ALT | mnemonic), frame());
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    shortcut->setAutoRepeat(false);
    connect(shortcut, &QShortcut::activated, button, [button] { button->click(); });
    return button;
}

void QuestionList::arrange()
{
    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : {m_reply, m_retract, m_delete})
        buttons->addWidget(button);
    buttons->addStretch();
    buttons->addWidget(m_refresh);
    auto *column = new QVBoxLayout(frame());
    column->setContentsMargins({});
    column->addWidget(m_list);
    column->addLayout(buttons);
}

void QuestionList::load()
{
    loadQuestions(source().end());
}

void QuestionList::refresh()
{
    loadQuestions();
}

void QuestionList::loadQuestions(const QDateTime &end)
{
    const QPointer<QuestionList> self(this);
    m_list->clear();
    // Until the service has answered nobody knows that there are none.
    m_list->setEmptyText(QString());
    const QXSC::QuestionCollectionPtr questions =
        source().client().GetQuestions(source().deploymentGuid(), source().start(), end);
    if (!self)
        return;
    m_list->setEmptyText(StatsControl::tr("No questions"));
    if (questions)
        m_list->setRows(std::make_shared<QuestionRows>(questions));
}

QXSC::QuestionRecordPtr QuestionList::selectedQuestion() const
{
    const qsizetype row = m_list->selectedRow();
    return row < 0 ? nullptr : m_list->tag(row).value<QXSC::QuestionRecordPtr>();
}

void QuestionList::answerSelected()
{
    const QXSC::QuestionRecordPtr question = selectedQuestion();
    if (!question || edit(*question))
        refresh();
}

bool QuestionList::edit(const QXSC::QuestionRecord &question)
{
    const QPointer<QuestionList> self(this);
    const QPointer<QADialog> dialog(&Zel::sharedForm<QADialog>());
    dialog->Init(Common::XmlUnescape(question.QuestionText),
                 Common::XmlUnescape(question.AnswerText), senderOf(question));
    dialog->showModal(frame());
    if (!self || !dialog)
        return false;
    // The one dialog may be used again while messages are handled.
    const bool confirmed = dialog->result() == QADialog::Confirmed;
    const QString editedAnswer = dialog->answer();
    const QString editedQuestion = dialog->question();
    if (!Zel::yieldOnce(this))
        return false;
    if (!confirmed)
        return true;
    source().client().UpdateQuestion(question.QuestionGuid, editedAnswer, editedQuestion, QString(),
                                     QString());
    if (!self)
        return false;
    source().client().SetQuestionStatus(question.QuestionGuid, QStringLiteral("STAGED"));
    return self;
}

void QuestionList::retractSelected()
{
    const QPointer<QuestionList> self(this);
    if (const QXSC::QuestionRecordPtr question = selectedQuestion())
        source().client().SetQuestionStatus(question->QuestionGuid, QStringLiteral("RETRACT"));
    if (self)
        refresh();
}

void QuestionList::deleteSelected()
{
    const QPointer<QuestionList> self(this);
    const bool confirmed = Zel::askUser(
        frame(),
        StatsControl::tr("Are you sure you want to delete this question from the list? This action "
                         "cannot be reversed."),
        StatsControl::tr("Confirm Deletion"));
    if (!confirmed || !self)
        return;
    if (const QXSC::QuestionRecordPtr question = selectedQuestion())
        source().client().SetQuestionStatus(question->QuestionGuid, QStringLiteral("DELETE"));
    if (self)
        refresh();
}

} // namespace ZelWebServiceControls
