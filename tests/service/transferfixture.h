// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/blobtransfer.h"
#include "service/store/database.h"
#include "service/store/workspacecopy.h"
#include "tests/service/testdatabases.h"

#include <QTemporaryDir>

#include <memory>

namespace ZelTest {

/// A database with its files, in a folder of its own.
class TransferSide
{
public:
    TransferSide(TestDatabases &databases, bool postgres, Zel::BlobKind kind);
    /// The same database again, with other files.
    TransferSide(const Zel::DatabaseAddress &address, Zel::BlobKind kind);

    /// Rows in every table up to a step and, from step 2 on, the file that they name.
    void fill(int step);
    /// As many page views, which with all else takes the database to the last step.
    void addPageViews(int count);

    QString folder() const { return m_folder.path(); }

    /// Where the file that rows name lies, when it lies in the folder.
    QString filePath() const;

    Zel::WorkspaceCopy::Side side() { return {database, *blobs}; }

private:
    QTemporaryDir m_folder;

public:
    Zel::Database database;
    std::unique_ptr<Zel::BlobStore> blobs;
};

/// The checksums of all tables but for the one that says where files are kept.
QList<Zel::TableSum> comparableSums(Zel::Database &database);

/// A sentence about what is wrong with a workspace; empty when nothing is.
QString faultsOf(TransferSide &side);

/// An address as it stands on a command line, with its password.
QString commandLineAddress(const Zel::DatabaseAddress &address);

/// The most memory this process has had since `resetPeakMemory`, in bytes.
void resetPeakMemory();
qint64 peakMemory();

} // namespace ZelTest
