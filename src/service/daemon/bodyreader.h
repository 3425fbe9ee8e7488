// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/serverstream.h"

#include <QByteArray>

#include <boost/asio/awaitable.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/buffer_body.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/error.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>

#include <algorithm>
#include <cstdint>

namespace Zel::Service {

/// One read of a body that the parser takes apart; smaller buffers made uploads several times
/// slower.
constexpr std::size_t readBufferBytes = 64 * 1024;

/// Whether what came is not HTTP, other than by ending too early.
inline bool isMalformed(const boost::system::error_code &error)
{
    namespace http = boost::beast::http;
    return error.category() == http::make_error_code(http::error::bad_method).category() &&
           error != http::error::partial_message && error != http::error::end_of_stream;
}

/// Reads the body of a request piece by piece. For the server's one source file only: whoever
/// includes it includes the HTTP library.
class BodyReader
{
public:
    using Head = boost::beast::http::request_parser<boost::beast::http::empty_body>;

    BodyReader(Head &&head, std::uint64_t limit)
        : m_isChunked(head.chunked())
        , m_left(m_isChunked ? 0 : head.content_length().value_or(0))
        , m_parser(std::move(head))
    {
        m_parser.body_limit(limit);
    }

    bool isDone() const { return m_isChunked ? m_parser.is_done() : m_left == 0; }

    /// Fills a piece, to its end unless the body ends before. Returns how much came, also before an
    /// error.
    /// @param buffer what was read behind the head; its room is what a chunked body is read into
    boost::asio::awaitable<qsizetype> read(ServerStream &stream, boost::beast::flat_buffer &buffer,
                                           QByteArray &piece, boost::system::error_code &error)
    {
        return m_isChunked ? readChunks(stream, buffer, piece, error)
                           : readPlain(stream, buffer, piece, error);
    }

    /// Fills a piece with what has arrived already; nothing when nothing has, when the body is at
    /// its end, or when the connection broke, which the next `read` tells. For the thread that
    /// takes the body in: what it has just read is in its processor's cache, and while the client
    /// is fast enough nobody has to be woken.
    qsizetype readReady(ServerStream &stream, QByteArray &piece)
    {
        const std::size_t wanted = wantedOf(piece);
        const std::size_t have = stream.readReady(piece.data(), wanted);
        m_left -= have;
        return static_cast<qsizetype>(have);
    }

private:
    /// Nothing of a chunked body, which only the parser can read.
    std::size_t wantedOf(const QByteArray &piece) const
    {
        return static_cast<std::size_t>(std::min(m_left, static_cast<std::uint64_t>(piece.size())));
    }

    boost::asio::awaitable<qsizetype> readChunks(ServerStream &stream,
                                                 boost::beast::flat_buffer &buffer,
                                                 QByteArray &piece,
                                                 boost::system::error_code &error)
    {
        namespace http = boost::beast::http;
        buffer.reserve(readBufferBytes);
        auto &body = m_parser.get().body();
        body.data = piece.data();
        body.size = static_cast<std::size_t>(piece.size());
        co_await http::async_read(stream, buffer, m_parser,
                                  boost::asio::redirect_error(boost::asio::use_awaitable, error));
        if (error == http::error::need_buffer)
            error = {};
        co_return piece.size() - static_cast<qsizetype>(body.size);
    }

    /// From the socket to its place, as much at once as there is: the parser would copy it, and
    /// asio's own loop asks for no more than 64 KiB.
    boost::asio::awaitable<qsizetype> readPlain(ServerStream &stream,
                                                boost::beast::flat_buffer &buffer,
                                                QByteArray &piece, boost::system::error_code &error)
    {
        const std::size_t wanted = wantedOf(piece);
        std::size_t have =
            boost::asio::buffer_copy(boost::asio::buffer(piece.data(), wanted), buffer.data());
        buffer.consume(have);
        while (have < wanted && !error)
            have += co_await stream.async_read_some(
                boost::asio::buffer(piece.data() + have, wanted - have),
                boost::asio::redirect_error(boost::asio::use_awaitable, error));
        m_left -= have;
        co_return static_cast<qsizetype>(have);
    }

    const bool m_isChunked;
    std::uint64_t m_left; ///< of a body of known length
    boost::beast::http::request_parser<boost::beast::http::buffer_body> m_parser;
};

} // namespace Zel::Service
