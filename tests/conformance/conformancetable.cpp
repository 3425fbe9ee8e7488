// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "conformancetable.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace {

/// The kinds of lines and how many columns they have, the kind included.
struct Kind
{
    const char *name;
    qsizetype least;
    qsizetype most;
};

constexpr Kind kinds[]{
    {"property", 4, 4}, {"method", 3, 4}, {"event", 3, 4}, {"bag", 5, 5}, {"child", 5, 5},
};

} // namespace

QStringList ConformanceTable::names(const QString &folder)
{
    QStringList names = QDir(folder).entryList({QStringLiteral("*.table")}, QDir::Files);
    names.replaceInStrings(QStringLiteral(".table"), QString());
    names.sort();
    return names;
}

ConformanceTable::ConformanceTable(const QString &folder, const QString &name)
{
    QFile file(QStringLiteral("%1/%2.table").arg(folder, name));
    if (!file.open(QFile::ReadOnly | QFile::Text)) {
        m_problems << file.errorString();
        return;
    }
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (const QString &line : lines) {
        if (const QString text = line.trimmed(); !text.isEmpty() && !text.startsWith(u'#'))
            readLine(text);
    }
}

void ConformanceTable::readLine(const QString &line)
{
    static const QRegularExpression gap(QStringLiteral("\\s{2,}"));
    const QStringList columns = line.split(gap);
    for (const Kind &kind : kinds) {
        if (columns.constFirst() != QLatin1String(kind.name))
            continue;
        if (columns.size() < kind.least || columns.size() > kind.most)
            m_problems << QStringLiteral("A wrong number of columns: %1").arg(line);
        else
            m_lines << columns;
        return;
    }
    m_problems << QStringLiteral("No such kind of line: %1").arg(line);
}

QList<QStringList> ConformanceTable::lines(const QString &kind) const
{
    QList<QStringList> result;
    for (const QStringList &columns : m_lines) {
        if (columns.constFirst() == kind)
            result << columns;
    }
    return result;
}

QStringList ConformanceTable::texts(const QString &kind) const
{
    QStringList result;
    for (const QStringList &columns : lines(kind))
        result << columns.join(u' ');
    return result;
}
