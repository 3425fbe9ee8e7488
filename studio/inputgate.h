// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>

#include <functional>

class QWidget;

namespace Studio {

/// While it lives, mouse and keys reach a few widgets only; everything goes on being painted, moved
/// and closed. For work that lets events be handled between its steps and must not be disturbed.
/// Esc, wherever the keyboard is, gives the work up.
class InputGate : public QObject
{
    Q_OBJECT

public:
    InputGate(const QList<QWidget *> &allowed, const std::function<void()> &giveUp);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isAllowed(const QObject *object) const;

    QList<QWidget *> m_allowed;
    std::function<void()> m_giveUp;
};

} // namespace Studio
