// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/contract/contracttest.h"

#include <QHash>
#include <QMap>
#include <QMutex>
#include <QRandomGenerator>
#include <QSet>
#include <QTemporaryDir>
#include <QThread>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace ZelTest {

class RawSession;

/// What all writers of a test share.
struct WritersState
{
    QString address; ///< of the service
    std::atomic_bool ending = false;
    std::atomic_int acknowledged = 0;
    std::atomic_int interrupted = 0;
    QMutex mutex;
    QStringList faults;    ///< failures that no interruption explains
    QStringList questions; ///< acknowledged ones, for the moderator
};

/// Writes without a pause, in a thread of its own, until it is told to end. A call that fails as an
/// interruption may make it fail is made again until the service acknowledges it; any other failure
/// is a fault and ends the writer.
class StubbornWriter
{
public:
    explicit StubbornWriter(WritersState &state)
        : m_state(state)
    {
    }

    virtual ~StubbornWriter() { wait(); }

    StubbornWriter(const StubbornWriter &) = delete;
    StubbornWriter &operator=(const StubbornWriter &) = delete;

    void start();

    /// After `ending` was set.
    void wait();

protected:
    /// One thing that the service acknowledges. Called again when it failed.
    virtual void write(Client &client) = 0;

    /// Signs in, again and again until it works.
    void signIn(Client &client, const Person &person, qint64 account);
    virtual void begin(Client &client) = 0;

    WritersState &state() { return m_state; }

private:
    void work();
    /// Whether it was done: there may be nothing left to do when all end.
    bool untilDone(const std::function<void()> &call);

    WritersState &m_state;
    std::unique_ptr<QThread> m_thread;
};

/// Makes projects.
class ProjectWriter : public StubbornWriter
{
public:
    using StubbornWriter::StubbornWriter;

    ~ProjectWriter() override { wait(); }

    QMap<QString, QString> made; ///< text of the record by guid

protected:
    void begin(Client &client) override;
    void write(Client &client) override;

private:
    std::optional<QXSC::NewProject> m_next;
};

/// Makes folders. One whose answer was lost is left alone, because its call cannot be repeated.
class FolderWriter : public StubbornWriter
{
public:
    using StubbornWriter::StubbornWriter;

    ~FolderWriter() override { wait(); }

    QMap<qint16, QString> made;

protected:
    void begin(Client &client) override;
    void write(Client &client) override;
};

/// Uploads assets of two files through the client, named by the checksums of their bytes.
class AssetWriter : public StubbornWriter
{
public:
    AssetWriter(WritersState &state, quint32 seed)
        : StubbornWriter(state)
        , m_random(seed)
    {
    }

    ~AssetWriter() override { wait(); }

    QSet<QString> made; ///< guids

    /// The name of an asset with these files.
    static QString nameFor(const QByteArrayList &files);

protected:
    void begin(Client &client) override;
    void write(Client &client) override;

private:
    QString newFile(const QByteArray &bytes);

    QRandomGenerator m_random;
    QTemporaryDir m_folder;
    int m_count = 0;
};

/// Uploads assets of one file in two pieces, call by call: a client's pauses after a lost
/// connection would leave little to interrupt. An upload that was interrupted is given up.
class PieceWriter : public StubbornWriter
{
public:
    PieceWriter(WritersState &state, quint32 seed)
        : StubbornWriter(state)
        , m_random(seed)
    {
    }

    ~PieceWriter() override;

    QSet<QString> made; ///< guids

protected:
    void begin(Client &client) override;
    void write(Client &client) override;

private:
    QRandomGenerator m_random;
    std::unique_ptr<RawSession> m_session;
};

/// Reports what the audience of a deployment asks and votes.
class AudienceWriter : public StubbornWriter
{
public:
    AudienceWriter(WritersState &state, const QString &deployment, const QString &poll)
        : StubbornWriter(state)
        , m_deployment(deployment)
        , m_poll(poll)
    {
    }

    ~AudienceWriter() override { wait(); }

    QHash<QString, QString> texts; ///< of questions, by guid
    QHash<QString, int> votes;     ///< the number of the answer by user

protected:
    void begin(Client &) override {}

    void write(Client &client) override;

private:
    void think();
    void report(const QByteArray &what, const QByteArray &body);

    QString m_deployment;
    QString m_poll;
    QByteArray m_questions;
    QByteArray m_votes;
    QHash<QString, QString> m_nextTexts;
    QHash<QString, int> m_nextVotes;
};

/// Answers questions that are there and lets them through.
class Moderator : public StubbornWriter
{
public:
    using StubbornWriter::StubbornWriter;

    ~Moderator() override { wait(); }

    QHash<QString, QString> answers; ///< by guid; each of these is staged

protected:
    void begin(Client &client) override;
    void write(Client &client) override;

private:
    QString m_guid;
    int m_count = 0;
};

/// Signs in, and finds its session again later.
class SignInWriter : public StubbornWriter
{
public:
    using StubbornWriter::StubbornWriter;

    ~SignInWriter() override { wait(); }

protected:
    void begin(Client &client) override;
    void write(Client &client) override;

private:
    std::unique_ptr<Client> m_former;
};

} // namespace ZelTest
