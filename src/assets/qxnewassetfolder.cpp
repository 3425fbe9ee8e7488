// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assets/qxnewassetfolder.h"

#include "platform/widgets/messageboxes.h"

#include <QBoxLayout>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <limits>

namespace ZelWebServiceControls {

QXNewAssetFolder::QXNewAssetFolder(QWidget *parent)
    : Form(parent)
{
    setWindowTitle(tr("New Folder"));
    build();
    connect(m_name, &QLineEdit::textChanged, this,
            [this](const QString &text) { m_ok->setEnabled(!text.isEmpty()); });
    onUser(m_ok, &QPushButton::clicked, &QXNewAssetFolder::confirm);
    onUser(m_cancel, &QPushButton::clicked, &QXNewAssetFolder::cancel);
}

QXNewAssetFolder::~QXNewAssetFolder() = default;

void QXNewAssetFolder::build()
{
    auto *frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("Frame1"));
    auto *label = new QLabel(tr("Folder Name"), frame);
    m_name = new QLineEdit(frame);
    m_name->setObjectName(QStringLiteral("folderNameTxt"));
    m_name->setAccessibleName(label->text());
    m_name->setMaxLength(std::numeric_limits<int>::max());
    m_name->setMinimumWidth(m_name->fontMetrics().averageCharWidth() * 40);
    auto *fields = new QVBoxLayout(frame);
    fields->setContentsMargins({});
    fields->addWidget(label);
    fields->addWidget(m_name);

    m_ok = new QPushButton(tr("OK"), this);
    m_ok->setObjectName(QStringLiteral("okCmd"));
    m_ok->setDefault(true);
    m_ok->setEnabled(false);
    m_cancel = new QPushButton(tr("Cancel"), this);
    m_cancel->setObjectName(QStringLiteral("cancelCmd"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);

    auto *column = new QVBoxLayout(this);
    column->addWidget(frame);
    column->addStretch();
    column->addLayout(buttons);
}

void QXNewAssetFolder::load()
{
    m_dialogResult = 0;
    // Closing the window is no typing: nothing of the last use may be left then.
    m_folderName.clear();
    m_name->clear();
    m_ok->setEnabled(false);
    m_name->setFocus();
}

void QXNewAssetFolder::confirm()
{
    m_folderName = m_name->text();
    if (m_folderName.isEmpty()) {
        Zel::informUser(this, tr("Please supply a folder name"));
        return;
    }
    m_dialogResult = 1;
    accept();
}

void QXNewAssetFolder::cancel()
{
    m_folderName.clear();
    reject();
}

} // namespace ZelWebServiceControls
