// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/resultsfile.h"

#include "stats/resultsfilewriters.h"
#include "stats/workbooklayout.h"

#include <QCoreApplication>
#include <QSaveFile>

using Zel::RuntimeError;

namespace ZelWebServiceControls {

namespace {

// What a sheet of today's spreadsheet programs holds.
constexpr qsizetype mostRows = 1048576;
constexpr qsizetype mostColumns = 16384;

QString tr(const char *text)
{
    return QCoreApplication::translate("ResultsFile", text);
}

void requireRoom(const WorkbookLayout &layout)
{
    if (layout.rows() > mostRows || layout.columns() > mostColumns) {
        throw RuntimeError(RuntimeError::InvalidProcedureCall,
                           tr("The results need %1 rows and %2 columns; a spreadsheet has %3 and "
                              "%4. Save them as .csv instead.")
                               .arg(layout.rows())
                               .arg(layout.columns())
                               .arg(mostRows)
                               .arg(mostColumns));
    }
}

bool write(const ResultsModels &models, const WorkbookLayout &layout, ResultsFormat format,
           QIODevice &device)
{
    switch (format) {
    case ResultsFormat::Xml:
        return writeXmlResults(models, layout, device);
    case ResultsFormat::Xlsx:
        return writeXlsxResults(models, layout, device);
    case ResultsFormat::Csv:
        break;
    }
    return writeCsvResults(models, layout, device);
}

} // namespace

ResultsFormat resultsFormat(const QString &fileName)
{
    if (fileName.endsWith(QLatin1String(".xml"), Qt::CaseInsensitive))
        return ResultsFormat::Xml;
    if (fileName.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive))
        return ResultsFormat::Csv;
    return ResultsFormat::Xlsx;
}

void saveResults(const ResultsModels &models, const QString &fileName, ResultsFormat format)
{
    const WorkbookLayout layout = workbookLayout(models);
    if (format != ResultsFormat::Csv)
        requireRoom(layout);
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || !write(models, layout, format, file) ||
        !file.commit()) {
        throw RuntimeError(
            RuntimeError::PathFileAccess,
            tr("The results could not be saved as %1: %2").arg(fileName, file.errorString()));
    }
}

} // namespace ZelWebServiceControls
