// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "testsupport/filedialogdriver.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>

using ZelTest::FileDialogDriver;
using ZelTest::MessageBoxDriver;

namespace {

QMessageBox::StandardButton ask(const QString &text)
{
    return QMessageBox::question(nullptr, QStringLiteral("Title"), text,
                                 QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
                                 QMessageBox::No);
}

QStringList choose(const QString &folder)
{
    QFileDialog dialog(nullptr, QStringLiteral("Choose"), folder, QStringLiteral("Texts (*.txt)"));
    dialog.setFileMode(QFileDialog::ExistingFiles);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles() : QStringList();
}

} // namespace

class TestDialogDrivers : public ZelTest::TestCase
{
    Q_OBJECT

    QTemporaryDir m_folder;

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        for (const char *name : {"a.txt", "b.txt"}) {
            QFile file(m_folder.filePath(QString::fromLatin1(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
    }

    void boxesGetTheirAnswersInOrder()
    {
        MessageBoxDriver boxes;
        boxes.click(QMessageBox::Yes);
        boxes.press(Qt::Key_Return);
        boxes.press(Qt::Key_Escape);
        QCOMPARE(ask(QStringLiteral("1")), QMessageBox::Yes);
        QCOMPARE(ask(QStringLiteral("2")), QMessageBox::No);
        QCOMPARE(ask(QStringLiteral("3")), QMessageBox::Cancel);
        QCOMPARE(boxes.unexpected(), 0);
        QCOMPARE(boxes.shown().size(), 3);
        QCOMPARE(boxes.shown().at(1).text, QStringLiteral("2"));
        QCOMPARE(boxes.shown().at(1).title, QStringLiteral("Title"));
        QCOMPARE(boxes.shown().at(1).defaultButton, QMessageBox::No);
        QCOMPARE(boxes.shown().at(1).buttons,
                 QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    }

    void aBoxNobodyExpectedIsClosedAndCounted()
    {
        MessageBoxDriver boxes;
        QCOMPARE(ask(QStringLiteral("?")), QMessageBox::Cancel);
        QCOMPARE(boxes.unexpected(), 1);
        QCOMPARE(boxes.shown().size(), 1);
    }

    void aBoxWithoutTheButtonIsClosedAndCounted()
    {
        MessageBoxDriver boxes;
        boxes.click(QMessageBox::Retry);
        QCOMPARE(ask(QStringLiteral("?")), QMessageBox::Cancel);
        QCOMPARE(boxes.unexpected(), 1);
    }

    void aKeyThatDoesNotCloseTheBoxLeavesItToTheNextAnswer()
    {
        MessageBoxDriver boxes;
        boxes.press(Qt::Key_Shift);
        boxes.press(Qt::Key_Return);
        QCOMPARE(ask(QStringLiteral("?")), QMessageBox::No);
        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(boxes.unexpected(), 0);
    }

    void filesAreChosenOneOrSeveral()
    {
        FileDialogDriver files;
        const QString a = m_folder.filePath(QStringLiteral("a.txt"));
        const QString b = m_folder.filePath(QStringLiteral("b.txt"));
        files.choose({a});
        files.choose({a, b});
        QCOMPARE(choose(m_folder.path()), QStringList{a});
        QStringList both = choose(QDir::rootPath());
        both.sort();
        QCOMPARE(both, (QStringList{a, b}));
        QCOMPARE(files.shown().size(), 2);
        QCOMPARE(files.shown().at(0).title, QStringLiteral("Choose"));
        QCOMPARE(files.shown().at(0).folder, m_folder.path());
        QCOMPARE(files.shown().at(0).nameFilters, QStringList{QStringLiteral("Texts (*.txt)")});
        QVERIFY(files.shown().at(0).multiple);
    }

    void aFileDialogWithoutAnAnswerIsCancelled()
    {
        FileDialogDriver files;
        QCOMPARE(choose(m_folder.path()), QStringList());
        files.cancel();
        files.choose({m_folder.filePath(QStringLiteral("a.txt"))});
        QCOMPARE(choose(m_folder.path()), QStringList());
        QCOMPARE(choose(m_folder.path()).size(), 1);
        QCOMPARE(files.shown().size(), 3);
    }

    void aFileDialogThatDoesNotTakeItsAnswerIsCancelled()
    {
        MessageBoxDriver boxes;
        boxes.click(QMessageBox::Ok);
        FileDialogDriver files;
        files.choose({m_folder.filePath(QStringLiteral("none.txt"))});
        QCOMPARE(choose(m_folder.path()), QStringList());
        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(files.shown().size(), 1);
    }
};

ZEL_TEST_MAIN(TestDialogDrivers)
#include "tst_dialogdrivers.moc"
