// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/qadialog.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTextDocument>

namespace ZelWebServiceControls {

namespace {

/// Of a box, in average characters and in lines.
constexpr int Columns = 76;
constexpr int Lines = 6;

QLabel *makeLabel(QWidget *parent, const char *name, const QString &caption = QString())
{
    auto *label = new QLabel(caption, parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    return label;
}

QPushButton *makeButton(QWidget *parent, const char *name, const QString &caption)
{
    auto *button = new QPushButton(caption, parent);
    button->setObjectName(QLatin1String(name));
    return button;
}

} // namespace

QADialog::QADialog(QWidget *parent)
    : Form(parent)
{
    setWindowTitle(tr("Question and Answer Editor"));
    build();
    onUser(m_ok, &QPushButton::clicked, &QADialog::confirm);
    onUser(m_cancel, &QPushButton::clicked, &QADialog::reject);
}

QADialog::~QADialog() = default;

void QADialog::build()
{
    m_userName = makeLabel(this, "userName");
    // A name of any length leaves the dialog its width.
    m_userName->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    auto *questionLabel = makeLabel(this, "Label1", tr("Question"));
    makeEditor(m_questionEditor, "questionTxt", questionLabel);
    auto *answerLabel = makeLabel(this, "Label2", tr("Answer"));
    makeEditor(m_answerEditor, "answerTxt", answerLabel);
    m_ok = makeButton(this, "OKButton", tr("OK"));
    m_ok->setDefault(true);
    m_cancel = makeButton(this, "CancelButton", tr("Cancel"));

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_userName);
    column->addWidget(questionLabel);
    column->addWidget(m_questionEditor.box, 1);
    column->addWidget(answerLabel);
    column->addWidget(m_answerEditor.box, 1);
    column->addLayout(buttons);
}

void QADialog::makeEditor(Editor &editor, const char *name, QLabel *label)
{
    auto *box = new QPlainTextEdit(this);
    box->setObjectName(QLatin1String(name));
    box->setAccessibleName(label->text());
    box->setTabChangesFocus(true);
    box->setMinimumSize(box->fontMetrics().averageCharWidth() * Columns,
                        box->fontMetrics().lineSpacing() * Lines);
    label->setBuddy(box);
    editor.box = box;
    connect(box, &QPlainTextEdit::textChanged, this,
            [&editor] { editor.text.edit(editor.box->document()->toRawText()); });
}

void QADialog::show(Editor &editor, const QString &text)
{
    const QSignalBlocker blocked(editor.box);
    editor.box->setPlainText(text);
    editor.text.set(text, editor.box->document()->toRawText());
}

void QADialog::Init(const QString &question, const QString &answer, const QString &user)
{
    m_question = question;
    m_answer = answer;
    m_user = user;
    m_result = Cancelled;
}

void QADialog::load()
{
    m_result = Cancelled;
    m_userName->setText(tr("from: ") + m_user);
    m_userName->setToolTip(m_user.toHtmlEscaped());
    show(m_questionEditor, m_question);
    show(m_answerEditor, m_answer);
    m_answerEditor.box->moveCursor(QTextCursor::End);
    m_answerEditor.box->setFocus();
}

void QADialog::confirm()
{
    m_result = Confirmed;
    m_answer = m_answerEditor.text.text();
    m_question = m_questionEditor.text.text();
    accept();
}

} // namespace ZelWebServiceControls
