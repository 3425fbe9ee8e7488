// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QTimer>

namespace ZelTest {

/// Answers the message boxes that come up while it lives, as a person would: with a click or a key.
///
///     MessageBoxDriver boxes;
///     boxes.click(QMessageBox::Ok);
///     QTest::mouseClick(button, Qt::LeftButton); // opens the box and returns when it is closed
///     QCOMPARE(boxes.shown().size(), 1);
///
/// A box that comes up without an answer prepared, or without the button that the answer clicks, is
/// closed with Esc and counted in `unexpected()`.
class ZEL_EXPORT MessageBoxDriver : public QObject
{
    Q_OBJECT

public:
    struct Shown
    {
        QString title;
        QString text;
        QMessageBox::StandardButtons buttons;
        QMessageBox::StandardButton defaultButton;
    };

    explicit MessageBoxDriver(QObject *parent = nullptr);
    ~MessageBoxDriver() override;

    /// Prepares a click on a button. Answers are taken in the order of preparing them.
    void click(QMessageBox::StandardButton button);
    /// Prepares a key press; the next answer goes to the same box when the key does not close it.
    void press(Qt::Key key);

    /// Every box that came up, once.
    QList<Shown> shown() const { return m_shown; }

    int unexpected() const { return m_unexpected; }

private:
    void look();

    struct Answer
    {
        QMessageBox::StandardButton button = QMessageBox::NoButton;
        Qt::Key key = Qt::Key_unknown;
    };

    QTimer m_timer;
    QList<Answer> m_answers;
    QList<Shown> m_shown;
    QPointer<QMessageBox> m_latest;
    int m_unexpected = 0;
};

} // namespace ZelTest
