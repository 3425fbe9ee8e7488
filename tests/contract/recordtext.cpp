// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/recordtext.h"

#include <QStringList>

namespace ZelTest {

namespace {

QString textOf(bool has, const QDateTime &date)
{
    // Made from the milliseconds, so that it does not depend on the local zone.
    return has ? QDateTime::fromMSecsSinceEpoch(date.toMSecsSinceEpoch(), Qt::UTC)
                     .toString(Qt::ISODateWithMs)
               : QStringLiteral("-");
}

} // namespace

QString oneLine(const QString &text)
{
    QString line;
    for (const QChar c : text) {
        const bool isUnseen =
            c.category() == QChar::Other_Control || c.category() == QChar::Other_Format ||
            c.category() == QChar::Separator_Line || c.category() == QChar::Separator_Paragraph;
        if (c == QLatin1Char('\\') || c == QLatin1Char('|') || isUnseen)
            line += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else
            line += c;
    }
    return line;
}

QString textOf(const QXSC::ProjectRecord &project)
{
    return QStringList{project.guid,
                       oneLine(project.name),
                       oneLine(project.description),
                       textOf(project.hasCreated, project.created),
                       textOf(project.hasModified, project.modified),
                       oneLine(project.createdBy),
                       textOf(project.hasEventDate, project.eventDate),
                       project.published ? QStringLiteral("published")
                                         : QStringLiteral("not published")}
        .join(QLatin1String(" | "));
}

} // namespace ZelTest
