// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/peoplecalls.h"

#include "service/daemon/program.h"
#include "service/store/store.h"

#include <stdexcept>

namespace Zel::Service {

void fail(const QString &sentence)
{
    throw std::runtime_error(sentence.toStdString());
}

void expectAccount(Store &store, qint64 number)
{
    if (!store.accounts.find(number))
        fail(QStringLiteral("there is no account %1.").arg(number));
}

User expectUser(Store &store, const QString &login)
{
    const auto user = store.users.find(login);
    if (!user)
        fail(QStringLiteral("there is no user \"%1\".").arg(login));
    return *user;
}

QString roleIn(const QString &text, const QString &what)
{
    static const QStringList roles{QStringLiteral("owner"), QStringLiteral("author"),
                                   QStringLiteral("viewer")};
    if (!roles.contains(text))
        throw UsageError(QStringLiteral("%1 is owner, author or viewer.").arg(what));
    return text;
}

QString oneLine(const QString &text)
{
    QString line = text;
    for (QChar &c : line) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = QLatin1Char(' ');
    }
    return line;
}

} // namespace Zel::Service
