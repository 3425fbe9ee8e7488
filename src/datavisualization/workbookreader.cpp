// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/workbookreader.h"

#include <QRegularExpression>

namespace ZelDataVisualization {

namespace {

/// Within so many characters our own workbooks have opened their root element.
constexpr qsizetype HeadLength = 2'000;

} // namespace

bool isKeptWorkbook(QStringView text)
{
    static const QRegularExpression root(QStringLiteral("<Workbook\\s[^>]*>"));
    static const QRegularExpression broken(
        QStringLiteral("\\sxmlns=\"[^\"]*spreadshe[\\r\\n]+et\""));
    const QRegularExpressionMatch match = root.match(text.left(HeadLength).toString());
    return match.hasMatch() && broken.match(match.captured()).hasMatch();
}

WorkbookAnswer readWorkbook(const QString &text)
{
    return isKeptWorkbook(text) ? readKeptWorkbook(text) : readStrictWorkbook(text);
}

} // namespace ZelDataVisualization
