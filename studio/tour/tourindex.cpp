// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/tourindex.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QTextStream>

namespace Studio {

namespace {

const QString listSuffix = QStringLiteral(".tourlist");

struct Picture
{
    QString file;
    QString caption;
};

QList<Picture> picturesOf(const QString &path)
{
    QFile file(path);
    QList<Picture> pictures;
    if (!file.open(QIODevice::ReadOnly))
        return pictures;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const QStringList parts = QString::fromUtf8(line).split(QLatin1Char('\t'));
        if (parts.size() == 2)
            pictures << Picture{parts.at(0), parts.at(1)};
    }
    return pictures;
}

} // namespace

void clearTourFolder(const QString &folder)
{
    QDir dir(folder);
    const QStringList old = dir.entryList(
        {QStringLiteral("[0-9][0-9]-*.png"), QLatin1Char('*') + listSuffix}, QDir::Files);
    for (const QString &file : old)
        dir.remove(file);
}

void addToTourList(const QString &folder, const QString &part, const QString &file,
                   const QString &caption)
{
    QFile list(folder + QLatin1Char('/') + part + listSuffix);
    if (list.open(QIODevice::Append))
        list.write(QStringLiteral("%1\t%2\n").arg(file, caption).toUtf8());
}

int writeTourIndex(const QString &folder)
{
    QSaveFile index(folder + QStringLiteral("/index.html"));
    if (!index.open(QIODevice::WriteOnly))
        return 0;
    QTextStream out(&index);
    out << "<!doctype html><html lang=\"en\"><meta charset=\"utf-8\"><title>Studio, a tour</title>"
           "<style>body{font-family:sans-serif;margin:2em auto;max-width:1280px;padding:0 1em;"
           "background:#f4f5f7;color:#1d2129}img{max-width:100%;border:1px solid #c9cdd4;"
           "border-radius:6px}figure{margin:0 0 2em}figcaption{margin:.5em 0}</style>"
           "<h1>Studio, a tour</h1>\n";
    int count = 0;
    const QDir dir(folder);
    const QStringList lists =
        dir.entryList({QLatin1Char('*') + listSuffix}, QDir::Files, QDir::Name);
    for (const QString &list : lists) {
        out << "<h2>" << list.chopped(listSuffix.size()).toHtmlEscaped() << "</h2>\n";
        const QList<Picture> pictures = picturesOf(dir.filePath(list));
        for (const Picture &picture : pictures) {
            out << "<figure><img src=\"" << picture.file.toHtmlEscaped() << "\" alt=\""
                << picture.caption.toHtmlEscaped() << "\"><figcaption>"
                << picture.caption.toHtmlEscaped() << "</figcaption></figure>\n";
            ++count;
        }
    }
    out << "</html>\n";
    out.flush();
    return index.commit() ? count : 0;
}

} // namespace Studio
