// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/passwordinput.h"

#include <QFile>

#include <cstdio>
#include <stdexcept>

#include <termios.h>
#include <unistd.h>

namespace Zel::Service {

namespace {

QString firstLine(QFile &file)
{
    QByteArray line = file.readLine();
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    return QString::fromUtf8(line);
}

/// Keeps what is typed from being shown.
class NoEcho
{
public:
    NoEcho()
    {
        m_active = isatty(STDIN_FILENO) != 0 && tcgetattr(STDIN_FILENO, &m_before) == 0;
        if (!m_active)
            return;
        termios hidden = m_before;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }

    ~NoEcho()
    {
        if (m_active)
            tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
    }

    bool isTerminal() const { return m_active; }

    NoEcho(const NoEcho &) = delete;
    NoEcho &operator=(const NoEcho &) = delete;

private:
    termios m_before{};
    bool m_active = false;
};

QString asked(const char *question, QFile &file)
{
    std::fputs(question, stderr);
    std::fflush(stderr);
    const QString line = firstLine(file);
    std::fputs("\n", stderr); // that of the line was not shown
    return line;
}

} // namespace

QString passwordFromFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(QStringLiteral("the password file %1 cannot be read: %2.")
                                     .arg(path, file.errorString())
                                     .toStdString());
    return firstLine(file);
}

QString passwordFromStandardInput()
{
    const NoEcho noEcho;
    QFile file;
    if (!file.open(stdin, QIODevice::ReadOnly))
        return QString();
    if (!noEcho.isTerminal())
        return firstLine(file);
    // What nobody can see is typed twice.
    const QString password = asked("Password: ", file);
    if (asked("Once more: ", file) != password)
        throw std::runtime_error("the two passwords differ.");
    return password;
}

} // namespace Zel::Service
