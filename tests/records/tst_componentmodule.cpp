// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagedialog.h"
#include "records/componentmodule.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using ZelTest::errorNumber;
using ZelWebServiceControls::componentDialog;
using ZelWebServiceControls::ComponentModule;
using ZelWebServiceControls::setComponentDialogMaker;

/// Getting the dialog for component pages, and saying why there is none.
class tst_ComponentModule : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
        qunsetenv("QTWEBENGINE_CHROMIUM_FLAGS");
        QVERIFY(m_folder.isValid());
        QFile::remove(modulePath());
    }

    void cleanup() { setComponentDialogMaker({}); }

    void linkingTheLibraryPreparesTheProgram()
    {
        // This program has done nothing for it.
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_ShareOpenGLContexts));
        QVERIFY(!ComponentModule::obstacle().contains("AA_ShareOpenGLContexts"));
    }

    void rootNeedsTheSandboxSwitchedOff()
    {
        const bool isRoot = geteuid() == 0;
        qunsetenv("QTWEBENGINE_DISABLE_SANDBOX");
        QCOMPARE(ComponentModule::obstacle().contains("root"), isRoot);
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "0");
        QCOMPARE(ComponentModule::obstacle().contains("root"), isRoot);
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu --no-sandbox");
        QVERIFY(!ComponentModule::obstacle().contains("root"));
    }

    void anAbsentModuleIsNamed()
    {
        QVERIFY(why().contains("is not installed"));
        QVERIFY(why().contains(m_folder.path()));
    }

    void aModuleThatDoesNotLoadSaysWhy()
    {
        QFile file(modulePath());
        QVERIFY(file.open(QFile::WriteOnly));
        file.write("no library at all");
        file.close();
        QVERIFY(why().contains("does not load"));
    }

    void anotherLibraryIsNotTakenForTheModule()
    {
        QVERIFY(QFile::link(QStringLiteral(ZEL_OTHER_LIBRARY), modulePath()));
        QVERIFY(why().contains("is not the module"));
    }

    void nothingIsLoadedWhereItWouldEndTheProgram()
    {
        if (geteuid() != 0)
            return; // has no such obstacle here
        QVERIFY(QFile::link(QStringLiteral(ZEL_OTHER_LIBRARY), modulePath()));
        qunsetenv("QTWEBENGINE_DISABLE_SANDBOX");
        QVERIFY(why().contains("root"));
    }

    void theDialogIsMadeOnceAndAgainWhenItIsGone()
    {
        int made = 0;
        setComponentDialogMaker([&made] {
            ++made;
            return new PageDialog;
        });
        auto *first = &componentDialog();
        QCOMPARE(&componentDialog(), first);
        QCOMPARE(made, 1);
        delete first;
        QVERIFY(&componentDialog());
        QCOMPARE(made, 2);
    }

    void aMakerThatMakesNothingIsAnError()
    {
        setComponentDialogMaker([] { return nullptr; });
        QCOMPARE(errorNumber([] { componentDialog(); }), 429);
    }

    void anotherMakerMakesAnotherDialog()
    {
        setComponentDialogMaker([] { return new PageDialog; });
        const QPointer<ZelWebServiceControls::ComponentDialog> first(&componentDialog());
        setComponentDialogMaker([] { return new PageDialog; });
        QVERIFY(!first);
        QVERIFY(&componentDialog());
    }

private:
    QString modulePath() const { return m_folder.filePath("libZelRecordsWeb.so.0"); }

    QString why() const
    {
        try {
            delete ComponentModule(m_folder.path()).makeDialog();
        } catch (const Zel::RuntimeError &error) {
            return error.number() == 429 ? error.description() : QString::number(error.number());
        }
        return QString();
    }

    QTemporaryDir m_folder;
};

ZEL_TEST_MAIN(tst_ComponentModule)
#include "tst_componentmodule.moc"
