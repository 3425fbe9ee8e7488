// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/gunzip.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace Zel {

namespace {

constexpr qint64 Step = 256 * 1024;

class Inflater
{
public:
    explicit Inflater(const QByteArray &packed)
    {
        m_stream.next_in =
            reinterpret_cast<Bytef *>(const_cast<char *>(packed.constData())); // zlib's interface
        m_stream.avail_in = uInt(packed.size());
        // 15 bits of window; 16 more ask for gzip's header and checksum.
        m_ready = inflateInit2(&m_stream, 15 + 16) == Z_OK;
    }

    ~Inflater()
    {
        if (m_ready)
            inflateEnd(&m_stream);
    }

    Q_DISABLE_COPY_MOVE(Inflater)

    bool isReady() const { return m_ready; }

    /// Unpacks into the space given and returns zlib's answer.
    int unpack(char *space, qint64 size)
    {
        m_stream.next_out = reinterpret_cast<Bytef *>(space);
        m_stream.avail_out = uInt(size);
        return inflate(&m_stream, Z_NO_FLUSH);
    }

    qint64 written() const { return qint64(m_stream.total_out); }

private:
    z_stream m_stream{};
    bool m_ready = false;
};

} // namespace

std::optional<QByteArray> gunzip(const QByteArray &packed, qint64 limit)
{
    Inflater inflater(packed);
    if (!inflater.isReady() || packed.size() > std::numeric_limits<int>::max())
        return std::nullopt;
    QByteArray plain;
    while (inflater.written() <= limit) {
        plain.resize(std::min(inflater.written() + Step, limit + 1));
        const qint64 room = plain.size() - inflater.written();
        const int answer = inflater.unpack(plain.data() + inflater.written(), room);
        if (answer == Z_STREAM_END) {
            plain.resize(inflater.written());
            return plain.size() <= limit ? std::optional(plain) : std::nullopt;
        }
        if (answer != Z_OK)
            return std::nullopt;
    }
    return std::nullopt;
}

} // namespace Zel
