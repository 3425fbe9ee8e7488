// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assetmanagerfixture.h"
#include "assets/assetpicker.h"
#include "testsupport/testcase.h"

#include <QTimer>

using ZelWebServiceControls::AssetManager;
using ZelWebServiceControls::AssetPicker;
using ZelWebServiceControls::FolderNames;

/// The dialog in which one asset is picked.
class tst_AssetPicker : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        m_client = std::make_unique<ZelTest::RecordingClient>();
        m_client->assetFolders =
            ZelTest::assetFolderList({rootFolder(), folder(1, 0, "Art"), folder(2, 0, "QXStudio")});
        m_client->folderAssets[1] = ZelTest::assetList({asset("a"), asset("b")});
        m_client->assetValues["guid-b"] = "https://media.example.org/b";
    }

    void handsAllOnToTheAssetManager()
    {
        AssetPicker picker;
        picker.Init(m_client.get(), "jpg", std::make_shared<FolderNames>(FolderNames{"QXStudio"}));
        use(picker, [&] {
            QVERIFY(!tree(picker)->contains("l2"));
            openFolder(picker);
            QCOMPARE(m_client->calls().constLast(),
                     QString("GetFolderAssets(1, \"\", \"jpg\", 0, 0)"));
            picker.close();
        });
    }

    void picksTheSelectedAssetWithOk()
    {
        AssetPicker picker;
        picker.Init(m_client.get(), "");
        use(picker, [&] {
            QVERIFY(!ok(picker)->isEnabled());
            openFolder(picker);
            QVERIFY(!ok(picker)->isEnabled());
            ListTesting::click(*list(picker), 1);
            QVERIFY(ok(picker)->isEnabled());
            QTest::mouseClick(ok(picker), Qt::LeftButton);
            QVERIFY(!picker.isVisible());
        });
        QCOMPARE(picker.returnValue(), qint16(1));
        QCOMPARE(picker.guid(), QString("guid-b"));
        QCOMPARE(picker.value(), QString("https://media.example.org/b"));
        QCOMPARE(picker.property("returnValue").toInt(), 1);
    }

    void picksByDoubleClick()
    {
        AssetPicker picker;
        picker.Init(m_client.get(), "");
        use(picker, [&] {
            openFolder(picker);
            ListTesting::doubleClick(*list(picker), 1);
        });
        QCOMPARE(picker.returnValue(), qint16(1));
        QCOMPARE(picker.guid(), QString("guid-b"));
    }

    void picksByTheEnterKey()
    {
        AssetPicker picker;
        picker.Init(m_client.get(), "");
        use(picker, [&] {
            openFolder(picker);
            ListTesting::click(*list(picker), 1);
            QTest::keyClick(list(picker)->view(), Qt::Key_Return);
        });
        QCOMPARE(picker.returnValue(), qint16(1));
    }

    void picksNothingWhenCancelledOrClosed()
    {
        AssetPicker picker;
        for (const bool byButton : {true, false}) {
            picker.Init(m_client.get(), "");
            use(picker, [&] {
                openFolder(picker);
                ListTesting::click(*list(picker), 1);
                if (byButton)
                    QTest::mouseClick(picker.findChild<QPushButton *>("CancelButton"),
                                      Qt::LeftButton);
                else
                    picker.close();
            });
            QCOMPARE(picker.returnValue(), qint16(2));
            QCOMPARE(picker.guid(), QString());
            QCOMPARE(picker.value(), QString());
        }
    }

    void beginsEveryUseAnew()
    {
        AssetPicker picker;
        picker.Init(m_client.get(), "");
        use(picker, [&] {
            openFolder(picker);
            ListTesting::doubleClick(*list(picker), 1);
        });
        const QPointer<AssetManager> former = manager(picker);
        picker.Init(m_client.get(), "");
        QVERIFY(!former);
        use(picker, [&] {
            QVERIFY(!ok(picker)->isEnabled());
            QCOMPARE(list(picker)->count(), 0);
            picker.close();
        });
        QCOMPARE(picker.returnValue(), qint16(2));
        QCOMPARE(picker.guid(), QString());
        QCOMPARE(picker.value(), QString());
    }

    void staysOpenWhenTheServiceFails()
    {
        AssetPicker picker;
        picker.Init(m_client.get(), "");
        int number = 0;
        connect(&picker, &Zel::Form::runtimeError,
                [&](const Zel::RuntimeError &error) { number = error.number(); });
        use(picker, [&] {
            openFolder(picker);
            ListTesting::click(*list(picker), 1);
            m_client->failNext("GetAssetValue", Zel::RuntimeError(55, "no"));
            QTest::mouseClick(ok(picker), Qt::LeftButton);
            QVERIFY(picker.isVisible());
            picker.close();
        });
        QCOMPARE(number, 55);
        QCOMPARE(picker.returnValue(), qint16(2));
    }

private:
    static AssetManager *manager(const AssetPicker &picker)
    {
        return picker.findChild<AssetManager *>("AssetManager1");
    }

    static Zel::ListView *list(const AssetPicker &picker)
    {
        return picker.findChild<Zel::ListView *>("assetList");
    }

    static Zel::TreeView *tree(const AssetPicker &picker)
    {
        return picker.findChild<Zel::TreeView *>("assetFolderView");
    }

    static QPushButton *ok(const AssetPicker &picker)
    {
        return picker.findChild<QPushButton *>("OKButton");
    }

    static void openFolder(const AssetPicker &picker)
    {
        QTest::mouseClick(tree(picker)->viewport(), Qt::LeftButton, {},
                          tree(picker)->nodeRect("l1").center());
    }

    template <typename Action>
    static void use(AssetPicker &picker, Action action)
    {
        QTimer::singleShot(0, &picker, [&] {
            QVERIFY(QTest::qWaitForWindowActive(&picker));
            action();
        });
        picker.showModal(nullptr);
    }

    std::unique_ptr<ZelTest::RecordingClient> m_client;
};

ZEL_TEST_MAIN(tst_AssetPicker)
#include "tst_assetpicker.moc"
