// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "common/common.h"
#include "platform/widgets/commondialog.h"
#include "testsupport/errornumber.h"
#include "testsupport/filedialogdriver.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using ZelTest::errorNumber;
using ZelTest::FileDialogDriver;

class TestShowOpenFileDialog : public ZelTest::TestCase
{
    Q_OBJECT

    QTemporaryDir m_folder;

    QString path(const QString &name) const { return m_folder.filePath(name); }

    QString show(Zel::CommonDialog &dialog, bool multiSelect) const
    {
        return ZelWebServiceControls::Common::ShowOpenFileDialog(
            dialog, QStringLiteral("Select Asset"), QStringLiteral("*.*"),
            QStringLiteral("Pictures|*.png"), m_folder.path(), multiSelect);
    }

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        for (const char *name : {"one.png", "two.png"}) {
            QFile file(path(QString::fromLatin1(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
    }

    void showsTheFourTextsAndReturnsTheChosenFile()
    {
        Zel::CommonDialog dialog;
        FileDialogDriver files;
        files.choose({path(QStringLiteral("one.png"))});
        QCOMPARE(show(dialog, false), path(QStringLiteral("one.png")));
        QCOMPARE(files.shown().size(), 1);
        QCOMPARE(files.shown().at(0).title, QStringLiteral("Select Asset"));
        QCOMPARE(files.shown().at(0).nameFilters, QStringList{QStringLiteral("Pictures (*.png)")});
        QCOMPARE(files.shown().at(0).folder, m_folder.path());
        QVERIFY(!files.shown().at(0).multiple);
        QCOMPARE(dialog.defaultPattern, QStringLiteral("*.*"));
    }

    void severalFilesComeInTheJoinedForm()
    {
        Zel::CommonDialog dialog;
        FileDialogDriver files;
        files.choose({path(QStringLiteral("one.png")), path(QStringLiteral("two.png"))});
        const QStringList parts = show(dialog, true).split(QChar(u'\0'));
        QCOMPARE(parts.size(), 3);
        QCOMPARE(parts.at(0), m_folder.path());
        QVERIFY(files.shown().at(0).multiple);
        QCOMPARE(dialog.flags, 0x80200u);
    }

    void theMultiSelectFlagGoesOffWhenNotAskedFor()
    {
        Zel::CommonDialog dialog;
        dialog.flags = Zel::CommonDialog::ExplorerMultiSelect;
        FileDialogDriver files;
        files.choose({path(QStringLiteral("one.png"))});
        show(dialog, false);
        QVERIFY(!files.shown().at(0).multiple);
        QVERIFY(!(dialog.flags & Zel::CommonDialog::AllowMultiSelect));
    }

    void cancelReachesTheCallerAsError32755()
    {
        Zel::CommonDialog dialog;
        dialog.fileName = path(QStringLiteral("two.png"));
        FileDialogDriver files;
        files.cancel();
        QCOMPARE(errorNumber([&] { show(dialog, true); }), 32755);
        // What was chosen in an earlier use is gone.
        QCOMPARE(dialog.fileName, QString());
    }
};

ZEL_TEST_MAIN(TestShowOpenFileDialog)
#include "tst_showopenfiledialog.moc"
