// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/waitobserver.h"

#include <QPointer>
#include <QWidget>

class QLabel;

namespace Studio {

/// Tells over a window that the service takes its time. It is painted at once, without an event
/// loop: during a service call none runs.
class WaitNotice : public QXSC::WaitObserver
{
public:
    /// @param window the window to cover; must outlive the calls
    explicit WaitNotice(QWidget *window);
    ~WaitNotice() override;

    void waiting(std::chrono::milliseconds waited) noexcept override;
    void finished() noexcept override;

    bool isShown() const;

private:
    QLabel *label();

    QPointer<QWidget> m_window;
    QPointer<QLabel> m_label;
};

} // namespace Studio
