// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>
#include <QPointer>

class QPlainTextEdit;
class QPushButton;
class QToolButton;

namespace Studio {

class ErrorCenter;
class TextLabel;

/// The strip at the top of the window that tells what went wrong: what happened, what to do,
/// details to copy, Retry or Sign In Again where that helps. One strip for every problem: the
/// newest replaces the one before, nothing stacks and nothing blocks the window. When it goes, the
/// keyboard is back where it was.
class ErrorBar : public QFrame
{
    Q_OBJECT

public:
    explicit ErrorBar(ErrorCenter &errors, QWidget *parent = nullptr);

signals:
    void signInRequested();

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void build();
    void showProblem();
    void leave();
    void copyDetails();
    void applyColors();

    ErrorCenter &m_errors;
    TextLabel *m_what;
    TextLabel *m_advice;
    QPushButton *m_retry;
    QPushButton *m_signIn;
    QToolButton *m_detailsButton;
    QToolButton *m_copy;
    QToolButton *m_close;
    QPlainTextEdit *m_details;
    QPointer<QWidget> m_formerFocus;
};

} // namespace Studio
