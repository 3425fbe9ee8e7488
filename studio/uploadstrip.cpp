// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/uploadstrip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>

namespace Studio {

namespace {

constexpr int BarWidth = 220;

QString shown(int number)
{
    return QLocale().toString(number);
}

} // namespace

UploadStrip::UploadStrip(QWidget *parent)
    : QFrame(parent)
    , m_text(new QLabel(this))
    , m_bar(new QProgressBar(this))
    , m_end(new QPushButton(this))
    , m_rest(new QPushButton(tr("&Upload the Rest"), this))
{
    setObjectName(QStringLiteral("uploadStrip"));
    m_text->setObjectName(QStringLiteral("uploadText"));
    m_bar->setObjectName(QStringLiteral("uploadBar"));
    m_bar->setAccessibleName(tr("All files"));
    m_bar->setTextVisible(false);
    m_bar->setFixedWidth(BarWidth);
    m_end->setObjectName(QStringLiteral("uploadEnd"));
    m_rest->setObjectName(QStringLiteral("uploadRest"));
    m_rest->setToolTip(tr("Upload the files that have not gone up yet"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(12);
    row->addWidget(m_text);
    row->addWidget(m_bar);
    row->addStretch(1);
    row->addWidget(m_rest);
    row->addWidget(m_end);
    hide();
    connect(m_end, &QPushButton::clicked, this, &UploadStrip::endAsked);
    connect(m_rest, &QPushButton::clicked, this, &UploadStrip::restAsked);
}

void UploadStrip::showBusy(const QString &text, int done, int count, bool withBar)
{
    m_text->setText(text);
    m_bar->setRange(0, count);
    m_bar->setValue(done);
    m_bar->setVisible(withBar);
    m_rest->hide();
    m_end->show();
    show();
}

void UploadStrip::showReading(int done, int count)
{
    m_end->setText(tr("&Cancel"));
    m_end->setToolTip(tr("Take none of the dropped files"));
    showBusy(count == 0 ? tr("Looking for files…")
                        : tr("Reading the dropped files: %1 of %2").arg(shown(done), shown(count)),
             done, count, true);
}

void UploadStrip::showUploading(int number, int count, bool withBar)
{
    m_end->setText(tr("&Stop"));
    m_end->setToolTip(tr("Stop after the file that is being uploaded (Esc)"));
    showBusy(tr("Uploading file %1 of %2").arg(shown(number), shown(count)), number - 1, count,
             withBar);
}

void UploadStrip::showRest(int uploaded, int rest)
{
    const QString left =
        rest == 1 ? tr("1 file is left.") : tr("%1 files are left.").arg(shown(rest));
    m_text->setText(
        tr("%1 of %2 files are uploaded, %3").arg(shown(uploaded), shown(uploaded + rest), left));
    m_bar->hide();
    m_end->hide();
    m_rest->show();
    show();
}

} // namespace Studio
