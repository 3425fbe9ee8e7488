// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/latebound.h"
#include "platform/widgets/listview.h"
#include "testsupport/recordingclient.h"
#include "testsupport/testcase.h"
#include "ui_formfile.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

/// A form made by code that was generated from a .ui file.
class tst_FormFile : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void appliesTheStoredProperties();
    void runsInRunMode();
    void leavesAControlWithoutABagAsPlaced();
    void storesWhatItRead();
    void followsTheTabStops();
    void keepsThePropertiesWhenTheLanguageChanges();
};

void tst_FormFile::appliesTheStoredProperties()
{
    QWidget form;
    Ui::FormFile ui;
    ui.setupUi(&form);
    QCOMPARE(ui.signIn->UserName(), QStringLiteral("mira"));
    QCOMPARE(ui.signIn->ShowLoginURL(), false);
    QCOMPARE(ui.signIn->UseProxy(), true);
    QVERIFY(ui.signIn->propertyProblems().isEmpty());
    QVERIFY(ui.signIn->findChild<QLineEdit *>(QStringLiteral("qxUrl"))->isHidden());
    auto *rows = ui.signIn->findChild<QWidget *>(QStringLiteral("upFrame"));
    QCOMPARE(Zel::LateBound(rows).get(QStringLiteral("Top")).toDouble(), 360.0);

    QVERIFY(ui.projects->propertyProblems().isEmpty());
    QVERIFY(ui.projects->ShowPublished());
    const auto *list = ui.projects->findChild<Zel::ListView *>(QStringLiteral("projectList"));
    QCOMPARE(list->columnWidth(2), 1900.0);
    QCOMPARE(list->columnWidth(3), 0.0);
    QCOMPARE(list->columnWidth(4), 1450.0);
}

void tst_FormFile::runsInRunMode()
{
    QWidget form;
    Ui::FormFile ui;
    ui.setupUi(&form);
    QCOMPARE(ui.signIn->mode(), Zel::Control::Mode::Run);
    ZelTest::RecordingClient client;
    ui.signIn->Init(&client, QStringLiteral("Stage"));
    form.show();
    QTest::mouseClick(ui.signIn->findChild<QPushButton *>(QStringLiteral("login")), Qt::LeftButton);
    QCOMPARE(client.calls().constFirst(),
             QStringLiteral("authenticate(\"\", \"mira\", \"\", \"Stage\", \"\", True, True)"));
}

void tst_FormFile::leavesAControlWithoutABagAsPlaced()
{
    QWidget form;
    Ui::FormFile ui;
    ui.setupUi(&form);
    const auto *list = ui.untouched->findChild<Zel::ListView *>(QStringLiteral("projectList"));
    QCOMPARE(list->columnWidth(2), 3351.0);
    QCOMPARE(list->columnWidth(3), 2558.0);
    QCOMPARE(ui.untouched->propertyBagText(), QString());
}

void tst_FormFile::storesWhatItRead()
{
    QWidget form;
    Ui::FormFile ui;
    ui.setupUi(&form);
    const QStringList names{QStringLiteral("UserName"), QStringLiteral("ShowLoginURL"),
                            QStringLiteral("UseProxy")};
    QCOMPARE(ui.signIn->writePropertyBag().names(), names);
    ZelWebServiceControls::Login copy;
    copy.setPropertyBagText(ui.signIn->propertyBagText());
    QVERIFY(copy.writePropertyBag() == ui.signIn->writePropertyBag());
}

void tst_FormFile::followsTheTabStops()
{
    QWidget form;
    Ui::FormFile ui;
    ui.setupUi(&form);
    form.show();
    form.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&form));
    ui.projects->setFocus();
    QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
    QCOMPARE(form.focusWidget()->objectName(), QStringLiteral("qxUserName"));
}

void tst_FormFile::keepsThePropertiesWhenTheLanguageChanges()
{
    QWidget form;
    Ui::FormFile ui;
    ui.setupUi(&form);
    ui.signIn->setUserName(QStringLiteral("noor"));
    ui.retranslateUi(&form);
    QCOMPARE(ui.signIn->UserName(), QStringLiteral("noor"));
}

ZEL_TEST_MAIN(tst_FormFile)
#include "tst_formfile.moc"
