// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/form.h"
#include "platform/widgets/kepttext.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace ZelWebServiceControls {

/// Edits a question of the audience and its answer.
///
///     auto &form = Zel::sharedForm<QADialog>();
///     form.Init(question, answer, "mira@example.org");
///     form.showModal(this);
///     if (form.result() == QADialog::Confirmed)
///         send(form.question(), form.answer());
///
/// Texts that a person does not touch come back code unit for code unit, whatever their line breaks
/// are. The Tab key goes to the next box.
class ZEL_EXPORT QADialog : public Zel::Form
{
    Q_OBJECT
    /// The texts as edited and confirmed with OK, else as they were given.
    Q_PROPERTY(QString question READ question)
    Q_PROPERTY(QString answer READ answer)
    /// 1 when confirmed with OK, 2 when closed in any other way.
    Q_PROPERTY(qint16 result READ result)

public:
    static constexpr qint16 Confirmed = 1;
    static constexpr qint16 Cancelled = 2;

    explicit QADialog(QWidget *parent = nullptr);
    ~QADialog() override;

    /// Keeps the texts for the next use. `user` is named as the sender of the question.
    Q_INVOKABLE void Init(const QString &question, const QString &answer, const QString &user);

    QString question() const { return m_question; }

    QString answer() const { return m_answer; }

    qint16 result() const { return m_result; }

protected:
    void load() override;

private:
    /// A box and its text as it came.
    struct Editor
    {
        QPlainTextEdit *box = nullptr;
        Zel::KeptText text;
    };

    void build();
    void makeEditor(Editor &editor, const char *name, QLabel *label);
    static void show(Editor &editor, const QString &text);
    void confirm();

    qint16 m_result = Cancelled;
    QString m_user;
    QString m_question;
    QString m_answer;
    Editor m_questionEditor;
    Editor m_answerEditor;
    QLabel *m_userName;
    QPushButton *m_ok;
    QPushButton *m_cancel;
};

} // namespace ZelWebServiceControls
