// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/commondialog.h"

#include "testsupport/errornumber.h"
#include "testsupport/filedialogdriver.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using Zel::CommonDialog;
using ZelTest::errorNumber;
using ZelTest::FileDialogDriver;

class TestCommonDialog : public ZelTest::TestCase
{
    Q_OBJECT

    QTemporaryDir m_folder;

    QString path(const QString &name) const { return m_folder.filePath(name); }

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        for (const char *name : {"one.png", "two.png", "README", "drei äöü.txt"}) {
            QFile file(path(QString::fromUtf8(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
    }

    void filtersBecomeQtsNameFilters_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QStringList>("nameFilters");
        const auto row = [](const char *name, const char *filter, const QStringList &expected) {
            QTest::newRow(name) << QString::fromUtf8(filter) << expected;
        };
        row("two", "Pictures|*.bmp;*.jpg|All files|*.*",
            {QStringLiteral("Pictures (*.bmp *.jpg)"), QStringLiteral("All files (*)")});
        row("empty", "", {});
        row("no pattern", "Pictures", {});
        row("description without a pattern", "Pictures||Texts|*.txt",
            {QStringLiteral("Texts (*.txt)")});
        row("odd number of parts", "Texts|*.txt|Pictures", {QStringLiteral("Texts (*.txt)")});
        row("bar at the end", "Texts|*.txt|", {QStringLiteral("Texts (*.txt)")});
        row("no description", "|*.txt", {QStringLiteral("(*.txt)")});
        row("blanks", " Texts | *.txt ; *.md ;; ", {QStringLiteral("Texts (*.txt *.md)")});
        row("every file among others", "Any|*.txt;*.*", {QStringLiteral("Any (*.txt *)")});
        row("patterns repeated", "Pictures (*.bmp;*.jpg)|*.bmp;*.jpg",
            {QStringLiteral("Pictures (*.bmp *.jpg)")});
        row("other parentheses", "Deck (old) of cards (2020)|*.deck",
            {QStringLiteral("Deck (old) of cards (2020) (*.deck)")});
        row("a blank in a pattern", "Reports|my report*.txt",
            {QStringLiteral("Reports (my?report*.txt)")});
        row("percent signs", "100%2 %1|*.%1", {QStringLiteral("100%2 %1 (*.%1)")});
    }

    void filtersBecomeQtsNameFilters()
    {
        QFETCH(QString, filter);
        QFETCH(QStringList, nameFilters);
        QCOMPARE(CommonDialog::nameFilters(filter), nameFilters);
    }

    void nameFiltersBecomeAFilter_data()
    {
        QTest::addColumn<QStringList>("nameFilters");
        QTest::addColumn<QString>("filter");
        QTest::newRow("two") << QStringList{QStringLiteral("Pictures (*.bmp *.jpg)"),
                                            QStringLiteral("All files (*)")}
                             << QStringLiteral("Pictures|*.bmp;*.jpg|All files|*.*");
        QTest::newRow("none") << QStringList() << QString();
        QTest::newRow("bare pattern")
            << QStringList{QStringLiteral("*.txt")} << QStringLiteral("*.txt|*.txt");
        QTest::newRow("parentheses") << QStringList{QStringLiteral("Deck (old) (*.deck)")}
                                     << QStringLiteral("Deck (old)|*.deck");
    }

    void nameFiltersBecomeAFilter()
    {
        QFETCH(QStringList, nameFilters);
        QFETCH(QString, filter);
        QCOMPARE(CommonDialog::filterText(nameFilters), filter);
        if (nameFilters.size() > 1)
            QCOMPARE(CommonDialog::nameFilters(filter), nameFilters);
    }

    void severalFilesAreJoinedByTheCharacterZero()
    {
        QCOMPARE(CommonDialog::joinedFileName({}), QString());
        QCOMPARE(CommonDialog::joinedFileName({QStringLiteral("/a/b c.png")}),
                 QDir::toNativeSeparators(QStringLiteral("/a/b c.png")));
        const QString joined =
            CommonDialog::joinedFileName({QStringLiteral("/a/b.png"), QStringLiteral("/a/c.png")});
        QCOMPARE(joined.split(QChar(u'\0')),
                 (QStringList{QDir::toNativeSeparators(QStringLiteral("/a")),
                              QStringLiteral("b.png"), QStringLiteral("c.png")}));
    }

    void aChosenFileComesBackAsItsWholePath()
    {
        CommonDialog dialog;
        dialog.initialFolder = m_folder.path();
        FileDialogDriver files;
        files.choose({path(QStringLiteral("drei äöü.txt"))});
        dialog.showOpen();
        QCOMPARE(dialog.fileName, path(QStringLiteral("drei äöü.txt")));
        QVERIFY(!files.shown().at(0).multiple);
    }

    void severalChosenFilesComeBackAsFolderAndNames()
    {
        CommonDialog dialog;
        dialog.flags = CommonDialog::ExplorerMultiSelect;
        dialog.initialFolder = m_folder.path();
        FileDialogDriver files;
        files.choose({path(QStringLiteral("one.png")), path(QStringLiteral("two.png"))});
        dialog.showOpen();
        QStringList parts = dialog.fileName.split(QChar(u'\0'));
        QCOMPARE(parts.takeFirst(), m_folder.path());
        parts.sort();
        QCOMPARE(parts, (QStringList{QStringLiteral("one.png"), QStringLiteral("two.png")}));
        QVERIFY(files.shown().at(0).multiple);
    }

    void oneOfSeveralIsASingleFile()
    {
        CommonDialog dialog;
        dialog.flags = CommonDialog::ExplorerMultiSelect;
        FileDialogDriver files;
        files.choose({path(QStringLiteral("one.png"))});
        dialog.showOpen();
        QCOMPARE(dialog.fileName, path(QStringLiteral("one.png")));
    }

    void cancelIsError32755WhereAskedFor()
    {
        CommonDialog dialog;
        dialog.fileName = path(QStringLiteral("one.png"));
        dialog.cancelError = true;
        FileDialogDriver files;
        files.cancel();
        QCOMPARE(errorNumber([&] { dialog.showOpen(); }), 32755);
        QCOMPARE(files.shown().size(), 1);
        QCOMPARE(dialog.fileName, path(QStringLiteral("one.png")));
    }

    void cancelLeavesTheFileNameOtherwise()
    {
        CommonDialog dialog;
        dialog.fileName = path(QStringLiteral("one.png"));
        FileDialogDriver files;
        files.cancel();
        QCOMPARE(errorNumber([&] { dialog.showOpen(); }), 0);
        QCOMPARE(dialog.fileName, path(QStringLiteral("one.png")));
    }

    void showsWhatItIsTold()
    {
        CommonDialog dialog;
        dialog.dialogTitle = QStringLiteral("Select Asset");
        dialog.filter = QStringLiteral("Pictures|*.png|All files|*.*");
        dialog.defaultPattern = QStringLiteral("*.txt");
        // Not the folder that Qt remembers from another use.
        QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("pictures")));
        dialog.initialFolder = path(QStringLiteral("pictures"));
        FileDialogDriver files;
        dialog.showOpen();
        QCOMPARE(files.shown().at(0).title, QStringLiteral("Select Asset"));
        QCOMPARE(files.shown().at(0).folder, path(QStringLiteral("pictures")));
        QCOMPARE(files.shown().at(0).nameFilters, (QStringList{QStringLiteral("Pictures (*.png)"),
                                                               QStringLiteral("All files (*)")}));
    }

    void thePatternServesWhenThereIsNoFilter()
    {
        CommonDialog dialog;
        dialog.defaultPattern = QStringLiteral("*.*");
        FileDialogDriver files;
        dialog.showOpen();
        QCOMPARE(files.shown().at(0).nameFilters, QStringList{QStringLiteral("Files (*)")});
        QCOMPARE(files.shown().at(0).title, QStringLiteral("Open"));
    }

    void aFolderThatDoesNotExistIsPassedOver()
    {
        CommonDialog dialog;
        dialog.initialFolder = path(QStringLiteral("no such folder"));
        FileDialogDriver files;
        dialog.showOpen();
        QVERIFY(QDir(files.shown().at(0).folder).exists());
    }

    void opensOverTheWindowOfItsOwner()
    {
        QWidget window;
        auto *owner = new QWidget(&window);
        CommonDialog dialog(owner);
        QWidget *over = nullptr;
        QTimer::singleShot(0, this, [&] {
            over = QApplication::activeModalWidget()->parentWidget();
            QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
        });
        dialog.showOpen();
        QCOMPARE(over, &window);
    }

    void aDialogThatGoesWithItsWindowIsCancelled()
    {
        auto *window = new QWidget;
        CommonDialog dialog(window);
        dialog.cancelError = true;
        QTimer::singleShot(0, this, [&] { delete window; });
        QCOMPARE(errorNumber([&] { dialog.showOpen(); }), 32755);
        QCOMPARE(QApplication::activeModalWidget(), nullptr);
    }
};

ZEL_TEST_MAIN(TestCommonDialog)
#include "tst_commondialog.moc"
