// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

/// A file <Name>.table, read: the lines of each kind with their columns. The format is in
/// README.md.
class ConformanceTable
{
public:
    /// The tables of a folder by the names of their controls, sorted.
    static QStringList names(const QString &folder);

    /// Reads `<folder>/<name>.table`.
    ConformanceTable(const QString &folder, const QString &name);

    /// What is wrong with the file itself, a sentence each.
    QStringList problems() const { return m_problems; }

    /// The lines of a kind, each with its columns, the kind first.
    QList<QStringList> lines(const QString &kind) const;
    /// The same with the columns joined again, one blank between them.
    QStringList texts(const QString &kind) const;

private:
    void readLine(const QString &line);

    QList<QStringList> m_lines;
    QStringList m_problems;
};
