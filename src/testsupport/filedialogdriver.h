// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

namespace ZelTest {

/// Answers the file dialogs that come up while it lives: types names and presses Enter, or cancels
/// with Esc. A dialog that comes up without an answer prepared, or that does not take its answer,
/// is cancelled.
class ZEL_EXPORT FileDialogDriver : public QObject
{
    Q_OBJECT

public:
    struct Shown
    {
        QString title;
        QStringList nameFilters;
        QString folder;
        bool multiple;
    };

    explicit FileDialogDriver(QObject *parent = nullptr);
    ~FileDialogDriver() override;

    /// Prepares choosing these files, which exist in one folder, for the next dialog.
    void choose(const QStringList &paths);
    void cancel();

    QList<Shown> shown() const { return m_shown; }

private:
    void look();

    QTimer m_timer;
    QList<QStringList> m_answers;
    QList<Shown> m_shown;
    QPointer<QObject> m_answered;
};

} // namespace ZelTest
