// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/piecesource.h"
#include "service/client/uploadfile.h"

#include <memory>
#include <thread>

namespace QXSC {

/// Reads a file, and makes its checksum, in a thread of its own while what was read before is sent:
/// a few mebibytes ahead and no more. Goes before the file does; nobody else reads it meanwhile.
class ReadAhead
{
public:
    explicit ReadAhead(UploadFile &file);
    ~ReadAhead();

    /// The piece from `offset` on. The ones given out before have no more bytes to give: who was
    /// not told in time that it is given up sends nothing wrong.
    std::shared_ptr<PieceSource> piece(qint64 offset, qint64 size);
    /// Throws what reading has thrown.
    void check() const;

private:
    Q_DISABLE_COPY_MOVE(ReadAhead)

    class Stream;
    class Piece;

    const std::shared_ptr<Stream> m_stream; ///< also of pieces that outlive this
    std::thread m_thread;
};

} // namespace QXSC
