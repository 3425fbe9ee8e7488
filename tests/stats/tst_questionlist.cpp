// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/qadialog.h"
#include "statsfixture.h"
#include "testsupport/localefixture.h"
#include "testsupport/testcase.h"

#include <QLabel>
#include <QPlainTextEdit>

using QXSC::QuestionRecord;
using ZelWebServiceControls::QADialog;

namespace {

const QString upToNow = QStringLiteral("GetQuestions(\"d1\", \"2007-01-09T08:00:00\", \"\")");

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(u'|');
}

QString status(const char *guid, const char *state)
{
    return QStringLiteral("SetQuestionStatus(\"%1\", \"%2\")")
        .arg(QLatin1String(guid), QLatin1String(state));
}

/// A question of person 1 with texts, stored escaped.
QuestionRecord asked(const char *guid, const char *text = "Why?", const char *answer = "")
{
    QuestionRecord record = question(QLatin1String(guid), QStringLiteral("NEW"));
    record.User = person(1);
    record.QuestionText = QString::fromLatin1(text);
    record.AnswerText = QString::fromLatin1(answer);
    return record;
}

/// A question as it is in a state.
QuestionRecord inState(const char *guid, const char *state)
{
    QuestionRecord record = asked(guid);
    record.Status = QString::fromLatin1(state);
    return record;
}

QADialog &dialog()
{
    return Zel::sharedForm<QADialog>();
}

QPlainTextEdit &box(const char *name)
{
    return *dialog().findChild<QPlainTextEdit *>(QLatin1String(name));
}

void pressInDialog(const char *button)
{
    QTest::mouseClick(dialog().findChild<QPushButton *>(QLatin1String(button)), Qt::LeftButton);
}

/// A control whose tab of questions is shown, with these questions.
struct QuestionFixture : StatsFixture
{
    explicit QuestionFixture(const QList<QuestionRecord> &records = {asked("q1"), asked("q2")})
    {
        client.questions = ZelTest::recordList<QuestionRecord>(records);
        load();
        clickTab(Questions);
        takeTrail();
    }

    Zel::ListView &questions() const { return list("qaListView"); }

    void select(qsizetype row) const { ListTesting::click(questions(), row); }

    QString selected() const
    {
        const qsizetype row = questions().selectedRow();
        return row < 0 ? QString()
                       : questions().tag(row).value<QXSC::QuestionRecordPtr>()->QuestionGuid;
    }

    /// Clicks Answer and does something in the editor that comes up.
    void answer(const std::function<void()> &inEditor)
    {
        bool shown = false;
        QTimer::singleShot(0, qApp, [&] {
            shown = dialog().isVisible();
            inEditor();
        });
        click("replyCmd");
        QVERIFY(shown);
    }

    QStringList cells(qsizetype row) const
    {
        QStringList texts;
        for (int column = 0; column < questions().columnCount(); ++column)
            texts << questions().text(row, column);
        return texts;
    }
};

} // namespace

/// The tab "Q and A".
class tst_QuestionList : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void captionsAreThoseHostsKnow();
    void statesAreShownAsHostsKnowThem_data();
    void statesAreShownAsHostsKnowThem();
    void aQuestionShowsEverything();
    void datesThatAreNotSetAreEmpty();
    void textsAreUnescapedOnce();
    void aQuestionOfNobodyIsALine();
    void linesKeepTheirRecordsAndOrder();
    void theTabStripGivesTheEnd();
    void refreshLeavesTheEndOut();
    void anAnswerOfNothingLeavesTheListEmpty();
    void aRefreshThatFailsLeavesTheListClear();

    void answeringSendsBothTextsAndStages();
    void theEditorGetsUnescapedTexts();
    void theSenderIsTheEmailOrTheUser();
    void aTextNotTouchedIsSentAsItCame();
    void cancelSendsNothingButRefreshes();
    void answeringNothingRefreshes();
    void aFailingUpdateStagesNothing();
    void aFailingStatusRefreshesNothing();
    void whatTheServiceReturnsIsNotLookedAt();
    void yieldsAfterTheEditor();
    void theEditorMayBeUsedAgainInTheYield();
    void survivesBeingDestroyedUnderTheEditor();
    void survivesBeingDestroyedInTheYield();
    void survivesBeingDestroyedInACall_data();
    void survivesBeingDestroyedInACall();

    void retractingRefreshes();
    void retractingNothingRefreshes();
    void aFailingRetractRefreshesNothing();

    void deletingAsksFirst();
    void answeringNoChangesNothing_data();
    void answeringNoChangesNothing();
    void deletingNothingAsksAndRefreshes();
    void survivesBeingDestroyedUnderTheQuestion();

    void anyStateMayBeChangedAgain();
    void theSecondModeratorSeesTheNewerState();
    void mnemonicsWorkInTheTab();
    void mnemonicsDoNothingInOtherTabs();
    void aHugeQuestionIsShownAndKept();
    void headersSortNothing();
    void aHostMaySortByTime();
};

void tst_QuestionList::captionsAreThoseHostsKnow()
{
    QuestionFixture f;
    QStringList captions;
    for (int column = 0; column < f.questions().columnCount(); ++column)
        captions << f.questions().columnCaption(column);
    QCOMPARE(captions, words("Status|User ID|First Name|Last Name|Email|Question|Answer|"
                             "Submitted|Answered"));
    QCOMPARE(f.child<QPushButton>("replyCmd").text(), QStringLiteral("Answer"));
    QCOMPARE(f.child<QPushButton>("retractCmd").text(), QStringLiteral("Retract"));
    QCOMPARE(f.child<QPushButton>("deleteCmd").text(), QStringLiteral("Delete"));
    QCOMPARE(f.child<QPushButton>("refreshCmd").text(), QStringLiteral("Refresh"));
}

void tst_QuestionList::statesAreShownAsHostsKnowThem_data()
{
    QTest::addColumn<QByteArray>("state");
    QTest::addColumn<QString>("shown");
    QTest::newRow("published") << QByteArray("PUBLISH") << QStringLiteral("PUBLISHED");
    QTest::newRow("answered") << QByteArray("ANSWERED") << QString();
    QTest::newRow("staged") << QByteArray("STAGED") << QStringLiteral("STAGED");
    QTest::newRow("retracted") << QByteArray("RETRACT") << QStringLiteral("RETRACT");
    QTest::newRow("deleted") << QByteArray("DELETE") << QStringLiteral("DELETE");
    QTest::newRow("none") << QByteArray() << QString();
    QTest::newRow("another") << QByteArray("Publish") << QStringLiteral("Publish");
}

void tst_QuestionList::statesAreShownAsHostsKnowThem()
{
    QFETCH(QByteArray, state);
    QFETCH(QString, shown);
    QuestionFixture f({inState("q1", state.constData())});
    QCOMPARE(f.questions().text(0, 0), shown);
}

void tst_QuestionList::aQuestionShowsEverything()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    QuestionRecord record = asked("q1", "Why?", "So.");
    record.Submitted = onNinth(9, 30);
    record.Answered = onNinth(15);
    record.SubmittedSpecified = record.AnsweredSpecified = true;
    QuestionFixture f({record});
    QCOMPARE(f.cells(0), words("NEW|u1|First1|Last1|u1@example.org|Why?|So.|1/9/2007 9:30:00 AM|"
                               "1/9/2007 3:00:00 PM"));
}

void tst_QuestionList::datesThatAreNotSetAreEmpty()
{
    QuestionRecord record = asked("q1");
    record.Submitted = record.Answered = onNinth(9);
    QuestionFixture f({record});
    QCOMPARE(f.questions().text(0, 7), QString());
    QCOMPARE(f.questions().text(0, 8), QString());
}

void tst_QuestionList::textsAreUnescapedOnce()
{
    QuestionFixture f(
        {asked("q1", "a &lt;b&gt; &amp; &quot;c&quot; &apos;", "&amp;amp; &amp;lt;")});
    QCOMPARE(f.questions().text(0, 5), QStringLiteral("a <b> & \"c\" '"));
    QCOMPARE(f.questions().text(0, 6), QStringLiteral("&amp; <"));
}

void tst_QuestionList::aQuestionOfNobodyIsALine()
{
    QuestionRecord record = asked("q1");
    record.User = nullptr;
    QuestionFixture f({record});
    QCOMPARE(f.cells(0), words("NEW|||||Why?|||"));
    f.select(0);
    f.answer([] {
        QCOMPARE(dialog().findChild<QLabel *>(QStringLiteral("userName"))->text(),
                 QStringLiteral("from: "));
        pressInDialog("CancelButton");
    });
}

void tst_QuestionList::linesKeepTheirRecordsAndOrder()
{
    QuestionFixture f({asked("q3"), asked("q1"), asked("q2")});
    for (qsizetype row = 0; row < 3; ++row)
        QCOMPARE(f.questions().tag(row).value<QXSC::QuestionRecordPtr>(),
                 f.client.questions->item(row + 1));
    QCOMPARE(f.questions().rowAt(0), 0);
}

void tst_QuestionList::theTabStripGivesTheEnd()
{
    QuestionFixture f;
    const QString whole =
        QStringLiteral("GetQuestions(\"d1\", \"2007-01-09T08:00:00\", \"2007-01-09T18:00:00\")");
    f.clickTab(Participants);
    f.click(f.run());
    f.takeTrail();
    f.clickTab(Questions);
    QCOMPARE(f.takeTrail(), QStringList{whole});
    f.click(f.run());
    QCOMPARE(f.takeTrail().constLast(), whole);
}

void tst_QuestionList::refreshLeavesTheEndOut()
{
    QuestionFixture f;
    f.client.questions = ZelTest::recordList<QuestionRecord>({asked("q9")});
    f.click("refreshCmd");
    QCOMPARE(f.takeTrail(), QStringList{upToNow});
    QCOMPARE(f.questions().count(), 1);
}

void tst_QuestionList::anAnswerOfNothingLeavesTheListEmpty()
{
    QuestionFixture f;
    f.client.questions = nullptr;
    f.click("refreshCmd");
    QCOMPARE(f.questions().count(), 0);
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_QuestionList::aRefreshThatFailsLeavesTheListClear()
{
    QuestionFixture f;
    f.client.failNext(QStringLiteral("GetQuestions"), Zel::RuntimeError(5));
    f.click("refreshCmd");
    QCOMPARE(f.takeTrail(), QStringList({upToNow, QStringLiteral("error 5")}));
    QCOMPARE(f.questions().count(), 0);
    QCOMPARE(f.questions().emptyText(), QString());
    f.client.questions = nullptr;
    f.click("refreshCmd");
    QCOMPARE(f.questions().emptyText(), QStringLiteral("No questions"));
}

void tst_QuestionList::answeringSendsBothTextsAndStages()
{
    QuestionFixture f({asked("q1"), asked("q2", "Wen?", "so")});
    f.select(1);
    f.answer([] {
        box("answerTxt").selectAll();
        QTest::keyClicks(&box("answerTxt"), QStringLiteral("At <noon> & later"));
        box("questionTxt").selectAll();
        QTest::keyClicks(&box("questionTxt"), QStringLiteral("When?"));
        pressInDialog("OKButton");
    });
    const QStringList expected{
        QStringLiteral("UpdateQuestion(\"q2\", \"At <noon> & later\", \"When?\", \"\", \"\")"),
        status("q2", "STAGED"), upToNow};
    QCOMPARE(f.takeTrail(), expected);
}

void tst_QuestionList::theEditorGetsUnescapedTexts()
{
    QuestionFixture f({asked("q1", "1 &lt; 2 &amp;amp;", "&quot;yes&quot;")});
    f.select(0);
    f.answer([] {
        QCOMPARE(box("questionTxt").toPlainText(), QStringLiteral("1 < 2 &amp;"));
        QCOMPARE(box("answerTxt").toPlainText(), QStringLiteral("\"yes\""));
        pressInDialog("OKButton");
    });
    QCOMPARE(f.trail.constFirst(), QStringLiteral("UpdateQuestion(\"q1\", \"\"yes\"\", "
                                                  "\"1 < 2 &amp;\", \"\", \"\")"));
}

void tst_QuestionList::theSenderIsTheEmailOrTheUser()
{
    QuestionRecord anonymous = asked("q2");
    QXSC::StatsUser user = *person(2);
    user.Email.clear();
    anonymous.User = std::make_shared<QXSC::StatsUser>(user);
    QuestionFixture f({asked("q1"), anonymous});
    const auto sender = [&f](qsizetype row) {
        QString text;
        f.select(row);
        f.answer([&text] {
            text = dialog().findChild<QLabel *>(QStringLiteral("userName"))->text();
            pressInDialog("CancelButton");
        });
        return text;
    };
    QCOMPARE(sender(0), QStringLiteral("from: u1@example.org"));
    QCOMPARE(sender(1), QStringLiteral("from: u2"));
}

void tst_QuestionList::aTextNotTouchedIsSentAsItCame()
{
    QuestionFixture f({asked("q1", "a\r\nb\rc\nd", "e\r\n")});
    f.select(0);
    f.answer([] { pressInDialog("OKButton"); });
    QCOMPARE(f.trail.constFirst(),
             QStringLiteral("UpdateQuestion(\"q1\", \"e\r\n\", \"a\r\nb\rc\nd\", \"\", \"\")"));
}

void tst_QuestionList::cancelSendsNothingButRefreshes()
{
    QuestionFixture f;
    f.select(0);
    f.answer([] {
        QTest::keyClicks(&box("answerTxt"), QStringLiteral("no"));
        pressInDialog("CancelButton");
    });
    QCOMPARE(f.takeTrail(), QStringList{upToNow});
}

void tst_QuestionList::answeringNothingRefreshes()
{
    QuestionFixture f;
    f.click("replyCmd");
    QCOMPARE(f.takeTrail(), QStringList{upToNow});
}

void tst_QuestionList::aFailingUpdateStagesNothing()
{
    QuestionFixture f;
    f.select(0);
    f.client.failNext(QStringLiteral("UpdateQuestion"), Zel::RuntimeError(5));
    f.answer([] { pressInDialog("OKButton"); });
    QCOMPARE(f.trail.size(), 2);
    QCOMPARE(f.trail.constLast(), QStringLiteral("error 5"));
    QCOMPARE(f.questions().count(), 2);
    QCOMPARE(f.selected(), QStringLiteral("q1"));
}

void tst_QuestionList::aFailingStatusRefreshesNothing()
{
    QuestionFixture f;
    f.select(0);
    f.client.failNext(QStringLiteral("SetQuestionStatus"), Zel::RuntimeError(5));
    f.answer([] { pressInDialog("OKButton"); });
    QCOMPARE(f.trail.mid(1), QStringList({status("q1", "STAGED"), QStringLiteral("error 5")}));
    QCOMPARE(f.questions().count(), 2);
}

void tst_QuestionList::whatTheServiceReturnsIsNotLookedAt()
{
    QuestionFixture f;
    f.client.questionResult = 1;
    f.select(0);
    f.answer([] { pressInDialog("OKButton"); });
    QCOMPARE(f.takeOperations(), words("UpdateQuestion|SetQuestionStatus|GetQuestions"));
    f.select(0);
    f.click("retractCmd");
    QCOMPARE(f.takeOperations(), words("SetQuestionStatus|GetQuestions"));
}

void tst_QuestionList::yieldsAfterTheEditor()
{
    QuestionFixture f;
    f.select(0);
    f.answer([&f] {
        pressInDialog("OKButton");
        f.inTheYield([&f] { f.trail << QStringLiteral("yield"); });
    });
    QCOMPARE(f.takeOperations(), words("yield|UpdateQuestion|SetQuestionStatus|GetQuestions"));
}

void tst_QuestionList::theEditorMayBeUsedAgainInTheYield()
{
    QuestionFixture f;
    f.select(0);
    f.answer([&f] {
        QTest::keyClicks(&box("answerTxt"), QStringLiteral("first"));
        pressInDialog("OKButton");
        f.inTheYield([&f] {
            f.select(1);
            f.answer([] {
                QTest::keyClicks(&box("answerTxt"), QStringLiteral("second"));
                pressInDialog("CancelButton");
            });
        });
    });
    const QStringList expected{
        upToNow, QStringLiteral("UpdateQuestion(\"q1\", \"first\", \"Why?\", \"\", \"\")"),
        status("q1", "STAGED"), upToNow};
    QCOMPARE(f.takeTrail(), expected);
}

void tst_QuestionList::survivesBeingDestroyedUnderTheEditor()
{
    QuestionFixture f;
    f.select(0);
    QTimer::singleShot(0, qApp, [&f] {
        delete f.stats;
        dialog().accept();
    });
    QMetaObject::invokeMethod(&f.child<QPushButton>("replyCmd"), "clicked", Qt::QueuedConnection);
    QTRY_VERIFY(!f.stats);
    QTRY_VERIFY(!dialog().isVisible());
    QCOMPARE(f.trail, QStringList());
}

void tst_QuestionList::survivesBeingDestroyedInTheYield()
{
    QuestionFixture f;
    f.select(0);
    QMetaObject::invokeMethod(&f.child<QPushButton>("replyCmd"), "clicked", Qt::QueuedConnection);
    QTimer::singleShot(50, qApp, [&f] {
        pressInDialog("OKButton");
        f.inTheYield([&f] { delete f.stats; });
    });
    QTRY_VERIFY(!f.stats);
    QCOMPARE(f.trail, QStringList());
}

void tst_QuestionList::survivesBeingDestroyedInACall_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QString>("operation");
    QTest::newRow("refresh") << QByteArray("refreshCmd") << QStringLiteral("GetQuestions");
    QTest::newRow("retract") << QByteArray("retractCmd") << QStringLiteral("SetQuestionStatus");
    QTest::newRow("delete") << QByteArray("deleteCmd") << QStringLiteral("SetQuestionStatus");
    QTest::newRow("update") << QByteArray("replyCmd") << QStringLiteral("UpdateQuestion");
    QTest::newRow("stage") << QByteArray("replyCmd") << QStringLiteral("SetQuestionStatus");
}

void tst_QuestionList::survivesBeingDestroyedInACall()
{
    QFETCH(QByteArray, button);
    QFETCH(QString, operation);
    QuestionFixture f;
    f.select(0);
    f.atCall = [&](const QString &call) {
        if (call.startsWith(operation))
            delete f.stats;
    };
    f.boxes.click(QMessageBox::Yes);
    if (button == "replyCmd")
        QTimer::singleShot(50, qApp, [] { pressInDialog("OKButton"); });
    QMetaObject::invokeMethod(&f.child<QPushButton>(button.constData()), "clicked",
                              Qt::QueuedConnection);
    QTRY_VERIFY(!f.stats);
    QVERIFY(f.trail.constLast().startsWith(operation));
}

void tst_QuestionList::retractingRefreshes()
{
    QuestionFixture f;
    f.select(1);
    f.click("retractCmd");
    QCOMPARE(f.takeTrail(), QStringList({status("q2", "RETRACT"), upToNow}));
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_QuestionList::retractingNothingRefreshes()
{
    QuestionFixture f;
    f.click("retractCmd");
    QCOMPARE(f.takeTrail(), QStringList{upToNow});
}

void tst_QuestionList::aFailingRetractRefreshesNothing()
{
    QuestionFixture f;
    f.select(0);
    f.client.failNext(QStringLiteral("SetQuestionStatus"), Zel::RuntimeError(5));
    f.click("retractCmd");
    QCOMPARE(f.takeTrail(), QStringList({status("q1", "RETRACT"), QStringLiteral("error 5")}));
    QCOMPARE(f.questions().count(), 2);
}

void tst_QuestionList::deletingAsksFirst()
{
    QuestionFixture f;
    f.select(1);
    f.boxes.click(QMessageBox::Yes);
    f.click("deleteCmd");
    QCOMPARE(f.boxes.shown().size(), 1);
    const auto shown = f.boxes.shown().constFirst();
    QCOMPARE(shown.title, QStringLiteral("Confirm Deletion"));
    QCOMPARE(shown.text, QStringLiteral("Are you sure you want to delete this question from the "
                                        "list? This action cannot be reversed."));
    QCOMPARE(shown.buttons, QMessageBox::Yes | QMessageBox::No);
    QCOMPARE(shown.defaultButton, QMessageBox::No);
    QCOMPARE(f.takeTrail(), QStringList({status("q2", "DELETE"), upToNow}));
}

void tst_QuestionList::answeringNoChangesNothing_data()
{
    QTest::addColumn<bool>("escape");
    QTest::newRow("No") << false;
    QTest::newRow("Esc") << true;
}

void tst_QuestionList::answeringNoChangesNothing()
{
    QFETCH(bool, escape);
    QuestionFixture f;
    f.select(0);
    if (escape)
        f.boxes.press(Qt::Key_Escape);
    else
        f.boxes.click(QMessageBox::No);
    f.click("deleteCmd");
    QCOMPARE(f.boxes.shown().size(), 1);
    QCOMPARE(f.trail, QStringList());
    QCOMPARE(f.selected(), QStringLiteral("q1"));
}

void tst_QuestionList::deletingNothingAsksAndRefreshes()
{
    QuestionFixture f;
    f.boxes.click(QMessageBox::Yes);
    f.click("deleteCmd");
    QCOMPARE(f.boxes.shown().size(), 1);
    QCOMPARE(f.takeTrail(), QStringList{upToNow});
}

void tst_QuestionList::survivesBeingDestroyedUnderTheQuestion()
{
    QuestionFixture f;
    f.select(0);
    QMetaObject::invokeMethod(&f.child<QPushButton>("deleteCmd"), "clicked", Qt::QueuedConnection);
    QTimer::singleShot(0, qApp, [&f] { delete f.stats; });
    f.boxes.click(QMessageBox::Yes);
    QTRY_COMPARE(f.boxes.shown().size(), 1);
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QVERIFY(!f.stats);
    QCOMPARE(f.trail, QStringList());
}

void tst_QuestionList::anyStateMayBeChangedAgain()
{
    for (const char *state : {"PUBLISH", "ANSWERED", "STAGED", "RETRACT", "DELETE"}) {
        QuestionFixture f({inState("q1", state)});
        for (const char *button : {"replyCmd", "retractCmd", "deleteCmd"}) {
            QVERIFY(f.child<QPushButton>(button).isEnabled());
            f.select(0);
            f.boxes.click(QMessageBox::Yes);
            if (QByteArray(button) == "replyCmd")
                f.answer([] { pressInDialog("OKButton"); });
            else
                f.click(button);
        }
        const QStringList sent = f.trail.filter(QStringLiteral("SetQuestionStatus"));
        QCOMPARE(sent, QStringList({status("q1", "STAGED"), status("q1", "RETRACT"),
                                    status("q1", "DELETE")}));
    }
}

void tst_QuestionList::theSecondModeratorSeesTheNewerState()
{
    QuestionFixture first({asked("q1")});
    QuestionFixture second({asked("q1")});
    // Both look at one service, which keeps the last state it was sent.
    const auto keep = [&](const QString &call) {
        if (!call.startsWith(QLatin1String("SetQuestionStatus")))
            return;
        const QByteArray state = call.section(u'"', 3, 3).toLatin1();
        first.client.questions = second.client.questions =
            ZelTest::recordList<QuestionRecord>({inState("q1", state.constData())});
    };
    first.atCall = second.atCall = keep;
    second.select(0);
    first.form.activateWindow();
    first.select(0);
    first.click("retractCmd");
    QCOMPARE(first.questions().text(0), QStringLiteral("RETRACT"));
    QCOMPARE(second.questions().text(0), QStringLiteral("NEW"));
    // The editor of the second has the texts it saw; cancelling it brings the newer state.
    second.answer([] { pressInDialog("CancelButton"); });
    QCOMPARE(second.questions().text(0), QStringLiteral("RETRACT"));
    // Changing it all the same is allowed and the first sees that in turn.
    second.select(0);
    second.answer([] { pressInDialog("OKButton"); });
    QCOMPARE(second.questions().text(0), QStringLiteral("STAGED"));
    first.click("refreshCmd");
    QCOMPARE(first.questions().text(0), QStringLiteral("STAGED"));
}

void tst_QuestionList::mnemonicsWorkInTheTab()
{
    QuestionFixture f;
    QVERIFY(QTest::qWaitForWindowActive(&f.form));
    f.select(0);
    QTest::keyClick(f.questions().view(), Qt::Key_T, Qt::AltModifier);
    QCOMPARE(f.takeTrail(), QStringList({status("q1", "RETRACT"), upToNow}));
    QTest::keyClick(f.questions().view(), Qt::Key_R, Qt::AltModifier);
    QCOMPARE(f.takeTrail(), QStringList{upToNow});
    f.boxes.click(QMessageBox::Yes);
    f.select(0);
    QTest::keyClick(f.questions().view(), Qt::Key_D, Qt::AltModifier);
    QCOMPARE(f.takeTrail(), QStringList({status("q1", "DELETE"), upToNow}));
    f.form.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&f.form));
    f.select(0);
    QTimer::singleShot(50, qApp, [] { pressInDialog("OKButton"); });
    QTest::keyClick(f.questions().view(), Qt::Key_A, Qt::AltModifier);
    QCOMPARE(f.takeOperations(), words("UpdateQuestion|SetQuestionStatus|GetQuestions"));
}

void tst_QuestionList::mnemonicsDoNothingInOtherTabs()
{
    QuestionFixture f;
    QVERIFY(QTest::qWaitForWindowActive(&f.form));
    f.clickTab(Participants);
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_T, Qt::Key_D, Qt::Key_R})
        QTest::keyClick(f.list("participantList").view(), key, Qt::AltModifier);
    QCOMPARE(f.trail, QStringList());
}

void tst_QuestionList::aHugeQuestionIsShownAndKept()
{
    QuestionRecord huge = asked("q1");
    huge.QuestionText = QStringLiteral("&lt;b&gt;why &amp;&lt;/b&gt;\r\n").repeated(6000);
    QuestionFixture f({huge});
    const QString plain = QStringLiteral("<b>why &</b>\r\n").repeated(6000);
    f.form.grab();
    QCOMPARE(f.questions().text(0, 5), plain);
    f.select(0);
    f.answer([] { pressInDialog("OKButton"); });
    QCOMPARE(f.trail.constFirst(),
             QStringLiteral("UpdateQuestion(\"q1\", \"\", \"%1\", \"\", \"\")").arg(plain));
}

void tst_QuestionList::headersSortNothing()
{
    QuestionFixture f({asked("q1", "b"), asked("q2", "c"), asked("q3", "a")});
    ListTesting::clickHeader(f.questions(), 5);
    QVERIFY(!f.questions().isSorted());
    QCOMPARE(ListTesting::shownTexts(f.questions(), 5), words("b|c|a"));
}

void tst_QuestionList::aHostMaySortByTime()
{
    QuestionRecord late = asked("late"), early = asked("early"), never = asked("never");
    late.Submitted = late.Answered = onNinth(10);
    early.Submitted = early.Answered = onNinth(9);
    late.SubmittedSpecified = late.AnsweredSpecified = true;
    early.SubmittedSpecified = early.AnsweredSpecified = true;
    QuestionFixture f({late, never, early});
    f.questions().setSortByValue(true);
    for (const int column : {7, 8}) {
        f.questions().sortBy(column, Qt::AscendingOrder);
        QCOMPARE(f.questions().rowAt(0), 1);
        QCOMPARE(f.questions().rowAt(1), 2);
    }
}

ZEL_TEST_MAIN(tst_QuestionList)
#include "tst_questionlist.moc"
