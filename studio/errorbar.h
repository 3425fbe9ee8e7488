// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QToolButton;

namespace Studio {

class ErrorCenter;

/// The strip at the top of the window that tells what went wrong: what happened, what to do,
/// details to copy, Retry or Sign In Again where that helps. One strip for every problem: the
/// newest replaces the one before, nothing stacks and nothing blocks the window.
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
    void toggleDetails(bool shown);
    void copyDetails();
    void applyColors();

    ErrorCenter &m_errors;
    QLabel *m_what;
    QLabel *m_advice;
    QPushButton *m_retry;
    QPushButton *m_signIn;
    QToolButton *m_detailsButton;
    QToolButton *m_copy;
    QToolButton *m_close;
    QPlainTextEdit *m_details;
};

} // namespace Studio
