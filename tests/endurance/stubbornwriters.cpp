// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/endurance/stubbornwriters.h"

#include "tests/contract/recordtext.h"
#include "tests/endurance/rawsession.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>

#include <stdexcept>

namespace ZelTest {

namespace {

constexpr int reportedRows = 5;
constexpr int longestFile = 150'000;

/// The service does not answer, or not with what was asked for, as long as it is interrupted.
class Interrupted : public std::runtime_error
{
public:
    Interrupted()
        : std::runtime_error("interrupted")
    {
    }
};

/// A writer waits for what another one makes; no interruption.
class NothingToDo : public std::runtime_error
{
public:
    NothingToDo()
        : std::runtime_error("nothing to do")
    {
    }
};

bool isInterruption(const QXSC::ServiceError &error)
{
    return error.isTransient() && error.kind() != QXSC::ServiceError::Kind::BadAnswer;
}

/// An answer to what may be interrupted.
const HttpReply &answered(const HttpReply &reply, int status)
{
    if (reply.status == 0 || reply.status == 503)
        throw Interrupted();
    if (reply.status != status)
        throw std::runtime_error("the service says: " + reply.body.toStdString());
    return reply;
}

quint16 portOf(const WritersState &state)
{
    return static_cast<quint16>(QUrl(state.address).port());
}

QByteArray rowsOf(const QJsonArray &rows)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("rows"), rows}}).toJson();
}

} // namespace

void StubbornWriter::start()
{
    m_thread.reset(QThread::create([this] { work(); }));
    m_thread->start();
}

void StubbornWriter::wait()
{
    if (m_thread)
        m_thread->wait();
}

bool StubbornWriter::untilDone(const std::function<void()> &call)
{
    // Long enough for a database that comes back, short enough for a test that is broken.
    constexpr qint64 patience = 120'000;
    constexpr unsigned long pause = 5;
    QDeadlineTimer deadline(patience);
    for (;;) {
        try {
            call();
            return true;
        } catch (const NothingToDo &) {
            if (m_state.ending)
                return false;
            deadline.setRemainingTime(patience);
            QThread::msleep(pause);
            continue;
        } catch (const QXSC::ServiceError &error) {
            if (!isInterruption(error) || deadline.hasExpired())
                throw;
        } catch (const Interrupted &) {
            if (deadline.hasExpired())
                throw;
        }
        ++m_state.interrupted;
        QThread::msleep(pause);
    }
}

void StubbornWriter::work()
{
    try {
        Client client;
        untilDone([&] { begin(client); });
        while (!m_state.ending) {
            if (untilDone([&] { write(client); }))
                ++m_state.acknowledged;
        }
    } catch (const QXSC::ServiceError &error) {
        const QMutexLocker lock(&m_state.mutex);
        m_state.faults << error.code() + QLatin1String(": ") + error.description();
    } catch (const std::exception &error) {
        const QMutexLocker lock(&m_state.mutex);
        m_state.faults << QString::fromUtf8(error.what());
    }
}

void StubbornWriter::signIn(Client &client, const Person &person, qint64 account)
{
    if (!authenticate(client, m_state.address, person.user, person.password) ||
        !chooseAccount(client, QString::number(account)))
        throw std::runtime_error("a writer may not sign in");
}

void ProjectWriter::begin(Client &client)
{
    signIn(client, nora(), contractStudio);
}

void ProjectWriter::write(Client &client)
{
    if (!m_next)
        m_next = newProject(QStringLiteral("Made by a stubborn writer"));
    const auto record = client.createProject(*m_next);
    made.insert(record->guid, textOf(*record));
    m_next.reset();
}

void FolderWriter::begin(Client &client)
{
    signIn(client, nora(), contractStudio);
}

void FolderWriter::write(Client &client)
{
    const QString name = QStringLiteral("Folder ") + newGuid();
    made.insert(client.CreateAssetFolder(0, name), name);
}

QString AssetWriter::nameFor(const QByteArrayList &files)
{
    QByteArrayList sums;
    for (const QByteArray &bytes : files)
        sums << sha256(bytes);
    return QLatin1String("sums:") + QString::fromLatin1(sums.join('+'));
}

void AssetWriter::begin(Client &client)
{
    signIn(client, olaf(), contractStudio);
}

QString AssetWriter::newFile(const QByteArray &bytes)
{
    QFile file(m_folder.filePath(QStringLiteral("%1.bin").arg(++m_count % 4)));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("a file of the test cannot be written");
    return file.fileName();
}

void AssetWriter::write(Client &client)
{
    const QByteArrayList contents{noise(m_random.bounded(1, longestFile), m_random.generate()),
                                  noise(m_random.bounded(1, longestFile), m_random.generate())};
    auto files = std::make_shared<QXSC::AssetFileCollection>();
    for (const QByteArray &bytes : contents)
        files->add(std::make_shared<QXSC::AssetFileEntry>(QXSC::AssetFileEntry{newFile(bytes)}));
    made.insert(
        client.CreateAsset(nameFor(contents), QString(), 0, files, QString(), QString(), nullptr));
}

PieceWriter::~PieceWriter()
{
    wait();
}

void PieceWriter::begin(Client &client)
{
    signIn(client, olaf(), contractStudio); // tells an interruption from everything else
    try {
        m_session = std::make_unique<RawSession>(portOf(state()), olaf(), contractStudio);
    } catch (const std::runtime_error &) {
        throw Interrupted();
    }
}

void PieceWriter::write(Client &)
{
    const QByteArray bytes = noise(m_random.bounded(2, longestFile), m_random.generate());
    const QByteArray sum = sha256(bytes);
    const QByteArray name = AssetWriter::nameFor({bytes}).toLatin1();
    const HttpReply reserved = m_session->askForUpload(name, bytes.size());
    const QByteArray path = RawSession::pathIn(answered(reserved, 201));
    const qsizetype middle = bytes.size() / 2;
    answered(m_session->call("PUT", path + "/files/0?offset=0", bytes.left(middle)), 200);
    const QByteArray offset = QByteArray::number(middle);
    answered(m_session->call("PUT", path + "/files/0?offset=" + offset, bytes.mid(middle)), 200);
    const HttpReply done = m_session->commit(path, sum);
    made.insert(answered(done, 201).json().value(QLatin1String("guid")).toString());
}

void AudienceWriter::report(const QByteArray &what, const QByteArray &body)
{
    const auto port = static_cast<quint16>(QUrl(state().address).port());
    const HttpReply reply =
        HttpProbe::request(port, "POST", "/v1/deployments/" + m_deployment.toLatin1() + '/' + what,
                           body, {"Authorization: Deployment " + m_deployment.toLatin1()});
    if (reply.status == 0 || reply.status == 503)
        throw Interrupted();
    const QJsonObject counts = reply.json();
    const int stored =
        counts.value(QLatin1String("added")).toInt() + counts.value(QLatin1String("known")).toInt();
    if (stored != reportedRows)
        throw std::runtime_error("a report is not stored: " + reply.body.toStdString());
}

void AudienceWriter::think()
{
    constexpr qint64 at = 1'800'000'000'000;
    QJsonArray questionRows;
    QJsonArray voteRows;
    for (int i = 0; i < reportedRows; ++i) {
        const QString guid = newGuid();
        const QString user = newGuid();
        const QString text = QStringLiteral("What of %1?").arg(user);
        const int answer = 1 + i % 3;
        questionRows.append(QJsonObject{{QStringLiteral("id"), guid},
                                        {QStringLiteral("user"), user},
                                        {QStringLiteral("text"), text},
                                        {QStringLiteral("at"), at}});
        voteRows.append(QJsonObject{{QStringLiteral("id"), newGuid()},
                                    {QStringLiteral("user"), user},
                                    {QStringLiteral("poll"), m_poll},
                                    {QStringLiteral("answer"), QString::number(answer)},
                                    {QStringLiteral("at"), at}});
        m_nextTexts.insert(guid, text);
        m_nextVotes.insert(user, answer);
    }
    m_questions = rowsOf(questionRows);
    m_votes = rowsOf(voteRows);
}

void AudienceWriter::write(Client &)
{
    if (m_questions.isNull())
        think();
    report("questions", m_questions);
    report("votes", m_votes);
    {
        const QMutexLocker lock(&state().mutex);
        state().questions << m_nextTexts.keys();
    }
    texts.insert(std::exchange(m_nextTexts, {}));
    votes.insert(std::exchange(m_nextVotes, {}));
    m_questions = QByteArray();
}

void Moderator::begin(Client &client)
{
    signIn(client, maja(), brightwaterMedia);
}

void Moderator::write(Client &client)
{
    if (m_guid.isEmpty()) {
        const QMutexLocker lock(&state().mutex);
        if (state().questions.isEmpty())
            throw NothingToDo();
        m_guid = state().questions.takeFirst();
    }
    const QString answer = QStringLiteral("Answer %1").arg(++m_count);
    if (client.UpdateQuestion(m_guid, answer, QStringLiteral("Reworded"), QString(), QString()) !=
            0 ||
        client.SetQuestionStatus(m_guid, QStringLiteral("STAGED")) != 0)
        throw std::runtime_error("an acknowledged question is gone");
    answers.insert(m_guid, answer);
    m_guid.clear();
}

void SignInWriter::begin(Client &client)
{
    signIn(client, maja(), harbourLearning);
}

void SignInWriter::write(Client &)
{
    // Signed out would be no interruption.
    if (m_former && accountsOf(*m_former)->count() == 0)
        throw std::runtime_error("a session has lost its accounts");
    auto client = std::make_unique<Client>();
    signIn(*client, maja(), harbourLearning);
    m_former = std::move(client);
}

} // namespace ZelTest
