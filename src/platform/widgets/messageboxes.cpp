// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/messageboxes.h"

#include <QGuiApplication>
#include <QMessageBox>
#include <QPointer>

namespace Zel {

namespace {

QMessageBox::StandardButton show(QWidget *owner, QMessageBox::Icon icon, const QString &text,
                                 const QString &title, QMessageBox::StandardButtons buttons,
                                 QMessageBox::StandardButton defaultButton)
{
    // Not on the stack: the box is deleted with the owner's window, also while it is open.
    const QPointer<QMessageBox> box(new QMessageBox(owner ? owner->window() : nullptr));
    box->setObjectName(QStringLiteral("messageBox"));
    box->setIcon(icon);
    box->setTextFormat(Qt::PlainText);
    box->setText(text);
    box->setWindowTitle(title.isEmpty() ? QGuiApplication::applicationDisplayName() : title);
    box->setStandardButtons(buttons);
    box->setDefaultButton(defaultButton);
    box->setEscapeButton(defaultButton);
    const int answer = box->exec();
    if (!box)
        return defaultButton;
    delete box;
    return static_cast<QMessageBox::StandardButton>(answer);
}

} // namespace

void informUser(QWidget *owner, const QString &text, const QString &title)
{
    show(owner, QMessageBox::Information, text, title, QMessageBox::Ok, QMessageBox::Ok);
}

bool askUser(QWidget *owner, const QString &text, const QString &title)
{
    return show(owner, QMessageBox::Question, text, title, QMessageBox::Yes | QMessageBox::No,
                QMessageBox::No) == QMessageBox::Yes;
}

} // namespace Zel
