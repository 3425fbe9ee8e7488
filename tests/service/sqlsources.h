// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace ZelTest {

struct FoundText
{
    QString file;
    QString sql;
};

/// The source files of the service.
QStringList serviceSources();

/// Every SQL text in them.
QList<FoundText> sqlTextsInSources();

/// A file as text; empty when it cannot be read.
QString textOfFile(const QString &path);

} // namespace ZelTest
