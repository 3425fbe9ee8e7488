// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/readahead.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstring>
#include <exception>
#include <mutex>
#include <vector>

namespace QXSC {

namespace {

/// Small enough to lie in the cache of the processor that reads it and makes the checksum of it.
constexpr qint64 blockBytes = 512 * 1024;
constexpr std::size_t mostBlocks = 8;

} // namespace

/// The blocks between the thread that reads and the one that sends.
class ReadAhead::Stream
{
public:
    explicit Stream(UploadFile &file)
        : m_file(file)
        , m_fileSize(file.size())
    {
    }

    /// What the reading thread does until it is stopped.
    void fill()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_changed.wait(lock, [this] { return m_isStopping || mayFill(); });
            if (m_isStopping)
                return;
            fillNext(lock);
        }
    }

    void stop()
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
        m_changed.notify_all();
    }

    /// Makes a piece the one that is read. Returns the number it reads by.
    int begin(qint64 offset)
    {
        const std::lock_guard lock(m_mutex);
        goTo(offset);
        m_changed.notify_all();
        return ++m_piece;
    }

    void goBack(int piece, qint64 offset)
    {
        const std::lock_guard lock(m_mutex);
        if (piece == m_piece)
            goTo(offset);
        m_changed.notify_all();
    }

    qint64 read(int piece, char *to, qint64 most)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this, piece] {
            return m_isStopping || piece != m_piece || m_failure || m_count > 0;
        });
        if (m_isStopping || piece != m_piece || m_count == 0)
            return 0;
        // Under the lock: a block must not be filled anew while an outdated piece still reads it.
        Block &block = m_blocks[m_first];
        const qint64 count = std::min(most, block.size - block.taken);
        std::memcpy(to, block.bytes.data() + block.taken, static_cast<std::size_t>(count));
        block.taken += count;
        m_readAt += count;
        if (block.taken == block.size) {
            m_first = (m_first + 1) % mostBlocks;
            --m_count;
            m_changed.notify_all();
        }
        return count;
    }

    void check()
    {
        const std::lock_guard lock(m_mutex);
        if (m_failure)
            std::rethrow_exception(m_failure);
    }

private:
    struct Block
    {
        std::vector<char> bytes;
        qint64 size = 0;
        qint64 taken = 0;
    };

    bool mayFill() const { return m_count < mostBlocks && !m_failure && m_fillAt < m_fileSize; }

    void goTo(qint64 offset)
    {
        if (offset == m_readAt)
            return;
        m_readAt = m_fillAt = offset;
        m_first = m_count = 0;
        ++m_start;
    }

    void fillNext(std::unique_lock<std::mutex> &lock)
    {
        Block &block = m_blocks[(m_first + m_count) % mostBlocks];
        const qint64 offset = m_fillAt;
        const int start = m_start;
        lock.unlock();
        qint64 count = 0;
        std::exception_ptr failure;
        try {
            block.bytes.resize(static_cast<std::size_t>(std::min(blockBytes, m_fileSize)));
            count = m_file.read(offset, block.bytes.data(), qint64(block.bytes.size()));
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        if (start != m_start)
            return; // went elsewhere meanwhile
        m_failure = failure;
        if (!failure) {
            block.size = count;
            block.taken = 0;
            m_fillAt += count;
            ++m_count;
        }
        m_changed.notify_all();
    }

    UploadFile &m_file; ///< for the reading thread alone
    const qint64 m_fileSize;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::array<Block, mostBlocks> m_blocks;
    std::size_t m_first = 0;
    std::size_t m_count = 0;
    qint64 m_readAt = 0;
    qint64 m_fillAt = 0;
    int m_start = 0; ///< how often reading began elsewhere
    int m_piece = 0;
    std::exception_ptr m_failure;
    bool m_isStopping = false;
};

class ReadAhead::Piece : public PieceSource
{
public:
    Piece(const std::shared_ptr<Stream> &stream, qint64 offset, qint64 size)
        : m_stream(stream)
        , m_offset(offset)
        , m_size(size)
        , m_left(size)
        , m_number(stream->begin(offset))
    {
    }

    qint64 size() const override { return m_size; }

    qint64 read(char *to, qint64 most) override
    {
        if (m_left == 0)
            return 0;
        const qint64 count = m_stream->read(m_number, to, std::min(most, m_left));
        m_left -= count;
        return count;
    }

    void rewind() override
    {
        m_left = m_size;
        m_stream->goBack(m_number, m_offset);
    }

private:
    const std::shared_ptr<Stream> m_stream;
    const qint64 m_offset;
    const qint64 m_size;
    qint64 m_left;
    const int m_number;
};

ReadAhead::ReadAhead(UploadFile &file)
    : m_stream(std::make_shared<Stream>(file))
    , m_thread([stream = m_stream] { stream->fill(); })
{
}

ReadAhead::~ReadAhead()
{
    m_stream->stop();
    m_thread.join();
}

std::shared_ptr<PieceSource> ReadAhead::piece(qint64 offset, qint64 size)
{
    return std::make_shared<Piece>(m_stream, offset, size);
}

void ReadAhead::check() const
{
    m_stream->check();
}

} // namespace QXSC
