// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/errorbar.h"

#include "studio/appearance.h"
#include "studio/errorcenter.h"
#include "studio/textlabel.h"
#include "studio/tintedicon.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextDocument>
#include <QToolButton>
#include <QVBoxLayout>

namespace Studio {

namespace {

constexpr int DetailLines = 6;
/// The strip is for reading at a glance; Copy has the whole texts.
constexpr qsizetype LongestSentence = 400;

/// Assistive technology speaks an alert when it comes up.
QAccessibleInterface *makeAlert(const QString &, QObject *object)
{
    auto *bar = qobject_cast<ErrorBar *>(object);
    return bar ? new QAccessibleWidget(bar, QAccessible::AlertMessage) : nullptr;
}

QToolButton *makeTool(QWidget *parent, const char *name, const QString &text)
{
    auto *button = new QToolButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setText(text);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

} // namespace

ErrorBar::ErrorBar(ErrorCenter &errors, QWidget *parent)
    : QFrame(parent)
    , m_errors(errors)
{
    setObjectName(QStringLiteral("errorBar"));
    QAccessible::installFactory(makeAlert); // does nothing a second time
    build();
    applyColors();
    hide();
    connect(&m_errors, &ErrorCenter::raised, this, &ErrorBar::showProblem);
    connect(&m_errors, &ErrorCenter::cleared, this, &ErrorBar::leave);
    connect(m_retry, &QPushButton::clicked, &m_errors, &ErrorCenter::retry);
    connect(m_close, &QToolButton::clicked, &m_errors, &ErrorCenter::clear);
    connect(m_signIn, &QPushButton::clicked, this, [this] {
        m_errors.clear();
        emit signInRequested();
    });
    connect(m_detailsButton, &QToolButton::toggled, m_details, &QWidget::setVisible);
    connect(m_copy, &QToolButton::clicked, this, &ErrorBar::copyDetails);
}

void ErrorBar::build()
{
    setAutoFillBackground(true);
    auto *icon = new QLabel(this);
    icon->setPixmap(QIcon(QStringLiteral(":/studio/icons/alarm.svg")).pixmap(24, 24));
    icon->setAccessibleName(tr("Problem"));
    m_what = new TextLabel("errorWhat", LongestSentence, this);
    QFont bold = m_what->font();
    bold.setWeight(QFont::DemiBold);
    m_what->setFont(bold);
    m_advice = new TextLabel("errorAdvice", LongestSentence, this);
    m_retry = new QPushButton(tr("&Retry"), this);
    m_retry->setObjectName(QStringLiteral("errorRetry"));
    m_signIn = new QPushButton(tr("Sign In &Again"), this);
    m_signIn->setObjectName(QStringLiteral("errorSignIn"));
    m_detailsButton = makeTool(this, "errorDetailsButton", tr("&Details"));
    m_detailsButton->setCheckable(true);
    m_copy = makeTool(this, "errorCopy", tr("C&opy"));
    m_copy->setToolTip(tr("Copy what happened and the details"));
    m_close = makeTool(this, "errorClose", QString());
    m_close->setIcon(tintedIcon(QStringLiteral("close")));
    m_close->setToolTip(tr("Close (Esc)"));
    m_close->setAccessibleName(tr("Close"));
    m_details = new QPlainTextEdit(this);
    m_details->setObjectName(QStringLiteral("errorDetails"));
    m_details->setAccessibleName(tr("Details"));
    m_details->setReadOnly(true);
    const int around =
        2 * (m_details->frameWidth() + qRound(m_details->document()->documentMargin()));
    m_details->setFixedHeight(DetailLines * m_details->fontMetrics().lineSpacing() + around);
    m_details->hide();

    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(m_what);
    texts->addWidget(m_advice);
    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addLayout(texts, 1);
    for (QWidget *button : {static_cast<QWidget *>(m_retry), static_cast<QWidget *>(m_signIn),
                            static_cast<QWidget *>(m_detailsButton), static_cast<QWidget *>(m_copy),
                            static_cast<QWidget *>(m_close)})
        row->addWidget(button, 0, Qt::AlignVCenter);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(16, 10, 12, 10);
    column->addLayout(row);
    column->addWidget(m_details);
}

void ErrorBar::showProblem()
{
    const Problem &problem = m_errors.problem();
    if (isHidden())
        m_formerFocus = QApplication::focusWidget();
    m_what->showText(problem.what);
    m_advice->showText(problem.advice);
    m_advice->setVisible(!problem.advice.isEmpty());
    m_details->setPlainText(problem.details);
    m_detailsButton->setVisible(!problem.details.isEmpty());
    m_detailsButton->setChecked(false);
    m_retry->setVisible(m_errors.canRetry());
    m_signIn->setVisible(problem.needsSignIn);
    setAccessibleName(problem.what);
    setAccessibleDescription(problem.advice);
    show();
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void ErrorBar::leave()
{
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    hide();
    if (hadFocus && m_formerFocus && m_formerFocus->isVisible())
        m_formerFocus->setFocus(Qt::OtherFocusReason);
}

void ErrorBar::copyDetails()
{
    const Problem &problem = m_errors.problem();
    QStringList parts{problem.what, problem.advice, problem.details};
    parts.removeAll(QString());
    QApplication::clipboard()->setText(parts.join(QLatin1Char('\n')));
}

void ErrorBar::applyColors()
{
    const QPalette base = QApplication::palette();
    setOwnColor(this, QPalette::Window,
                mixed(base.color(QPalette::Window), alarmColor(), isDark(base) ? 0.28 : 0.12));
}

void ErrorBar::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

void ErrorBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        m_errors.clear();
    else
        QFrame::keyPressEvent(event);
}

} // namespace Studio
