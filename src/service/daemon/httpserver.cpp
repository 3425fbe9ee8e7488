// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/httpserver.h"

#include "service/daemon/bodyreader.h"
#include "service/daemon/logline.h"
#include "service/daemon/problem.h"
#include "service/daemon/workerpool.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>

#include <QDateTime>
#include <QElapsedTimer>
#include <QLocale>
#include <QRandomGenerator>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
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

QByteArray bytes(boost::beast::string_view text)
{
    return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

boost::beast::string_view view(const QByteArray &text)
{
    return {text.constData(), static_cast<std::size_t>(text.size())};
}

QByteArray newRequestId()
{
    return QByteArray::number(QRandomGenerator::global()->generate64(), 16).rightJustified(16, '0');
}

/// The date in the form of HTTP (RFC 9110, 5.6.7).
QByteArray httpDate()
{
    return QLocale::c()
        .toString(QDateTime::currentDateTimeUtc(),
                  QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"))
        .toLatin1();
}

Problem noHttp()
{
    return Problem(400, QByteArrayLiteral("bad-request"),
                   QStringLiteral("The request is not valid HTTP."));
}

Problem headTooLarge()
{
    return Problem(431, QByteArrayLiteral("header-too-large"),
                   QStringLiteral("The head of the request is too large."));
}

Problem tooLarge(qint64 limit)
{
    return Problem(413, QByteArrayLiteral("too-large"),
                   QStringLiteral("The request is larger than %1 bytes.").arg(limit));
}

Problem tooBusy()
{
    return Problem(503, QByteArrayLiteral("unavailable"),
                   QStringLiteral("The service has too much to do. Try again shortly."),
                   {{QByteArrayLiteral("Retry-After"), QByteArrayLiteral("1")}});
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

template <class Message>
void setHead(Message &message, const HttpResponse &response, const QByteArray &requestId,
             bool keepAlive)
{
    message.set(http::field::date, view(httpDate()));
    message.set("X-Request-Id", view(requestId));
    message.set("X-Content-Type-Options", "nosniff");
    message.set(http::field::cache_control, "no-store"); // unless the answer says otherwise
    if (!response.contentType.isEmpty())
        message.set(http::field::content_type, view(response.contentType));
    for (const HttpHeader &header : response.headers)
        message.set(view(header.name), view(header.value));
    message.keep_alive(keepAlive);
    const bool bodyless = response.status == 204 || response.status == 304;
    if (!bodyless)
        message.content_length(static_cast<std::uint64_t>(
            response.file ? response.file->length : qint64(response.body.size())));
}

} // namespace

ListenError::ListenError(Kind kind, const std::string &text)
    : std::runtime_error(text)
    , m_kind(kind)
{
}

ListenError::~ListenError() = default;

/// Answers the requests of one client, one after the other. All of it runs on one strand.
class Connection : public std::enable_shared_from_this<Connection>
{
public:
    Connection(HttpServer::Private &server, tcp::socket socket);
    ~Connection();

    void start();
    /// Ends the connection: at once, or when it is not answering a request.
    void end(bool atOnce);

private:
    using HeadParser = http::request_parser<http::empty_body>;

    asio::awaitable<void> run(std::shared_ptr<Connection> self);
    asio::awaitable<bool> waitForRequest();
    asio::awaitable<bool> readHead(HeadParser &parser);
    asio::awaitable<bool> readBody(HeadParser &head, const HttpPlan &plan, HttpRequest &request);
    asio::awaitable<bool> inviteBody(const HeadParser &head);
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
    HttpRequest requestOf(const http::request_header<> &head) const;
    void log(const HttpRequest &request, const QByteArray &route, int status,
             const QElapsedTimer &since) const;

    HttpServer::Private &m_server;
    beast::tcp_stream m_stream;
    beast::flat_buffer m_buffer{longestBuffer};
    QString m_peer;
    quint16 m_localPort = 0;
    bool m_busy = false;
    bool m_ending = false;
    QElapsedTimer m_since;
};

class HttpServer::Private
{
public:
    explicit Private(const HttpServerOptions &serverOptions);

    void listen();
    void stop();

    WorkerPool &pool(Lane lane) { return lane == Lane::SignIn ? *signInWorkers : *workers; }

    const HttpServerOptions options;

    // The living connections, for draining. Each takes itself out when it is destroyed, the last of
    // them by the context below.
    std::mutex mutex;
    std::condition_variable connectionsChanged;
    std::set<Connection *> connections;
    std::atomic<bool> draining{false};

    asio::io_context context;
    std::unique_ptr<WorkerPool> workers;
    std::unique_ptr<WorkerPool> signInWorkers;
    quint16 port = 0;

private:
    asio::awaitable<void> acceptAll();
    void endConnections(bool atOnce);
    bool waitForConnections(std::chrono::milliseconds time);

    tcp::acceptor m_acceptor;
    std::vector<std::thread> m_threads;
    bool m_running = false;
};

Connection::Connection(HttpServer::Private &server, tcp::socket socket)
    : m_server(server)
    , m_stream(std::move(socket))
{
    error_code ignored;
    const auto peer = m_stream.socket().remote_endpoint(ignored);
    m_peer = QString::fromStdString(peer.address().to_string());
    m_localPort = m_stream.socket().local_endpoint(ignored).port();
    m_stream.socket().set_option(tcp::no_delay(true), ignored);
    const std::lock_guard lock(m_server.mutex);
    m_server.connections.insert(this);
}

Connection::~Connection()
{
    {
        const std::lock_guard lock(m_server.mutex);
        m_server.connections.erase(this);
    }
    m_server.connectionsChanged.notify_all();
}

void Connection::start()
{
    asio::co_spawn(m_stream.get_executor(), run(shared_from_this()), asio::detached);
}

void Connection::end(bool atOnce)
{
    asio::post(m_stream.get_executor(), [self = shared_from_this(), atOnce] {
        self->m_ending = true;
        if (!atOnce && self->m_busy)
            return;
        // Not closed: a worker may be reading from it.
        error_code ignored;
        self->m_stream.socket().shutdown(tcp::socket::shutdown_both, ignored);
        self->m_stream.cancel();
    });
}

asio::awaitable<void> Connection::run(std::shared_ptr<Connection> self)
{
    Q_UNUSED(self); // keeps the connection alive
    bool open = true;
    while (open && !m_ending && !m_server.draining) {
        m_busy = false;
        if (!co_await waitForRequest())
            co_return;
        m_busy = true;
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
        const bool keepAlive = wantsMore && whole && !m_ending && !m_server.draining;
        log(request, plan.route, response.status, m_since);
        open = co_await write(request, response, keepAlive) && keepAlive;
        if (!whole)
            co_await linger();
    }
    error_code ignored;
    m_stream.socket().shutdown(tcp::socket::shutdown_both, ignored);
}

/// Waits for the first byte of a request; false when the client went away or stayed silent.
asio::awaitable<bool> Connection::waitForRequest()
{
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
        co_await refuse(request, tooLarge(plan.bodyLimit));
        co_return false;
    }
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
    if (error == http::error::body_limit)
        co_await refuse(request, tooLarge(plan.bodyLimit));
    else if (error.category() == http::make_error_code(http::error::bad_method).category() &&
             error != http::error::partial_message && error != http::error::end_of_stream)
        co_await refuse(request, noHttp());
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
        sink = std::get<std::shared_ptr<BodySink>>(*start);
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
    log(request, QByteArrayLiteral("-"), problem.status(), m_since);
    const HttpResponse response = problem.response(request.requestId);
    if (co_await write(request, response, false))
        co_await linger();
}

/// Says that nothing more will be sent and takes in what the client is still sending, within
/// limits. Closing at once would reset the connection and could take the answer with it.
asio::awaitable<void> Connection::linger()
{
    error_code error;
    m_stream.socket().shutdown(tcp::socket::shutdown_send, error);
    m_stream.expires_after(lingerTime);
    std::size_t taken = 0;
    while (!error && taken < lingerBytes) {
        m_buffer.clear();
        taken += co_await m_stream.async_read_some(
            m_buffer.prepare(readBufferBytes), asio::redirect_error(asio::use_awaitable, error));
    }
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
    return request;
}

void Connection::log(const HttpRequest &request, const QByteArray &route, int status,
                     const QElapsedTimer &since) const
{
    if (m_server.options.log)
        m_server.options.log({request.requestId, request.method, route, request.peerAddress, status,
                              since.elapsed()});
}

HttpServer::Private::Private(const HttpServerOptions &serverOptions)
    : options(serverOptions)
    , context(serverOptions.ioThreads)
    , m_acceptor(asio::make_strand(context))
{
}

void HttpServer::Private::listen()
{
    error_code error;
    const auto address = asio::ip::make_address(options.address.toStdString(), error);
    const auto check = [&error] {
        if (error)
            throw ListenError(error == asio::error::address_in_use ? ListenError::Kind::InUse
                                                                   : ListenError::Kind::Other,
                              error.message());
    };
    check();
    const tcp::endpoint endpoint(address, options.port);
    m_acceptor.open(endpoint.protocol(), error);
    check();
    m_acceptor.set_option(asio::socket_base::reuse_address(true), error);
    check();
    m_acceptor.bind(endpoint, error);
    check();
    m_acceptor.listen(asio::socket_base::max_listen_connections, error);
    check();
    port = m_acceptor.local_endpoint(error).port();

    const unsigned processors = std::max(1U, std::thread::hardware_concurrency());
    const auto count =
        options.workers > 0 ? static_cast<unsigned>(options.workers) : std::max(8U, 2 * processors);
    workers = std::make_unique<WorkerPool>(count, options.limits.workerQueue);
    signInWorkers = std::make_unique<WorkerPool>(static_cast<std::size_t>(options.signInWorkers),
                                                 options.limits.signInQueue);
    asio::co_spawn(m_acceptor.get_executor(), acceptAll(), asio::detached);
    for (int i = 0; i < options.ioThreads; ++i)
        m_threads.emplace_back([this] { context.run(); });
    m_running = true;
}

asio::awaitable<void> HttpServer::Private::acceptAll()
{
    asio::steady_timer pause(m_acceptor.get_executor());
    while (!draining) {
        error_code error;
        tcp::socket socket(asio::make_strand(context));
        co_await m_acceptor.async_accept(socket, asio::redirect_error(asio::use_awaitable, error));
        if (error && !draining) {
            // Most often no file handle is left; there will be when a connection ends.
            pause.expires_after(std::chrono::milliseconds(100));
            co_await pause.async_wait(asio::redirect_error(asio::use_awaitable, error));
            continue;
        }
        bool full = false;
        {
            const std::lock_guard lock(mutex);
            full = connections.size() >= options.limits.connections;
        }
        if (!error && !full && !draining)
            std::make_shared<Connection>(*this, std::move(socket))->start();
    }
}

void HttpServer::Private::endConnections(bool atOnce)
{
    std::vector<std::shared_ptr<Connection>> alive; // let go of after the lock: they take it, too
    const std::lock_guard lock(mutex);
    for (Connection *connection : connections) {
        // One on its way out cannot be locked any more; it needs no telling.
        if (auto one = connection->weak_from_this().lock()) {
            one->end(atOnce);
            alive.push_back(std::move(one));
        }
    }
}

bool HttpServer::Private::waitForConnections(std::chrono::milliseconds time)
{
    std::unique_lock lock(mutex);
    return connectionsChanged.wait_for(lock, time, [this] { return connections.empty(); });
}

void HttpServer::Private::stop()
{
    if (!m_running)
        return;
    m_running = false;
    draining = true;
    asio::post(m_acceptor.get_executor(), [this] {
        error_code ignored;
        m_acceptor.close(ignored);
    });
    endConnections(false);
    if (!waitForConnections(options.limits.drain)) {
        endConnections(true);
        waitForConnections(std::chrono::milliseconds(2000));
    }
    workers->stop();
    signInWorkers->stop();
    context.stop();
    for (std::thread &thread : m_threads)
        thread.join();
    m_threads.clear();
}

HttpServer::HttpServer(const HttpServerOptions &options)
    : d(std::make_unique<Private>(options))
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
    return d->port;
}

void HttpServer::stop()
{
    d->stop();
}

} // namespace Zel::Service
