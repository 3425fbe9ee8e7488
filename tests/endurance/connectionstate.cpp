// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/endurance/connectionstate.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <stdexcept>

#include <sys/resource.h>

namespace ZelTest {

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// 127.0.0.1 and a port in the words of /proc/net/tcp.
QByteArray endOf(quint16 port)
{
    return "0100007F:" + QByteArray::number(port, 16).toUpper().rightJustified(4, '0');
}

} // namespace

bool hasReadAll(quint16 serverPort, quint16 clientPort)
{
    const QByteArrayList lines = contentOf(QStringLiteral("/proc/net/tcp")).split('\n');
    for (const QByteArray &line : lines) {
        // number, local end, remote end, state, "sent:received" but not yet taken
        const QByteArrayList fields = line.simplified().split(' ');
        if (fields.size() > 4 && fields.at(1) == endOf(serverPort) &&
            fields.at(2) == endOf(clientPort))
            return fields.at(4).endsWith(":00000000");
    }
    return false; // not accepted yet, or gone
}

double peakMebibytes(qint64 processId)
{
    const QByteArray status = contentOf(QStringLiteral("/proc/%1/status").arg(processId));
    const QByteArray name = "VmHWM:";
    const qsizetype at = status.indexOf(name);
    if (at < 0)
        throw std::runtime_error("there is no such process");
    return status.mid(at + name.size()).trimmed().split(' ').first().toDouble() / 1024;
}

quint64 limitProcess(qint64 processId, int resource, quint64 most)
{
    const auto id = static_cast<pid_t>(processId);
    const auto which = static_cast<__rlimit_resource>(resource);
    struct rlimit limit = {};
    if (prlimit(id, which, nullptr, &limit) != 0)
        throw std::runtime_error("a limit of a process cannot be read");
    const quint64 before = limit.rlim_cur;
    limit.rlim_cur = std::min<rlim_t>(most, limit.rlim_max);
    if (prlimit(id, which, &limit, nullptr) != 0)
        throw std::runtime_error("a limit of a process cannot be set");
    return before;
}

} // namespace ZelTest
