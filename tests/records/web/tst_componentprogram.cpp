// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport/testcase.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

/// The dialog for component pages in a host of its own: loaded when it is first needed, gone with
/// the program, and refused with a sentence where it would end the program.
class tst_ComponentProgram : public ZelTest::TestCase
{
    Q_OBJECT

    /// What the host says, and how it ended.
    struct Outcome
    {
        QStringList facts;
        bool isClean = false;
        QString errors;

        QString fact(const char *what) const
        {
            const QString begin = QString::fromLatin1(what) + QStringLiteral(": ");
            for (const QString &line : facts) {
                if (line.startsWith(begin))
                    return line.mid(begin.size());
            }
            return {};
        }
    };

    static QProcessEnvironment environment()
    {
        QProcessEnvironment made = QProcessEnvironment::systemEnvironment();
        made.remove(QStringLiteral("QTWEBENGINE_CHROMIUM_FLAGS"));
        if (geteuid() == 0)
            made.insert(QStringLiteral("QTWEBENGINE_DISABLE_SANDBOX"), QStringLiteral("1"));
        return made;
    }

    static Outcome host(const QProcessEnvironment &environment, const QStringList &options = {})
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(ZEL_COMPONENT_PROBE), options);
        Outcome outcome;
        if (!process.waitForFinished(60'000))
            return outcome;
        outcome.facts =
            QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
        outcome.errors = QString::fromUtf8(process.readAllStandardError());
        outcome.isClean = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0 &&
                          outcome.fact("ended") == QLatin1String("0");
        return outcome;
    }

    /// The host goes on and can say why.
    static void expectRefusal(const Outcome &outcome, const char *sentence)
    {
        QVERIFY2(outcome.isClean, qPrintable(outcome.errors));
        QVERIFY2(outcome.fact("error").startsWith(QLatin1String("429 ")),
                 qPrintable(outcome.facts.join(u'\n')));
        QVERIFY2(outcome.fact("error").contains(QLatin1String(sentence)),
                 qPrintable(outcome.fact("error")));
    }

private slots:

    void theEngineIsLoadedWhenItIsFirstNeeded()
    {
        const Outcome outcome = host(environment());
        QVERIFY2(outcome.isClean, qPrintable(outcome.errors));
        const QStringList expected{
            QStringLiteral("engine at start: absent"),
            QStringLiteral("dialog: ZelWebServiceControls::CustomWidgetBrowser"),
            QStringLiteral("engine now: loaded"),
            QStringLiteral("code: 1"),
            QStringLiteral("value: value!"),
            QStringLiteral("same again: yes"),
            QStringLiteral("ended: 0")};
        QCOMPARE(outcome.facts, expected);
    }

    void aProgramMayQuitWhileAPageIsShown()
    {
        const Outcome outcome = host(environment(), {QStringLiteral("--quit-while-shown")});
        QVERIFY2(outcome.isClean, qPrintable(outcome.errors));
        QCOMPARE(outcome.fact("engine now"), QStringLiteral("loaded"));
    }

    void withoutSharedContextsThereIsNoDialog()
    {
        const Outcome outcome = host(environment(), {QStringLiteral("--without-attribute")});
        expectRefusal(outcome, "AA_ShareOpenGLContexts");
        QCOMPARE(outcome.fact("engine now"), QStringLiteral("absent"));
    }

    void rootNeedsTheSandboxSwitchedOff()
    {
        QProcessEnvironment sandboxed = environment();
        sandboxed.remove(QStringLiteral("QTWEBENGINE_DISABLE_SANDBOX"));
        const Outcome outcome = host(sandboxed);
        if (geteuid() == 0)
            expectRefusal(outcome, "QTWEBENGINE_DISABLE_SANDBOX=1");
        else
            QVERIFY(!outcome.fact("error").contains(QStringLiteral("root")));
    }

    void withoutOpenGLThereIsNoDialog()
    {
        QProcessEnvironment blind = environment();
        blind.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        blind.remove(QStringLiteral("DISPLAY"));
        expectRefusal(host(blind), "no OpenGL");
    }

    void withoutTheModuleThereIsNoDialog()
    {
        // The library of the records somewhere else, alone.
        const QTemporaryDir folder;
        const QString name = QStringLiteral("libZelRecords.so.0");
        QVERIFY(QFile::copy(QStringLiteral(ZEL_LIBRARIES) + u'/' + name, folder.filePath(name)));
        QProcessEnvironment bare = environment();
        bare.insert(QStringLiteral("LD_LIBRARY_PATH"), folder.path());
        const Outcome outcome = host(bare);
        expectRefusal(outcome, "not installed");
        QVERIFY(outcome.fact("error").contains(folder.path()));
    }

    void aModuleThatDoesNotLoadSaysWhy()
    {
        const QTemporaryDir folder;
        const QString name = QStringLiteral("libZelRecords.so.0");
        QVERIFY(QFile::copy(QStringLiteral(ZEL_LIBRARIES) + u'/' + name, folder.filePath(name)));
        QFile module(folder.filePath(QStringLiteral("libZelRecordsWeb.so.0")));
        QVERIFY(module.open(QFile::WriteOnly));
        module.write("no library at all");
        module.close();
        QProcessEnvironment bare = environment();
        bare.insert(QStringLiteral("LD_LIBRARY_PATH"), folder.path());
        expectRefusal(host(bare), "does not load");
    }
};

ZEL_TEST_MAIN(tst_ComponentProgram)
#include "tst_componentprogram.moc"
