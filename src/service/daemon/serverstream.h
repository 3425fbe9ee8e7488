// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/tlscontext.h"

#include <utility> // before asio's awaitable, which forgets it

#include <boost/asio/associated_allocator.hpp>
#include <boost/asio/associated_executor.hpp>
#include <boost/asio/async_result.hpp>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/ssl/ssl_stream.hpp>

#include <chrono>
#include <cstdint>
#include <optional>
#include <type_traits>

#include <sys/socket.h>

namespace Zel::Service {

/// What a connection reads from and writes to: a socket, encrypted or not. Whatever reads and
/// writes HTTP sees one type. For the server's one source file only: whoever includes it includes
/// the HTTP library.
class ServerStream
{
public:
    using Socket = boost::asio::ip::tcp::socket;
    using Tcp = boost::beast::tcp_stream;
    using executor_type = Tcp::executor_type;
    using error_code = boost::system::error_code;

    explicit ServerStream(Socket socket)
        : m_tcp(std::move(socket))
    {
    }

    executor_type get_executor() noexcept { return m_tcp.get_executor(); }

    Socket &socket() { return m_tcp.socket(); }

    /// The socket below the encryption.
    Tcp &tcp() { return m_tcp; }

    bool isEncrypted() const { return m_tls.has_value(); }

    void expires_after(std::chrono::milliseconds time) { m_tcp.expires_after(time); }

    void expires_never() { m_tcp.expires_never(); }

    void cancel() { m_tcp.cancel(); }

    /// Bytes that were read and written so far, without what encryption adds.
    std::uint64_t received() const { return m_received; }

    std::uint64_t sent() const { return m_sent; }

    /// Encrypts the connection, as its server.
    /// @param first what the client has sent already; empty afterwards, because nothing that came
    ///        in the clear may be taken for something that was encrypted
    boost::asio::awaitable<error_code> encrypt(const TlsContext &context,
                                               boost::beast::flat_buffer &first)
    {
        namespace asio = boost::asio;
        SSL_CTX_up_ref(context.handle()); // which the object below lets go of
        asio::ssl::context owner(context.handle());
        m_tls.emplace(m_tcp, owner);
        error_code error;
        co_await m_tls->async_handshake(asio::ssl::stream_base::server, first.data(),
                                        asio::redirect_error(asio::use_awaitable, error));
        first.clear();
        co_return error;
    }

    /// Says that nothing more will be sent, on an encrypted connection by TLS first, so that the
    /// client knows that nothing was cut off.
    boost::asio::awaitable<void> endSending(std::chrono::milliseconds limit)
    {
        namespace asio = boost::asio;
        error_code ignored;
        expires_after(limit);
        if (m_tls) {
            // As if the client had said it already: many never do, and there is nothing to wait
            // for.
            SSL *ssl = m_tls->native_handle();
            SSL_set_shutdown(ssl, SSL_get_shutdown(ssl) | SSL_RECEIVED_SHUTDOWN);
            co_await m_tls->async_shutdown(asio::redirect_error(asio::use_awaitable, ignored));
        }
        socket().shutdown(Socket::shutdown_send, ignored);
    }

    /// Reads what has arrived already, without waiting: 0 when nothing has or the connection broke.
    /// Always 0 on an encrypted connection, whose bytes come by its own buffers only.
    std::size_t readReady(char *data, std::size_t wanted)
    {
        std::size_t have = 0;
        while (!m_tls && have < wanted) {
            const ssize_t count =
                ::recv(socket().native_handle(), data + have, wanted - have, MSG_DONTWAIT);
            if (count <= 0)
                break;
            have += static_cast<std::size_t>(count);
        }
        m_received += have;
        return have;
    }

    template <class Buffers, class Token>
    auto async_read_some(const Buffers &buffers, Token &&token)
    {
        return boost::asio::async_initiate<Token, void(error_code, std::size_t)>(Reading{}, token,
                                                                                 this, buffers);
    }

    template <class Buffers, class Token>
    auto async_write_some(const Buffers &buffers, Token &&token)
    {
        return boost::asio::async_initiate<Token, void(error_code, std::size_t)>(Writing{}, token,
                                                                                 this, buffers);
    }

private:
    /// Adds up bytes on the way to the handler.
    template <class Handler>
    struct Counting
    {
        std::uint64_t *count;
        ServerStream::executor_type fallback;
        Handler handler;

        using allocator_type = boost::asio::associated_allocator_t<Handler>;

        allocator_type get_allocator() const noexcept
        {
            return boost::asio::get_associated_allocator(handler);
        }

        using executor_type =
            boost::asio::associated_executor_t<Handler, ServerStream::executor_type>;

        executor_type get_executor() const noexcept
        {
            return boost::asio::get_associated_executor(handler, fallback);
        }

        void operator()(error_code error, std::size_t bytes)
        {
            *count += bytes;
            std::move(handler)(error, bytes);
        }
    };

    struct Reading
    {
        template <class Handler, class Buffers>
        void operator()(Handler &&handler, ServerStream *stream, const Buffers &buffers) const
        {
            auto counting = stream->counting(&stream->m_received, std::forward<Handler>(handler));
            if (stream->m_tls)
                stream->m_tls->async_read_some(buffers, std::move(counting));
            else
                stream->m_tcp.async_read_some(buffers, std::move(counting));
        }
    };

    struct Writing
    {
        template <class Handler, class Buffers>
        void operator()(Handler &&handler, ServerStream *stream, const Buffers &buffers) const
        {
            auto counting = stream->counting(&stream->m_sent, std::forward<Handler>(handler));
            if (stream->m_tls)
                stream->m_tls->async_write_some(buffers, std::move(counting));
            else
                stream->m_tcp.async_write_some(buffers, std::move(counting));
        }
    };

    template <class Handler>
    auto counting(std::uint64_t *count, Handler &&handler)
    {
        return Counting<std::decay_t<Handler>>{count, get_executor(),
                                               std::forward<Handler>(handler)};
    }

    Tcp m_tcp;
    std::optional<boost::beast::ssl_stream<Tcp &>> m_tls;
    std::uint64_t m_received = 0;
    std::uint64_t m_sent = 0;
};

} // namespace Zel::Service
