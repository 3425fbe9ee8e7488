// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/errorreport.h"

#include <QFrame>
#include <QObject>

namespace ZelWebServiceControls {

class StatsSource;

/// One tab of a statistics control: what is in its frame, and how its report is fetched.
///
/// A page belongs to its frame and goes with it.
class StatsPage : public QObject
{
public:
    /// `source` outlives every call of the page.
    StatsPage(QFrame *frame, const StatsSource &source)
        : QObject(frame)
        , m_frame(frame)
        , m_source(source)
    {
    }

    /// Fetches the report for the range the pickers have now and shows it. Errors of the service
    /// propagate; what is shown then is up to the page. It may be destroyed meanwhile.
    virtual void load() = 0;

protected:
    QFrame *frame() const { return m_frame; }

    const StatsSource &source() const { return m_source; }

    /// Connects something a person does in the frame to a member function; its errors reach the
    /// host of the control.
    template <typename Sender, typename Signal, typename Page, typename... Arguments>
    void onUser(Sender *sender, Signal signal, void (Page::*action)(Arguments...))
    {
        connect(sender, signal, this, [this, action](Arguments... arguments) {
            Zel::guardUserAction(m_frame,
                                 [&] { (static_cast<Page *>(this)->*action)(arguments...); });
        });
    }

private:
    QFrame *m_frame;
    const StatsSource &m_source;
};

} // namespace ZelWebServiceControls
