// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/workspacereader.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <stdexcept>

namespace ZelTest {

namespace {

QByteArray readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(qPrintable(path + QLatin1String(" cannot be read")));
    return file.readAll();
}

/// Names to show by the name to sign in with.
QHash<QString, QString> namesInFolder(const QString &folder)
{
    QHash<QString, QString> names;
    const QJsonArray people =
        QJsonDocument::fromJson(readFile(folder + QLatin1String("/people.json"))).array();
    for (const QJsonValue &person : people)
        names.insert(person[QLatin1String("user")].toString(),
                     person[QLatin1String("displayName")].toString());
    return names;
}

/// The cells of a comma-separated text, line by line. Quotes may hold commas, line ends and doubled
/// quotes.
QList<QStringList> cellsOf(const QString &text)
{
    QList<QStringList> lines{{QString()}};
    bool quoted = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('"')) {
            const bool isDoubled = quoted && text.mid(i + 1, 1) == QLatin1String("\"");
            if (isDoubled)
                lines.last().last() += text.at(++i);
            else
                quoted = !quoted;
        } else if (!quoted && c == QLatin1Char(',')) {
            lines.last().append(QString());
        } else if (!quoted && c == QLatin1Char('\n')) {
            lines.append(QStringList{QString()});
        } else {
            lines.last().last() += c;
        }
    }
    if (lines.last() == QStringList{QString()})
        lines.removeLast();
    return lines;
}

void readTime(const QString &text, bool &has, QDateTime &time)
{
    has = !text.isEmpty();
    time = QDateTime::fromString(text, Qt::ISODateWithMs).toLocalTime();
    if (has && !time.isValid())
        throw std::runtime_error(qPrintable(text + QLatin1String(" is no time")));
}

ProjectInFile projectOf(const QHash<QString, QString> &cells, const QHash<QString, QString> &names)
{
    const auto cell = [&cells](const char *column) { return cells.value(QLatin1String(column)); };
    ProjectInFile project;
    project.account = cell("account").toLongLong();
    project.typeID = cell("typeID");
    QXSC::ProjectRecord &record = project.record;
    record.guid = cell("guid");
    record.name = cell("name");
    record.description = cell("description");
    readTime(cell("created"), record.hasCreated, record.created);
    readTime(cell("modified"), record.hasModified, record.modified);
    record.createdBy = names.value(cell("createdBy"));
    readTime(cell("eventDate"), record.hasEventDate, record.eventDate);
    record.published = cell("published") == QLatin1String("true");
    return project;
}

QByteArray orderKey(const ProjectInFile &project)
{
    return project.record.name.normalized(QString::NormalizationForm_KC)
               .toCaseFolded()
               .normalized(QString::NormalizationForm_KC)
               .left(200)
               .toUtf8() +
           '\0' + project.record.guid.toUtf8();
}

} // namespace

QList<ProjectInFile> projectsInFolder(const QString &folder)
{
    const QHash<QString, QString> names = namesInFolder(folder);
    const QList<QStringList> lines =
        cellsOf(QString::fromUtf8(readFile(folder + QLatin1String("/projects.csv"))));
    const QStringList columns = lines.value(0);
    QList<ProjectInFile> projects;
    for (const QStringList &line : lines.mid(1)) {
        if (line.size() != columns.size())
            throw std::runtime_error(
                qPrintable(QLatin1String("a line is no project: ") + line.join(QLatin1Char(','))));
        QHash<QString, QString> cells;
        for (qsizetype i = 0; i < columns.size(); ++i)
            cells.insert(columns.at(i), line.at(i));
        projects << projectOf(cells, names);
    }
    return projects;
}

QList<ProjectInFile> inServiceOrder(const QList<ProjectInFile> &all, qint64 account,
                                    const QString &typeID)
{
    QList<ProjectInFile> projects;
    std::copy_if(all.begin(), all.end(), std::back_inserter(projects),
                 [&](const ProjectInFile &project) {
                     return project.account == account && project.typeID == typeID;
                 });
    std::sort(projects.begin(), projects.end(), [](const ProjectInFile &a, const ProjectInFile &b) {
        return orderKey(a) < orderKey(b);
    });
    return projects;
}

} // namespace ZelTest
