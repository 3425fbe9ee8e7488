// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/outputfile.h"

#include "service/store/copytarget.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <csignal>
#include <cstdio>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

using namespace Zel;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void write(const OutputFile &file, const QByteArray &bytes)
{
    QCOMPARE(::write(file.handle(), bytes.constData(), std::size_t(bytes.size())), bytes.size());
}

} // namespace

/// A file that is there whole or not at all.
class OutputFileTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void isThereWhenItIsCommitted();
    void takesNobodysPlaceUnlessTold();
    void leavesAFileThatWasFinishedMeanwhile();

private:
    QString path() const { return m_folder.filePath(QStringLiteral("backup.zel")); }

    QString part() const { return path() + QLatin1String(".part"); }

    QTemporaryDir m_folder;
};

void OutputFileTest::isThereWhenItIsCommitted()
{
    {
        const OutputFile file(path(), OutputFile::Existing::Refuse);
        write(file, "given up");
        QVERIFY(QFile::exists(part()));
        QVERIFY_THROWS_EXCEPTION(CopyError, OutputFile(path(), OutputFile::Existing::Refuse));
    }
    QVERIFY(!QFile::exists(part()));
    OutputFile file(path(), OutputFile::Existing::Refuse);
    write(file, "whole");
    QVERIFY(!QFile::exists(path()));
    file.commit();
    QCOMPARE(contentOf(path()), QByteArray("whole"));
    QVERIFY(!QFile::exists(part()));
}

void OutputFileTest::takesNobodysPlaceUnlessTold()
{
    QFile::remove(path());
    OutputFile late(path(), OutputFile::Existing::Refuse);
    write(late, "late");
    QFile early(path());
    QVERIFY(early.open(QIODevice::WriteOnly) && early.write("early") == 5);
    early.close();
    QVERIFY_THROWS_EXCEPTION(CopyError, late.commit());
    QCOMPARE(contentOf(path()), QByteArray("early"));
    QVERIFY_THROWS_EXCEPTION(CopyError, OutputFile(path(), OutputFile::Existing::Refuse));
}

/// A lease holds the second one up inside its opening, until the first one has finished.
void OutputFileTest::leavesAFileThatWasFinishedMeanwhile()
{
    QFile::remove(path());
    std::signal(SIGIO, SIG_IGN); // tells the holder of a lease
    const QByteArray partName = QFile::encodeName(part());
    const int first = ::open(partName.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    QVERIFY(first >= 0);
    QCOMPARE(::write(first, "whole", 5), 5);
    QCOMPARE(::fcntl(first, F_SETLEASE, F_WRLCK), 0);
    QByteArray seen;
    QString failure;
    std::thread second([&] {
        try {
            OutputFile file(path(), OutputFile::Existing::Replace);
            seen = contentOf(path());
            if (::write(file.handle(), "anew", 4) == 4)
                file.commit();
        } catch (const CopyError &error) {
            failure = QString::fromUtf8(error.what());
        }
    });
    // Until it is being asked for.
    for (int i = 0; i < 1000 && ::fcntl(first, F_GETLEASE) == F_WRLCK; ++i)
        QThread::msleep(10);
    const int renamed = std::rename(partName.constData(), QFile::encodeName(path()).constData());
    ::fcntl(first, F_SETLEASE, F_UNLCK);
    ::close(first);
    second.join();
    QCOMPARE(renamed, 0);
    QCOMPARE(seen, QByteArray("whole"));
    QCOMPARE(failure, QString());
    QCOMPARE(contentOf(path()), QByteArray("anew"));
    QVERIFY(!QFile::exists(part()));
}

ZEL_TEST_MAIN(OutputFileTest)
#include "tst_outputfile.moc"
