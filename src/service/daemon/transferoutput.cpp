// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/transferoutput.h"

#include "service/daemon/program.h"
#include "service/store/blobkind.h"

namespace Zel::Service {

void printReport(const CopyReport &report)
{
    for (const TableSum &table : report.tables)
        print(QStringLiteral("%1 %2 rows  sha256 %3")
                  .arg(table.table, -20)
                  .arg(table.rows, 9)
                  .arg(table.sha256));
    print(QStringLiteral("%1 files with %2 bytes").arg(report.blobs).arg(report.blobBytes));
}

BlobKind blobKindOption(const QCommandLineParser &parser, const QString &name, BlobKind usual)
{
    if (!parser.isSet(name))
        return usual;
    const auto kind = blobKindOf(parser.value(name));
    if (!kind)
        throw UsageError(QStringLiteral("--%1 is \"files\" or \"database\".").arg(name));
    return *kind;
}

} // namespace Zel::Service
