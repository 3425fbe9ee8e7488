// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace QXSC {

/// Where the bytes of one piece of a file come from while it is sent, in the thread that sends.
class PieceSource
{
public:
    virtual ~PieceSource() = default;

    virtual qint64 size() const = 0;
    /// The next bytes, at most `most` and at least one; waits for them. Less than one when there
    /// are none to be had, so that the piece cannot be sent to its end.
    virtual qint64 read(char *to, qint64 most) = 0;
    /// Goes back to the beginning: the piece is sent once more.
    virtual void rewind() = 0;
};

} // namespace QXSC
