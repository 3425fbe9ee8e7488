// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/httpserver.h"

#include "service/daemon/bodyreader.h"
#include "service/daemon/logline.h"
#include "service/daemon/problem.h"
#include "service/daemon/responsehead.h"
#include "service/daemon/servercore.h"
#include "service/daemon/serverstream.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>

#include <QElapsedTimer>
#include <QRandomGenerator>

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <vector>

// No lambda with captures that own something may stand inside a co_await expression: some compilers
// destroy such captures twice. They are named before.

namespace Zel::Service {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using tcp = asio::ip::tcp;
using boost::system::error_code;

namespace {

/// What is taken from, or given to, a file at once.
constexpr qsizetype pieceBytes = 256 * 1024;
/// How much of a body a worker takes in at once before others have their turn.
constexpr qint64 longestTurn = 8 * 1024 * 1024;
/// One read of a head, and what an idle connection keeps.
constexpr std::size_t headBufferBytes = 4 * 1024;
/// What may wait to be parsed: nothing legal in the framing of a body (a chunk's extensions, the
/// trailer) comes near it.
constexpr std::size_t longestBuffer = 128 * 1024;
/// How long, and how many bytes of, an unread body is taken in after a refusal, so that the answer
/// is not lost to a reset.
constexpr std::chrono::milliseconds lingerTime{2000};
constexpr std::size_t lingerBytes = 4 * 1024 * 1024;

QByteArray newRequestId()
{
    return QByteArray::number(QRandomGenerator::global()->generate64(), 16).rightJustified(16, '0');
}

/// The first byte of every TLS connection: a record of the handshake.
constexpr unsigned char tlsHandshake = 0x16;

QString addressText(const asio::ip::address &address)
{
    // One client has one address, whichever of the two families it was listened on.
    if (address.is_v6() && address.to_v6().is_v4_mapped())
        return QString::fromStdString(
            asio::ip::make_address_v4(asio::ip::v4_mapped, address.to_v6()).to_string());
    return QString::fromStdString(address.to_string());
}

/// False where the length of a body is said in a way that others may understand differently: the
/// parser passes over transfer codings it does not know and would take the body for further
/// requests (RFC 9112, 6.3).
template <class Parser>
bool isFramedClearly(const Parser &parser)
{
    const auto &fields = parser.get();
    const auto codings = fields.count(http::field::transfer_encoding);
    return codings == 0 ||
           (codings == 1 && beast::iequals(fields[http::field::transfer_encoding], "chunked"));
}

/// Nothing when it cannot be read.
QByteArray readPiece(ByteSource &file, qint64 offset, qint64 most)
{
    try {
        return file.read(offset, most);
    } catch (const std::exception &error) {
        logLine("error", {{"event", QStringLiteral("a file broke off")},
                          {"cause", QString::fromUtf8(error.what())}});
        return QByteArray();
    }
}

} // namespace

/// Answers the requests of one client, one after the other. All of it runs on one strand.
class Connection : public LiveConnection
{
public:
    Connection(ServerCore &server, tcp::socket socket);
    ~Connection() override;

    void start();
    void end(bool atOnce) override;

private:
    using HeadParser = http::request_parser<http::empty_body>;

    asio::awaitable<void> run(std::shared_ptr<Connection> self);
    asio::awaitable<void> answerRequests();
    asio::awaitable<bool> encrypt(const TlsContext &tls);
    asio::awaitable<bool> waitForRequest();
    asio::awaitable<bool> readHead(HeadParser &parser);
    asio::awaitable<bool> readBody(HeadParser &head, const HttpPlan &plan, HttpRequest &request);
    asio::awaitable<bool> inviteBody(const HeadParser &head);
    std::shared_ptr<BodySink> endedOnWorker(Lane lane, std::shared_ptr<BodySink> sink);
    asio::awaitable<std::optional<HttpResponse>>
    streamBody(HeadParser &head, const HttpPlan &plan, const HttpRequest &request, bool &whole);
    /// A job that a worker does while the connection goes on.
    struct Job;
    std::shared_ptr<Job> startJob(Lane lane, std::function<void()> work);
    asio::awaitable<void> endOf(std::shared_ptr<Job> job);
    asio::awaitable<bool> onWorker(Lane lane, std::function<void()> job);
    asio::awaitable<HttpResponse> answer(const HttpPlan &plan, const HttpRequest &request);
    asio::awaitable<bool> write(const HttpRequest &request, const HttpResponse &response,
                                bool keepAlive);
    asio::awaitable<error_code> writeFile(const HttpRequest &request, const HttpResponse &response,
                                          bool keepAlive);
    template <class Message>
    asio::awaitable<error_code> writeMessage(Message &message);
    asio::awaitable<void> refuse(HttpRequest request, Problem problem);
    asio::awaitable<void> linger();
    asio::awaitable<void> takeRest();
    HttpRequest requestOf(const http::request_header<> &head) const;
    void log(const HttpRequest &request, const QByteArray &route, const HttpResponse &response);
    void setBusy(bool busy);
    void countBytes();

    ServerCore &m_server;
    ServerStream m_stream;
    beast::flat_buffer m_buffer{longestBuffer};
    QString m_peer;
    quint16 m_localPort = 0;
    bool m_busy = false; ///< a request has begun to come in
    bool m_ending = false;
    QElapsedTimer m_since;
    std::uint64_t m_unread = 0;         ///< what a client may still send of a refused body
    std::uint64_t m_receivedBefore = 0; ///< this request
    std::uint64_t m_receivedCounted = 0;
    std::uint64_t m_sentCounted = 0;
};

Connection::Connection(ServerCore &server, tcp::socket socket)
    : m_server(server)
    , m_stream(std::move(socket))
{
    error_code ignored;
    const auto peer = m_stream.socket().remote_endpoint(ignored);
    m_peer = addressText(peer.address());
    m_localPort = m_stream.socket().local_endpoint(ignored).port();
    m_stream.socket().set_option(tcp::no_delay(true), ignored);
    m_server.add(this);
}

Connection::~Connection()
{
    setBusy(false);
    countBytes();
    m_server.remove(this);
}

void Connection::start()
{
    asio::co_spawn(m_stream.get_executor(),
                   run(std::static_pointer_cast<Connection>(shared_from_this())), asio::detached);
}

void Connection::end(bool atOnce)
{
    asio::post(m_stream.get_executor(),
               [self = std::static_pointer_cast<Connection>(shared_from_this()), atOnce] {
                   self->m_ending = true;
                   if (!atOnce && self->m_busy)
                       return;
                   // Not closed: a worker may be reading from it. One that is encrypted says
                   // good-bye first.
                   error_code ignored;
                   if (atOnce || !self->m_stream.isEncrypted())
                       self->m_stream.socket().shutdown(tcp::socket::shutdown_both, ignored);
                   self->m_stream.cancel();
               });
}

asio::awaitable<void> Connection::run(std::shared_ptr<Connection> self)
{
    Q_UNUSED(self); // keeps the connection alive
    const auto tls = m_server.tls();
    if (tls && !co_await encrypt(*tls))
        co_return;
    co_await answerRequests();
    setBusy(false);
    if (m_stream.isEncrypted())
        co_await m_stream.endSending(lingerTime);
    error_code ignored;
    m_stream.socket().shutdown(tcp::socket::shutdown_both, ignored);
}

/// Encrypts the connection; false when the client does not get that far.
asio::awaitable<bool> Connection::encrypt(const TlsContext &tls)
{
    error_code error;
    m_stream.expires_after(m_server.options.limits.header);
    const std::size_t count = co_await m_stream.tcp().async_read_some(
        m_buffer.prepare(headBufferBytes), asio::redirect_error(asio::use_awaitable, error));
    if (error)
        co_return false; // somebody who only looked whether the port is open
    m_buffer.commit(count);
    m_since.start();
    if (*static_cast<const unsigned char *>(m_buffer.data().data()) != tlsHandshake) {
        co_await refuse(requestOf({}), notEncrypted());
        co_return false;
    }
    error = co_await m_stream.encrypt(tls, m_buffer);
    ++(error ? m_server.handshakesFailed : m_server.handshakes);
    if (error && m_server.options.handshakeFailed)
        m_server.options.handshakeFailed(m_peer, QString::fromStdString(error.message()));
    co_return !error;
}

asio::awaitable<void> Connection::answerRequests()
{
    bool open = true;
    while (open && !m_ending && !m_server.isDraining()) {
        setBusy(false);
        countBytes();
        if (!co_await waitForRequest() || m_ending)
            co_return; // a call whose answer could not be sent any more is not begun
        setBusy(true);
        m_since.start();
        HeadParser head;
        head.header_limit(m_server.options.limits.headerBytes);
        // The limit of the route is set when the route is known; "none" would refuse every body.
        head.body_limit(std::numeric_limits<std::int64_t>::max());
        if (!co_await readHead(head))
            co_return;
        HttpRequest request = requestOf(head.get().base());
        const bool wantsMore = head.get().keep_alive();
        const HttpPlan plan = m_server.options.plan(request);
        bool whole = true; // the body is read to its end
        HttpResponse response;
        if (plan.begin) {
            auto streamed = co_await streamBody(head, plan, request, whole);
            if (!streamed)
                co_return;
            response = std::move(*streamed);
        } else {
            if (!co_await readBody(head, plan, request))
                co_return;
            response = co_await answer(plan, request);
        }
        const bool keepAlive = wantsMore && whole && !m_ending && !m_server.isDraining();
        log(request, plan.route, response);
        open = co_await write(request, response, keepAlive) && keepAlive;
        if (!whole)
            co_await linger();
    }
}

/// Waits for the first byte of a request; false when the client went away or stayed silent.
asio::awaitable<bool> Connection::waitForRequest()
{
    m_receivedBefore = m_stream.received() - m_buffer.size();
    if (m_buffer.size() > 0)
        co_return true; // sent together with the request before
    m_buffer.shrink_to_fit();
    error_code error;
    m_stream.expires_after(m_server.options.limits.idle);
    const std::size_t count = co_await m_stream.async_read_some(
        m_buffer.prepare(headBufferBytes), asio::redirect_error(asio::use_awaitable, error));
    m_buffer.commit(count);
    co_return !error;
}

/// Reads the head piece by piece. The parser's own limit sees only what has not been taken in yet,
/// so that many small pieces would pass it; the whole is counted here.
asio::awaitable<bool> Connection::readHead(HeadParser &parser)
{
    const std::size_t limit = m_server.options.limits.headerBytes;
    std::size_t taken = 0;
    m_stream.expires_after(m_server.options.limits.header);
    for (;;) {
        error_code error;
        const std::size_t used = parser.put(m_buffer.data(), error);
        m_buffer.consume(used);
        taken += used;
        const bool tooLarge = taken > limit || error == http::error::header_limit ||
                              (error == http::error::need_more && taken + m_buffer.size() >= limit);
        if (tooLarge || (error && error != http::error::need_more)) {
            co_await refuse(requestOf({}), tooLarge ? headTooLarge() : noHttp());
            co_return false;
        }
        if (parser.is_header_done() && !isFramedClearly(parser)) {
            co_await refuse(requestOf({}), noHttp());
            co_return false;
        }
        if (parser.is_header_done())
            co_return true;
        error = {};
        const std::size_t count = co_await m_stream.async_read_some(
            m_buffer.prepare(headBufferBytes), asio::redirect_error(asio::use_awaitable, error));
        if (error)
            co_return false; // gone away or out of time: nobody waits for an answer
        m_buffer.commit(count);
    }
}

asio::awaitable<bool> Connection::readBody(HeadParser &head, const HttpPlan &plan,
                                           HttpRequest &request)
{
    const auto limit = static_cast<std::uint64_t>(plan.bodyLimit);
    const auto length = head.content_length();
    if (length && *length > limit) {
        m_unread = *length;
        co_await refuse(request, tooLarge(plan.bodyLimit));
        co_return false;
    }
    if (!head.chunked() && length.value_or(0) == 0)
        co_return true;
    error_code error;
    m_stream.expires_after(m_server.options.limits.body);
    if (!co_await inviteBody(head))
        co_return false;
    if (!length || *length > headBufferBytes)
        m_buffer.reserve(readBufferBytes);
    http::request_parser<http::string_body> parser(std::move(head));
    parser.body_limit(limit);
    co_await http::async_read(m_stream, m_buffer, parser,
                              asio::redirect_error(asio::use_awaitable, error));
    if (!error) {
        request.body = QByteArray::fromStdString(parser.get().body());
        co_return true;
    }
    if (error == http::error::body_limit) {
        m_unread = lingerBytes;
        co_await refuse(request, tooLarge(plan.bodyLimit));
    } else if (isMalformed(error)) {
        co_await refuse(request, noHttp());
    }
    co_return false;
}

/// Tells a client that waits for it that its body may come.
asio::awaitable<bool> Connection::inviteBody(const HeadParser &head)
{
    if (!beast::iequals(head.get()[http::field::expect], "100-continue"))
        co_return true;
    static const std::string goOn = "HTTP/1.1 100 Continue\r\n\r\n";
    error_code error;
    co_await asio::async_write(m_stream, asio::buffer(goOn),
                               asio::redirect_error(asio::use_awaitable, error));
    co_return !error;
}

/// The same sink, whose end comes on its lane, too: it may block, which a socket's thread must not.
std::shared_ptr<BodySink> Connection::endedOnWorker(Lane lane, std::shared_ptr<BodySink> sink)
{
    BodySink *raw = sink.get();
    return {raw, [&server = m_server, lane, sink = std::move(sink)](BodySink *) mutable {
                std::function<void()> last = [sink = std::move(sink)] {};
                server.pool(lane).postAnyway(std::move(last));
            }};
}

/// Hands a body to its sink piece by piece. Nothing when the client went away or has been answered;
/// `whole` tells whether the body was read to its end.
asio::awaitable<std::optional<HttpResponse>> Connection::streamBody(HeadParser &head,
                                                                    const HttpPlan &plan,
                                                                    const HttpRequest &request,
                                                                    bool &whole)
{
    const auto limit = static_cast<std::uint64_t>(plan.bodyLimit);
    const auto length = head.content_length();
    if (length && *length > limit) {
        m_unread = *length;
        co_await refuse(request, tooLarge(plan.bodyLimit));
        co_return std::nullopt;
    }
    const auto start = std::make_shared<BodyStart>(tooBusy().response(request.requestId));
    std::function<void()> begin = [start, begin = plan.begin, request] { *start = begin(request); };
    co_await onWorker(plan.lane, std::move(begin));
    const auto answer = std::make_shared<std::optional<HttpResponse>>();
    std::shared_ptr<BodySink> sink;
    if (const HttpResponse *refusal = std::get_if<HttpResponse>(start.get()))
        *answer = *refusal;
    else
        sink = endedOnWorker(plan.lane, std::get<std::shared_ptr<BodySink>>(std::move(*start)));
    if (*answer && head.get().count(http::field::expect) > 0) {
        whole = false;
        co_return **answer;
    }
    if (!co_await inviteBody(head))
        co_return std::nullopt;

    // A body that was refused is read all the same, up to its limit: answered in its middle, many
    // clients would lose the answer.
    BodyReader body(std::move(head), limit);
    const auto size = std::min(static_cast<std::uint64_t>(pieceBytes), length.value_or(limit));
    const auto piece =
        std::make_shared<QByteArray>(static_cast<qsizetype>(size), Qt::Uninitialized);
    while (!body.isDone()) {
        error_code error;
        m_stream.expires_after(m_server.options.limits.body);
        const qsizetype count = co_await body.read(m_stream, m_buffer, *piece, error);
        if (error == http::error::body_limit) {
            m_unread = lingerBytes;
            co_await refuse(request, tooLarge(plan.bodyLimit));
            co_return std::nullopt;
        }
        // What came before a connection broke is kept, too: the client goes on behind it.
        std::function<void()> take = [this, &body, sink, piece, answer, count] {
            qsizetype ready = count;
            for (qint64 taken = 0; ready > 0 && !*answer; taken += ready) {
                *answer = sink->take(QByteArrayView(*piece).first(ready));
                ready = taken < longestTurn ? body.readReady(m_stream, *piece) : 0;
            }
        };
        if (count > 0 && !*answer && !co_await onWorker(plan.lane, std::move(take)))
            *answer = tooBusy().response(request.requestId);
        if (isMalformed(error))
            co_await refuse(request, noHttp());
        if (error)
            co_return std::nullopt;
    }
    std::function<void()> finish = [sink, answer] { *answer = sink->finish(); };
    if (!*answer && !co_await onWorker(plan.lane, std::move(finish)))
        co_return tooBusy().response(request.requestId);
    co_return **answer;
}

struct Connection::Job
{
    asio::steady_timer done;
    bool isOver = false; ///< changed on the connection's strand only
};

/// Has a lane's pool do some work; null when the pool does not take it.
std::shared_ptr<Connection::Job> Connection::startJob(Lane lane, std::function<void()> work)
{
    const auto executor = m_stream.get_executor();
    const auto job = std::make_shared<Job>(Job{asio::steady_timer(executor)});
    job->done.expires_at(asio::steady_timer::time_point::max());
    std::function<void()> hop = [job, executor, work = std::move(work)] {
        work();
        asio::post(executor, [job] {
            job->isOver = true;
            job->done.cancel();
        });
    };
    return m_server.pool(lane).post(std::move(hop)) ? job : nullptr;
}

/// Resumes on this strand when the job is over; at once when there is none.
asio::awaitable<void> Connection::endOf(std::shared_ptr<Job> job)
{
    if (!job || job->isOver)
        co_return;
    m_stream.expires_never();
    error_code ignored;
    co_await job->done.async_wait(asio::redirect_error(asio::use_awaitable, ignored));
}

/// Runs a job on a lane's pool and resumes on this strand; false when the pool does not take it.
asio::awaitable<bool> Connection::onWorker(Lane lane, std::function<void()> job)
{
    const std::shared_ptr<Job> begun = startJob(lane, std::move(job));
    co_await endOf(begun);
    co_return begun != nullptr;
}

/// Runs the handler on its lane and resumes on this strand with what it returned.
asio::awaitable<HttpResponse> Connection::answer(const HttpPlan &plan, const HttpRequest &request)
{
    if (plan.lane == Lane::Immediate)
        co_return plan.handler(request);
    const auto response = std::make_shared<HttpResponse>();
    std::function<void()> job = [response, handler = plan.handler, request] {
        *response = handler(request);
    };
    if (!co_await onWorker(plan.lane, std::move(job)))
        co_return tooBusy().response(request.requestId);
    co_return std::move(*response);
}

asio::awaitable<bool> Connection::write(const HttpRequest &request, const HttpResponse &response,
                                        bool keepAlive)
{
    error_code error;
    const auto status = static_cast<unsigned>(response.status);
    if (response.file && request.method != "HEAD") {
        error = co_await writeFile(request, response, keepAlive);
    } else if (request.method == "HEAD" || response.body.isEmpty()) {
        http::response<http::empty_body> message;
        message.result(status);
        setHead(message, response, request.requestId, keepAlive);
        error = co_await writeMessage(message);
    } else {
        http::response<http::span_body<const char>> message;
        message.result(status);
        setHead(message, response, request.requestId, keepAlive);
        message.body() = {response.body.constData(),
                          static_cast<std::size_t>(response.body.size())};
        error = co_await writeMessage(message);
    }
    co_return !error;
}

/// Writes part by part, each with the full time limit: a slow reader of a long answer is no idler.
template <class Message>
asio::awaitable<error_code> Connection::writeMessage(Message &message)
{
    error_code error;
    http::response_serializer<typename Message::body_type> serializer(message);
    while (!error && !serializer.is_done()) {
        m_stream.expires_after(m_server.options.limits.write);
        co_await http::async_write_some(m_stream, serializer,
                                        asio::redirect_error(asio::use_awaitable, error));
    }
    co_return error;
}

/// Sends a section of a file, piece by piece.
asio::awaitable<error_code> Connection::writeFile(const HttpRequest &request,
                                                  const HttpResponse &response, bool keepAlive)
{
    http::response<http::empty_body> message;
    message.result(static_cast<unsigned>(response.status));
    setHead(message, response, request.requestId, keepAlive);
    http::response_serializer<http::empty_body> serializer(message);
    error_code error;
    m_stream.expires_after(m_server.options.limits.write);
    co_await http::async_write_header(m_stream, serializer,
                                      asio::redirect_error(asio::use_awaitable, error));
    const auto file = response.file->bytes;
    const auto piece = std::make_shared<QByteArray>();
    qint64 left = response.file->length;
    while (!error && left > 0) {
        const qint64 offset = response.file->offset + response.file->length - left;
        std::function<void()> read = [file, piece, offset, left] {
            *piece = readPiece(*file, offset, std::min<qint64>(pieceBytes, left));
        };
        // The head is out, so all that can be said of a failure is the end of the connection.
        if (!co_await onWorker(Lane::Worker, std::move(read)) || piece->isEmpty())
            co_return make_error_code(asio::error::connection_aborted);
        left -= piece->size();
        m_stream.expires_after(m_server.options.limits.write);
        co_await asio::async_write(
            m_stream, asio::buffer(piece->constData(), static_cast<std::size_t>(piece->size())),
            asio::redirect_error(asio::use_awaitable, error));
    }
    co_return error;
}

/// Answers a request that is not read to its end, and closes the connection.
asio::awaitable<void> Connection::refuse(HttpRequest request, Problem problem)
{
    const HttpResponse response = problem.response(request.requestId);
    log(request, QByteArrayLiteral("-"), response);
    if (co_await write(request, response, false))
        co_await linger();
}

/// Says that nothing more will be sent and takes in what the client is still sending, within
/// limits. Closing at once would reset the connection and could take the answer with it.
asio::awaitable<void> Connection::linger()
{
    error_code error;
    if (m_stream.isEncrypted())
        co_await takeRest();
    co_await m_stream.endSending(lingerTime);
    m_stream.expires_after(lingerTime);
    std::size_t taken = 0;
    while (!error && taken < lingerBytes) {
        m_buffer.clear();
        taken += co_await m_stream.tcp().async_read_some(
            m_buffer.prepare(readBufferBytes), asio::redirect_error(asio::use_awaitable, error));
    }
}

/// Takes in what an encrypted client is still sending of a refused body. Many take the good-bye of
/// TLS for the end of it all and never look at the answer before it when they are not done sending.
asio::awaitable<void> Connection::takeRest()
{
    asio::steady_timer patience(m_stream.get_executor(), lingerTime);
    patience.async_wait([self = shared_from_this(), this](const error_code &cancelled) {
        if (!cancelled)
            m_stream.cancel();
    });
    const std::uint64_t most = std::min<std::uint64_t>(m_unread, lingerBytes);
    std::uint64_t taken = m_buffer.size();
    error_code error;
    while (!error && taken < most) {
        m_buffer.clear();
        m_stream.expires_after(2 * lingerTime); // only if the wait above was over between two reads
        taken += co_await m_stream.async_read_some(
            m_buffer.prepare(readBufferBytes), asio::redirect_error(asio::use_awaitable, error));
    }
    patience.cancel();
}

HttpRequest Connection::requestOf(const http::request_header<> &head) const
{
    HttpRequest request;
    request.method = bytes(head.method_string());
    request.target = bytes(head.target());
    for (const auto &field : head)
        request.headers.append({bytes(field.name_string()), bytes(field.value())});
    request.requestId = newRequestId();
    request.peerAddress = m_peer;
    request.localPort = m_localPort;
    request.isEncrypted = m_stream.isEncrypted();
    return request;
}

void Connection::log(const HttpRequest &request, const QByteArray &route,
                     const HttpResponse &response)
{
    if (!m_server.options.log)
        return;
    HttpLogEntry entry{request.requestId, request.method, route, request.peerAddress,
                       response.status};
    entry.microseconds = m_since.nsecsElapsed() / 1000;
    entry.received = static_cast<qint64>(m_stream.received() - m_receivedBefore);
    entry.sent = request.method == "HEAD" ? 0 : bodyBytes(response);
    m_server.options.log(entry);
}

void Connection::setBusy(bool busy)
{
    if (m_busy != busy)
        m_server.inFlight += busy ? 1 : -1;
    m_busy = busy;
}

/// Tells the server of the bytes that came and went since this was called before.
void Connection::countBytes()
{
    m_server.received += static_cast<qint64>(m_stream.received() -
                                             std::exchange(m_receivedCounted, m_stream.received()));
    m_server.sent +=
        static_cast<qint64>(m_stream.sent() - std::exchange(m_sentCounted, m_stream.sent()));
}

namespace {

void takeConnection(ServerCore &server, tcp::socket socket)
{
    std::make_shared<Connection>(server, std::move(socket))->start();
}

} // namespace

HttpServer::HttpServer(const HttpServerOptions &options)
    : d(std::make_unique<ServerCore>(options, takeConnection))
{
}

HttpServer::~HttpServer()
{
    d->stop();
}

void HttpServer::start()
{
    d->listen();
}

quint16 HttpServer::port() const
{
    return d->port();
}

void HttpServer::stop()
{
    d->stop();
}

void HttpServer::replaceTls(std::shared_ptr<const TlsContext> tls)
{
    d->replaceTls(std::move(tls));
}

HttpServerFigures HttpServer::figures() const
{
    return d->figures();
}

} // namespace Zel::Service
