// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/draftnotice.h"

#include "studio/appearance.h"
#include "studio/pageheader.h"
#include "studio/textlabel.h"
#include "studio/tintedicon.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QToolButton>

namespace Studio {

namespace {

constexpr qsizetype LongestName = 80;

} // namespace

DraftNotice::DraftNotice(QWidget *parent)
    : QFrame(parent)
{
    setObjectName(QStringLiteral("draftNotice"));
    build();
    applyColors();
    hide();
    connect(m_goOn, &QPushButton::clicked, this, [this] {
        const RecordDraft draft = m_drafts.constFirst();
        offer({});
        emit goOn(draft);
    });
    connect(m_discard, &QPushButton::clicked, this, &DraftNotice::discard);
    connect(m_later, &QToolButton::clicked, this, [this] { offer({}); });
}

void DraftNotice::build()
{
    setAutoFillBackground(true);
    auto *icon = new QLabel(this);
    icon->setPixmap(tintedIcon(QStringLiteral("information")).pixmap(24, 24));
    m_text = new TextLabel("draftText", LongestName * 4, this);
    m_goOn = makeButton(this, "goOnWithDraft", tr("&Go On"));
    m_goOn->setToolTip(tr("Open the record with what was typed"));
    m_discard = makeButton(this, "discardDraft", tr("&Discard…"));
    m_discard->setToolTip(tr("Delete the draft"));
    m_later = new QToolButton(this);
    m_later->setObjectName(QStringLiteral("draftLater"));
    m_later->setIcon(tintedIcon(QStringLiteral("close")));
    m_later->setAutoRaise(true);
    m_later->setFocusPolicy(Qt::StrongFocus);
    m_later->setToolTip(tr("Not now: it is offered again at the next start"));
    m_later->setAccessibleName(tr("Not now"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(16, 8, 12, 8);
    row->setSpacing(8);
    row->addWidget(icon);
    row->addWidget(m_text, 1);
    row->addWidget(m_goOn);
    row->addWidget(m_discard);
    row->addWidget(m_later);
}

void DraftNotice::offer(const QList<RecordDraft> &drafts)
{
    m_drafts = drafts;
    showNext();
}

void DraftNotice::showNext()
{
    setVisible(!m_drafts.isEmpty());
    if (m_drafts.isEmpty())
        return;
    const RecordDraft &draft = m_drafts.constFirst();
    m_text->showText(tr("Changes to the record of \"%1\" were not saved when Studio ended. They "
                        "are kept as they "
                        "were on %2.")
                         .arg(shortened(draft.themeName.simplified(), LongestName),
                              QLocale().toString(draft.kept.toLocalTime(), QLocale::ShortFormat)));
    setAccessibleName(m_text->text());
}

void DraftNotice::discard()
{
    QMessageBox box(QMessageBox::Question, tr("Discard Draft"),
                    tr("Delete what was typed into this record?"),
                    QMessageBox::Discard | QMessageBox::Cancel, this);
    box.setObjectName(QStringLiteral("confirmDiscardDraft"));
    box.setInformativeText(tr("It cannot be brought back."));
    box.setDefaultButton(QMessageBox::Cancel);
    if (box.exec() != QMessageBox::Discard)
        return;
    RecordDrafts::discard(m_drafts.takeFirst());
    showNext();
}

void DraftNotice::applyColors()
{
    const QPalette base = QApplication::palette();
    setOwnColor(this, QPalette::Window,
                mixed(base.color(QPalette::Window), base.color(QPalette::Highlight),
                      isDark(base) ? 0.28 : 0.12));
}

void DraftNotice::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

} // namespace Studio
