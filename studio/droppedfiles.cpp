// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/droppedfiles.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSet>

#include <algorithm>

namespace Studio {

namespace {

class Walk
{
public:
    Walk(int most, const std::function<bool()> &isCancelled)
        : m_most(most)
        , m_isCancelled(isCancelled)
        , m_byName(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale())
    {
        m_byName.setNumericMode(true); // the C locale knows none
        m_byName.setCaseSensitivity(Qt::CaseInsensitive);
    }

    void enter(QFileInfoList entries)
    {
        sort(entries);
        for (const QFileInfo &entry : std::as_const(entries)) {
            if (!entry.isDir())
                take(entry);
        }
        for (const QFileInfo &entry : std::as_const(entries)) {
            if (entry.isDir())
                enterFolder(entry);
        }
    }

    DroppedFiles found;

private:
    void sort(QFileInfoList &entries) const
    {
        std::stable_sort(entries.begin(), entries.end(),
                         [this](const QFileInfo &left, const QFileInfo &right) {
                             const int order = m_byName.compare(left.fileName(), right.fileName());
                             return order < 0 || (order == 0 && left.filePath() < right.filePath());
                         });
    }

    void take(const QFileInfo &entry)
    {
        const QString path = QDir::cleanPath(entry.absoluteFilePath());
        if (m_seen.contains(path) || isOver())
            return;
        m_seen.insert(path);
        if (!entry.exists())
            found.unreachable << path;
        else if (found.files.size() == m_most)
            found.isCut = true;
        else
            found.files << path;
    }

    void enterFolder(const QFileInfo &entry)
    {
        const QString path = entry.canonicalFilePath();
        if (isOver() || m_seen.contains(path))
            return;
        m_seen.insert(path);
        const QDir folder(entry.absoluteFilePath());
        if (!entry.isReadable() || !entry.isExecutable())
            found.unreachable << folder.path();
        else
            enter(folder.entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot));
    }

    bool isOver() const { return found.isCut || m_isCancelled(); }

    int m_most;
    const std::function<bool()> &m_isCancelled;
    QCollator m_byName;
    QSet<QString> m_seen;
};

} // namespace

DroppedFiles walkDropped(const QList<QUrl> &dropped, int most,
                         const std::function<bool()> &isCancelled)
{
    Walk walk(most, isCancelled);
    QFileInfoList entries;
    for (const QUrl &url : dropped) {
        if (url.isLocalFile())
            entries << QFileInfo(QDir::cleanPath(url.toLocalFile()));
        else
            walk.found.unreachable << url.toDisplayString();
    }
    walk.enter(entries);
    return walk.found;
}

} // namespace Studio
