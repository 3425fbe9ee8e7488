// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/messageboxes.h"

#include <QGuiApplication>
#include <QMessageBox>

namespace Zel {

namespace {

QMessageBox::StandardButton show(QWidget *owner, QMessageBox::Icon icon, const QString &text,
                                 const QString &title, QMessageBox::StandardButtons buttons,
                                 QMessageBox::StandardButton defaultButton)
{
    QMessageBox box(owner ? owner->window() : nullptr);
    box.setObjectName(QStringLiteral("messageBox"));
    box.setIcon(icon);
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    box.setWindowTitle(title.isEmpty() ? QGuiApplication::applicationDisplayName() : title);
    box.setStandardButtons(buttons);
    box.setDefaultButton(defaultButton);
    box.setEscapeButton(defaultButton);
    return static_cast<QMessageBox::StandardButton>(box.exec());
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
