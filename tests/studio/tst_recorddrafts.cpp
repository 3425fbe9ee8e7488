// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/recorddrafts.h"
#include "testsupport/testcase.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using Studio::RecordDraft;
using Studio::RecordDrafts;

namespace {

const QStringList maja{QStringLiteral("https://one"), QStringLiteral("maja"),
                       QStringLiteral("Aurora")};

RecordDraft draft(const QString &theme, int minute = 0)
{
    RecordDraft result;
    result.themeGuid = theme;
    result.themeName = theme + QStringLiteral(" \"name\"");
    result.kept = QDateTime(QDate(2026, 3, 1), QTime(9, minute), Qt::UTC);
    result.entries = {
        {QStringLiteral("Title"),
         QStringLiteral("TEXT"),
         {QStringLiteral("old"), {}, {}},
         {QStringLiteral("new\r\n\t\u2028\U0001F600"), QStringLiteral("g"), QStringLiteral("d")}}};
    return result;
}

/// Keeps a draft as a Studio that has ended since did.
void keepAndEnd(const RecordDrafts &drafts, const RecordDraft &kept)
{
    QCOMPARE(drafts.begin()->keep(kept), QString());
}

} // namespace

/// Drafts on disk.
class TestRecordDrafts : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        m_home = std::make_unique<QTemporaryDir>();
        m_folder = m_home->filePath(QStringLiteral("drafts"));
    }

    void aDraftComesBackAsItWasKept()
    {
        RecordDrafts drafts(m_folder);
        drafts.setOwner(maja);
        QVERIFY(drafts.waiting().isEmpty());
        keepAndEnd(drafts, draft("Stage"));
        const QList<RecordDraft> found = drafts.waiting();
        QCOMPARE(found.size(), 1);
        QCOMPARE(found.at(0).themeGuid, QStringLiteral("Stage"));
        QCOMPARE(found.at(0).themeName, draft("Stage").themeName);
        QCOMPARE(found.at(0).kept, draft("Stage").kept);
        QCOMPARE(found.at(0).entries, draft("Stage").entries);
        QCOMPARE(drafts.waiting().size(), 1);
    }

    void theNewestComesFirst()
    {
        RecordDrafts drafts(m_folder);
        drafts.setOwner(maja);
        keepAndEnd(drafts, draft("Old", 1));
        keepAndEnd(drafts, draft("New", 3));
        keepAndEnd(drafts, draft("Middle", 2));
        QStringList themes;
        const QList<RecordDraft> waiting = drafts.waiting();
        for (const RecordDraft &found : waiting)
            themes << found.themeGuid;
        QCOMPARE(themes, (QStringList{"New", "Middle", "Old"}));
    }

    void draftsBelongToAPersonAServerAndAnAccount()
    {
        RecordDrafts drafts(m_folder);
        drafts.setOwner(maja);
        keepAndEnd(drafts, draft("Stage"));
        for (int i = 0; i < 3; ++i) {
            QStringList other = maja;
            other[i] += QLatin1Char('x');
            drafts.setOwner(other);
            QVERIFY(drafts.waiting().isEmpty());
        }
        drafts.setOwner(maja);
        QCOMPARE(drafts.waiting().size(), 1);
    }

    void theDraftBeingEditedIsNotOffered()
    {
        RecordDrafts drafts(m_folder);
        drafts.setOwner(maja);
        auto file = drafts.begin();
        QCOMPARE(file->keep(draft("Stage", 1)), QString());
        QVERIFY(drafts.waiting().isEmpty());
        QCOMPARE(file->keep(draft("Stage", 2)), QString());
        file.reset();
        QCOMPARE(drafts.waiting().size(), 1);
        QCOMPARE(drafts.waiting().at(0).kept, draft("Stage", 2).kept);
    }

    void theDraftOfAProcessThatWasKilledIsOffered()
    {
        const pid_t editor = ::fork();
        if (editor == 0) {
            RecordDrafts drafts(m_folder);
            drafts.setOwner(maja);
            const auto file = drafts.begin();
            if (!file->keep(draft("Stage")).isEmpty())
                ::_exit(1);
            ::kill(::getpid(), SIGKILL);
        }
        int status = 0;
        QCOMPARE(::waitpid(editor, &status, 0), editor);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(QDir(m_folder).entryList({"*.lock"}).size(), 1);
        RecordDrafts drafts(m_folder);
        drafts.setOwner(maja);
        QCOMPARE(drafts.waiting().size(), 1);
    }

    void removingAndDiscardingLeaveNothing()
    {
        RecordDrafts drafts(m_folder);
        drafts.setOwner(maja);
        auto file = drafts.begin();
        file->remove(); // nothing was kept yet
        QCOMPARE(file->keep(draft("Stage")), QString());
        file->remove();
        file.reset();
        QVERIFY(drafts.waiting().isEmpty());
        keepAndEnd(drafts, draft("Other"));
        RecordDrafts::discard(drafts.waiting().at(0));
        QVERIFY(drafts.waiting().isEmpty());
        QVERIFY(QDir(m_folder).isEmpty());
    }

    void onlyThePersonMayReadIt()
    {
        RecordDrafts drafts(m_folder);
        drafts.setOwner(maja);
        keepAndEnd(drafts, draft("Stage"));
        const QFile::Permissions others =
            QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
        QVERIFY(!(QFile::permissions(drafts.waiting().at(0).file) & others));
    }

    void unreadableFilesAreLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut off") << QByteArray("{\"format\":1,\"theme\":\"St");
        QTest::newRow("another format") << QByteArray(R"({"format":2,"entries":[]})");
        QTest::newRow("no entries")
            << QByteArray(R"({"format":1,"theme":"a","kept":"2026-03-01T09:00:00.000Z"})");
        QTest::newRow("no date") << QByteArray(R"({"format":1,"theme":"a","entries":[{}]})");
        QTest::newRow("not an object") << QByteArray("[1]");
    }

    void unreadableFilesAreLeftAlone()
    {
        QFETCH(QByteArray, content);
        RecordDrafts drafts(m_folder);
        drafts.setOwner(maja);
        keepAndEnd(drafts, draft("Stage"));
        const QString path = drafts.waiting().at(0).file;
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("draft .* cannot be read"));
        QVERIFY(drafts.waiting().isEmpty());
        QVERIFY(QFile::exists(path));
    }

    void aFolderThatCannotBeMadeIsSaid()
    {
        QFile file(m_folder); // a file is in the way
        QVERIFY(file.open(QIODevice::WriteOnly));
        RecordDrafts drafts(m_folder);
        drafts.setOwner(maja);
        const QString problem = drafts.begin()->keep(draft("Stage"));
        QVERIFY2(problem.contains(m_folder), qPrintable(problem));
    }

private:
    std::unique_ptr<QTemporaryDir> m_home;
    QString m_folder;
};

ZEL_TEST_MAIN(TestRecordDrafts)
#include "tst_recorddrafts.moc"
