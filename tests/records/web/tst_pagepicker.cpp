// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetesting.h"

#include "../../assets/assetmanagerfixture.h"
#include "assets/assetpicker.h"

#include <QTimer>

using ZelWebServiceControls::AssetManager;
using ZelWebServiceControls::AssetPicker;

namespace {

/// Uses the asset picker as a person does, whenever it comes up: picks the asset at a place of the
/// folder Art, or closes the picker.
class PickerDriver : public QObject
{
public:
    PickerDriver()
    {
        m_timer.setInterval(5);
        connect(&m_timer, &QTimer::timeout, this, [this] { look(); });
        m_timer.start();
    }

    /// The next times: the place of an asset, or -1 to close the picker.
    QList<int> answers;
    int shown = 0;
    QStringList topFolders;

private:
    void look()
    {
        auto *picker = qobject_cast<AssetPicker *>(QApplication::activeModalWidget());
        if (!picker || !picker->isVisible())
            return;
        ++shown;
        const int answer = answers.isEmpty() ? -1 : answers.takeFirst();
        auto *tree = picker->findChild<Zel::TreeView *>(QStringLiteral("assetFolderView"));
        topFolders.clear();
        for (const QString &key : tree->topKeys())
            topFolders << key << tree->childKeys(key);
        if (answer < 0) {
            picker->close();
            return;
        }
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->nodeRect("l1").center());
        auto *list = picker->findChild<Zel::ListView *>(QStringLiteral("assetList"));
        ListTesting::doubleClick(*list, answer);
    }

    QTimer m_timer;
};

} // namespace

/// The asset picker, when a component page asks for a new window.
class tst_PagePicker : public PageTest
{
    Q_OBJECT

    QString trail() { return read(QStringLiteral("trail.join(' | ')")).toString(); }

    void usePicker(const Step &steps)
    {
        use(QStringLiteral("picker.html"), [&] {
            waitForPage(QStringLiteral("picker.html"));
            steps();
            browser().close();
        });
    }

private slots:

    void init()
    {
        PageTest::init();
        client().assetFolders =
            ZelTest::assetFolderList({rootFolder(), folder(1, 0, "Art"), folder(2, 0, "QXStudio")});
        client().folderAssets[1] = ZelTest::assetList({asset("a"), asset("b")});
        client().assetValues = {{"guid-a", QString()}, {"guid-b", "pictures/b.png"}};
        client().takeCalls();
    }

    void theScriptWaitsForTheAsset()
    {
        PickerDriver picker;
        picker.answers = {1};
        usePicker([&] {
            click(QStringLiteral("script"));
            waitFor(QStringLiteral("trail.length"), 3);
            QCOMPARE(trail(),
                     QStringLiteral("before | picked pictures/b.png guid-b 2 | after null"));
        });
        QCOMPARE(picker.shown, 1);
        // Limited to what is not of the product itself, and to the text the page asked with.
        QCOMPARE(picker.topFolders, (QStringList{"l0", "l1"}));
        QVERIFY(client().calls().contains(QStringLiteral("GetFolderAssets(1, \"\", \"0\", 0, 0)")));
        for (const QString &request : requests())
            QVERIFY(!request.contains(QStringLiteral("/pick ")) && !request.endsWith("/pick"));
    }

    void whatNoScriptWaitsForOpensThePickerToo_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"link", "form", "frame"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }

    void whatNoScriptWaitsForOpensThePickerToo()
    {
        QFETCH(QString, way);
        PickerDriver picker;
        picker.answers = {1};
        usePicker([&] {
            click(way);
            waitFor(QStringLiteral("trail.join(' | ')"),
                    QStringLiteral("picked pictures/b.png guid-b 2"));
        });
        QCOMPARE(picker.shown, 1);
        for (const QString &request : requests())
            QVERIFY2(!request.contains(QStringLiteral("/pick ")) && !request.endsWith("/pick"),
                     qPrintable(request));
    }

    void onlyNumbersThatRoundToZeroOpenThePicker_data()
    {
        QTest::addColumn<QString>("expression");
        QTest::addColumn<bool>("opens");
        QTest::addColumn<QString>("filter");
        for (const QStringList &row : table(QStringLiteral("windowtypes.table")))
            QTest::newRow(qPrintable(row.at(0)))
                << row.at(0) << (row.at(1) == QLatin1String("picker")) << row.value(2);
    }

    void onlyNumbersThatRoundToZeroOpenThePicker()
    {
        QFETCH(QString, expression);
        QFETCH(bool, opens);
        QFETCH(QString, filter);
        PickerDriver picker;
        picker.answers = {1, 1};
        usePicker([&] {
            run(QStringLiteral("childWindowType = %1; trail.push(String(window.open('pick')))")
                    .arg(expression));
            waitFor(QStringLiteral("trail.length"), opens ? 2 : 1);
            QCOMPARE(picker.shown, opens ? 1 : 0);
            // The same by a way that no script waits for.
            click(QStringLiteral("link"));
            if (opens)
                waitFor(QStringLiteral("trail.length"), 3);
            else
                waitFor(QStringLiteral("trail.length"), 1);
        });
        QCOMPARE(picker.shown, opens ? 2 : 0);
        const QString call = QStringLiteral("GetFolderAssets(1, \"\", \"%1\", 0, 0)").arg(filter);
        QCOMPARE(client().calls().count(call), opens ? 2 : 0);
    }

    void anUnsetTypeOpensNothing()
    {
        PickerDriver picker;
        use(QStringLiteral("echo.html"), [this] {
            waitForValue();
            QVERIFY(read(QStringLiteral("window.open('pick')")).isNull());
            browser().close();
        });
        QCOMPARE(picker.shown, 0);
    }

    void aWindowOfThePagesOwnIsNoNewWindow_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"_self", "_top", "_parent", "_SELF", "inside"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void aWindowOfThePagesOwnIsNoNewWindow()
    {
        QFETCH(QString, name);
        PickerDriver picker;
        const bool isFrame = name == QLatin1String("inside");
        usePicker([&] {
            run(QStringLiteral("window.open('echo.html', '%1')").arg(name));
            if (isFrame)
                waitFor(QStringLiteral("frames[0].location.pathname"),
                        QStringLiteral("/echo.html"));
            else
                waitForValue();
        });
        QCOMPARE(picker.shown, 0);
    }

    void cancellingCallsNobodyBack()
    {
        PickerDriver picker;
        usePicker([&] {
            click(QStringLiteral("script"));
            waitFor(QStringLiteral("trail.length"), 2);
            QCOMPARE(trail(), QStringLiteral("before | after null"));
        });
        QCOMPARE(picker.shown, 1);
    }

    void anAssetWithoutAValueCallsNobodyBack()
    {
        PickerDriver picker;
        picker.answers = {0};
        usePicker([&] {
            click(QStringLiteral("script"));
            waitFor(QStringLiteral("trail.length"), 2);
            QCOMPARE(trail(), QStringLiteral("before | after null"));
        });
        QCOMPARE(picker.shown, 1);
    }

    void thePageIsCalledBackWheneverAnAssetIsHeldButNotInTheNextUse()
    {
        PickerDriver picker;
        picker.answers = {1, -1, -1};
        const QString picked =
            QStringLiteral("before | picked pictures/b.png guid-b 2 | after null");
        usePicker([&] {
            click(QStringLiteral("script"));
            waitFor(QStringLiteral("trail.length"), 3);
            click(QStringLiteral("script"));
            waitFor(QStringLiteral("trail.length"), 6);
            QCOMPARE(trail(), picked + QStringLiteral(" | ") + picked);
        });
        usePicker([&] {
            click(QStringLiteral("script"));
            waitFor(QStringLiteral("trail.length"), 2);
            QCOMPARE(trail(), QStringLiteral("before | after null"));
        });
        QCOMPARE(picker.shown, 3);
    }

    void aPageWithoutTheCallbackIsFine()
    {
        PickerDriver picker;
        picker.answers = {1, 1};
        usePicker([&] {
            run(QStringLiteral("doSelectAssetCallback = 'no function'; ask()"));
            waitFor(QStringLiteral("trail.length"), 2);
            run(QStringLiteral("onerror = function () { trail.push('told'); };"
                               "refuse(); ask()"));
            waitFor(QStringLiteral("trail.length"), 5);
            QCOMPARE(trail(), QStringLiteral("before | after null | before | "
                                             "told | after null"));
        });
        QCOMPARE(picker.shown, 2);
    }

    void thePageMayEndTheDialogWhenItIsCalledBack()
    {
        PickerDriver picker;
        picker.answers = {1};
        use(QStringLiteral("picker.html"), [&] {
            waitForPage(QStringLiteral("picker.html"));
            run(QStringLiteral("doSelectAssetCallback = function (value, guid) {"
                               "  returnValue = [[value], ['', guid]]; location.href = 'close'; };"
                               "ask()"));
        });
        QCOMPARE(browser().returnCode(), qint16(1));
        QCOMPARE(browser().GetValue(), QStringLiteral("pictures/b.png"));
        QCOMPARE(browser().getAssetDependencies(), QStringLiteral("guid-b"));
    }

    void anErrorOfTheServiceReachesTheHostAndNotThePage()
    {
        PickerDriver picker;
        QList<int> errors;
        const auto connection =
            connect(&browser(), &Zel::Form::runtimeError, this,
                    [&](const Zel::RuntimeError &error) { errors << error.number(); });
        usePicker([&] {
            client().failNext(QStringLiteral("GetAssetFolders"), Zel::RuntimeError(1234));
            click(QStringLiteral("script"));
            waitFor(QStringLiteral("trail.length"), 2);
            QCOMPARE(trail(), QStringLiteral("before | after null"));
            QVERIFY(browser().isVisible());
        });
        disconnect(connection);
        QCOMPARE(errors, QList<int>{1234});
    }

    void withoutAClientThePickerSaysSoAndOpens()
    {
        PickerDriver picker;
        boxes().click(QMessageBox::Ok);
        browser().ShowModalDialog(nullptr, address(QStringLiteral("picker.html")),
                                  QStringLiteral("Pictures"), QString(), QString());
        browser().resize(600, 400);
        show([&] {
            waitForPage(QStringLiteral("picker.html"));
            click(QStringLiteral("script"));
            waitFor(QStringLiteral("trail.length"), 2);
            browser().close();
        });
        QCOMPARE(boxes().shown().size(), 1);
        QCOMPARE(boxes().shown()[0].text, QStringLiteral("qxs not supplied"));
        QCOMPARE(picker.shown, 1);
    }

    void theDialogMayEndOrGoWhileThePickerIsOpen_data()
    {
        QTest::addColumn<bool>("goes");
        QTest::newRow("ends") << false;
        QTest::newRow("goes with its owner's window") << true;
    }

    void theDialogMayEndOrGoWhileThePickerIsOpen()
    {
        QFETCH(bool, goes);
        auto *owner = new QWidget;
        owner->show();
        QPointer<ZelWebServiceControls::CustomWidgetBrowser> other =
            new ZelWebServiceControls::CustomWidgetBrowser;
        other->ShowModalDialog(&client(), address(QStringLiteral("picker.html")),
                               QStringLiteral("Pictures"), QString());
        other->resize(600, 400);
        const QPointer<QWebEnginePage> page = other->findChild<QWebEngineView *>()->page();
        connect(page, &QWebEnginePage::loadFinished, other,
                [page] { page->runJavaScript(QStringLiteral("ask()")); });
        int shown = 0;
        QTimer watch;
        watch.setInterval(5);
        connect(&watch, &QTimer::timeout, this, [&] {
            auto *picker = qobject_cast<AssetPicker *>(QApplication::activeModalWidget());
            if (!picker || !picker->isVisible() || shown++)
                return;
            if (goes) {
                delete std::exchange(owner, nullptr);
            } else {
                other->close();
                picker->close();
            }
        });
        watch.start();
        other->showModal(owner);
        QCOMPARE(shown, 1);
        QCOMPARE(!other, goes);
        if (other)
            QCOMPARE(other->returnCode(), qint16(2));
        QVERIFY(waitUntil([&] { return !page; }));
        delete other;
        delete owner;
    }
};

ZEL_PAGE_TEST_MAIN(tst_PagePicker)
#include "tst_pagepicker.moc"
