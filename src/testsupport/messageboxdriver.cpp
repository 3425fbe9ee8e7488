// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport/messageboxdriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPushButton>
#include <QTest>

namespace ZelTest {

namespace {

QMessageBox::StandardButton defaultButtonOf(const QMessageBox &box)
{
    return box.standardButton(box.defaultButton());
}

} // namespace

MessageBoxDriver::MessageBoxDriver(QObject *parent)
    : QObject(parent)
{
    m_timer.setInterval(5);
    connect(&m_timer, &QTimer::timeout, this, &MessageBoxDriver::look);
    m_timer.start();
}

MessageBoxDriver::~MessageBoxDriver() = default;

void MessageBoxDriver::click(QMessageBox::StandardButton button)
{
    m_answers << Answer{button, Qt::Key_unknown};
}

void MessageBoxDriver::press(Qt::Key key)
{
    m_answers << Answer{QMessageBox::NoButton, key};
}

void MessageBoxDriver::look()
{
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!box || !box->isVisible())
        return;
    if (box != m_latest) {
        m_latest = box;
        m_shown << Shown{box->windowTitle(), box->text(), box->standardButtons(),
                         defaultButtonOf(*box)};
    }
    // A key that does not close the box leaves it to the next answer.
    const Answer answer = m_answers.isEmpty() ? Answer() : m_answers.takeFirst();
    if (QAbstractButton *button = box->button(answer.button)) {
        QTest::mouseClick(button, Qt::LeftButton);
    } else if (answer.key != Qt::Key_unknown) {
        QTest::keyClick(box->focusWidget() ? box->focusWidget() : box, answer.key);
    } else {
        ++m_unexpected;
        QTest::keyClick(box, Qt::Key_Escape);
    }
}

} // namespace ZelTest
