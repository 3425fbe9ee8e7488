// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// Writes results workbooks as the statistics control keeps them, or the same workbook as a program
/// that escapes its texts writes it.
class WorkbookText
{
public:
    struct Answer
    {
        QString text;
        bool isCorrect = false;
        qint64 count = 0;
    };

    struct Question
    {
        QString text;
        QList<Answer> answers;
    };

    enum class Kind
    {
        Survey,
        Poll
    };

    enum class Form
    {
        Kept,   ///< namespaces broken by line ends, texts as they are
        Escaped ///< well-formed
    };

    explicit WorkbookText(const QList<Question> &questions, Kind kind = Kind::Survey,
                          Form form = Form::Kept);

    /// An answer to each question: positions such as "2" or "1,3" of a survey, where an empty text
    /// is a skipped question and one with a comma came in several records; any text of a poll.
    void addRespondent(const QString &guid, const QStringList &answers);

    void reserve(qsizetype characters) { m_rows.reserve(characters); }

    QString text() const;

private:
    QString escaped(const QString &text) const;
    QString head() const;
    QString responses() const;
    QString totals() const;
    QString summary() const;
    QString headerRow() const;
    QStringList keys() const;
    qsizetype mostAnswers() const;

    QList<Question> m_questions;
    QStringList m_keys;
    Kind m_kind;
    Form m_form;
    QString m_rows;
    qint64 m_respondents = 0;
};
