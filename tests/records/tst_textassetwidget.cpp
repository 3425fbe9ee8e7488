// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assets/assetmanager.h"
#include "assets/assetpicker.h"
#include "fieldtesting.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"
#include "records/textassetwidget.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/recordingclient.h"
#include "testsupport/testcase.h"

#include "../platform/widgets/listtesting.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using ZelWebServiceControls::AssetPicker;
using ZelWebServiceControls::FolderNames;
using ZelWebServiceControls::TextAssetWidget;

/// The field that holds an asset.
class tst_TextAssetWidget : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        m_client = std::make_unique<ZelTest::RecordingClient>();
        m_client->assetFolders = ZelTest::assetFolderList({{0, 0, false, QString(), "R"},
                                                           {1, 0, true, "Art", "R"},
                                                           {2, 0, true, "QXStudio", "R"}});
        QXSC::AssetRecord asset;
        asset.guid = "guid-curtain";
        asset.assetName = "Curtain";
        asset.assetType = "Image";
        m_client->folderAssets[1] = ZelTest::assetList({asset});
        m_client->assetValues["guid-curtain"] = "files/curtain.png";
        m_form = std::make_unique<QWidget>();
        m_field = new TextAssetWidget(m_form.get());
        m_form->show();
        m_form->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_form.get()));
    }

    void cleanup() { m_form.reset(); }

    void startsWithoutAnAsset()
    {
        QCOMPARE(m_field->getGuid(), QString());
        QCOMPARE(m_field->GetValue(), QString());
    }

    void takesThePickedAsset()
    {
        m_field->setQXS(m_client.get());
        QStringList trail;
        connect(box(), &QLineEdit::textChanged, this, [&] { trail << m_field->getGuid(); });
        pick([](AssetPicker &picker) { pickCurtain(picker); });
        QCOMPARE(m_field->getGuid(), QString("guid-curtain"));
        QCOMPARE(m_field->GetValue(), QString("files/curtain.png"));
        // The guid was there when the text changed.
        QCOMPARE(trail, QStringList{"guid-curtain"});
    }

    void anAssetWithoutValueLosesItsGuidWhereTheBoxIsEmptied()
    {
        m_client->assetValues["guid-curtain"] = QString();
        m_field->setQXS(m_client.get());
        m_field->setValue("before");
        pick([](AssetPicker &picker) { pickCurtain(picker); });
        QCOMPARE(m_field->GetValue(), QString());
        QCOMPARE(m_field->getGuid(), QString());
        // The box is empty already: nothing changes in it, so nothing is cleared.
        pick([](AssetPicker &picker) { pickCurtain(picker); });
        QCOMPARE(m_field->getGuid(), QString("guid-curtain"));
    }

    void aCancelledPickerChangesNothing()
    {
        m_field->setQXS(m_client.get());
        m_field->setValue("before");
        m_field->setGuid("guid-before");
        pick([](AssetPicker &picker) { picker.close(); });
        QCOMPARE(m_field->getGuid(), QString("guid-before"));
        QCOMPARE(m_field->GetValue(), QString("before"));
    }

    void handsFilterAndFoldersToThePicker()
    {
        m_field->setQXS(m_client.get());
        m_field->setExt("jpg,png");
        m_field->setRestrictedFolders(std::make_shared<FolderNames>(FolderNames{"QXStudio"}));
        pick([](AssetPicker &picker) {
            auto *tree = picker.findChild<Zel::TreeView *>("assetFolderView");
            QVERIFY(tree->contains("l1"));
            QVERIFY(!tree->contains("l2"));
            pickCurtain(picker);
        });
        QVERIFY(m_client->calls().contains("GetFolderAssets(1, \"\", \"jpg,png\", 0, 0)"));
    }

    void allFieldsShareOnePicker()
    {
        TextAssetWidget other(m_form.get());
        other.setQXS(m_client.get());
        m_field->setQXS(m_client.get());
        const AssetPicker *first = nullptr;
        pick([&](AssetPicker &picker) {
            first = &picker;
            picker.close();
        });
        later([&](AssetPicker &picker) {
            QCOMPARE(&picker, first);
            picker.close();
        });
        other.ShowAssetPicker();
        QVERIFY(first);
    }

    void showAssetPickerIsAClick()
    {
        m_field->setQXS(m_client.get());
        later([](AssetPicker &picker) { pickCurtain(picker); });
        m_field->ShowAssetPicker();
        QCOMPARE(m_field->getGuid(), QString("guid-curtain"));
    }

    void withoutAClientSaysSoAndOpensThePickerAllTheSame_data()
    {
        QTest::addColumn<bool>("gone");
        QTest::newRow("never set") << false;
        QTest::newRow("gone") << true;
    }

    void withoutAClientSaysSoAndOpensThePickerAllTheSame()
    {
        QFETCH(bool, gone);
        if (gone) {
            m_field->setQXS(m_client.get());
            m_client.reset();
        }
        // The box has said it; nothing more is to be reported.
        const QSignalSpy errors(m_field, &Zel::Control::runtimeError);
        ZelTest::MessageBoxDriver boxes;
        boxes.click(QMessageBox::Ok);
        m_field->setValue("before");
        m_field->setGuid("guid-before");
        bool opened = false;
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [&opened] {
            if (auto *picker = qobject_cast<AssetPicker *>(QApplication::activeModalWidget())) {
                opened = true;
                picker->close();
            }
        });
        watch.start(0);
        QTest::mouseClick(button(), Qt::LeftButton);
        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(boxes.shown().constFirst().text, QString("qxs not supplied"));
        QCOMPARE(boxes.shown().constFirst().buttons, QMessageBox::Ok);
        QVERIFY(opened);
        QCOMPARE(errors.count(), 0);
        QCOMPARE(m_field->GetValue(), QString("before"));
        QCOMPARE(m_field->getGuid(), QString("guid-before"));
    }

    void emptyingTheBoxForgetsTheAsset_data()
    {
        QTest::addColumn<bool>("byKeys");
        QTest::newRow("by keys") << true;
        QTest::newRow("by code") << false;
    }

    void emptyingTheBoxForgetsTheAsset()
    {
        QFETCH(bool, byKeys);
        m_field->setValue("curtain");
        m_field->setGuid("guid-curtain");
        if (byKeys) {
            QTest::keyClick(box(), Qt::Key_A, Qt::ControlModifier);
            QTest::keyClick(box(), Qt::Key_Delete);
        } else {
            m_field->setValue(QString());
        }
        QCOMPARE(m_field->GetValue(), QString());
        QCOMPARE(m_field->getGuid(), QString());
    }

    void otherTextKeepsTheAsset()
    {
        m_field->setValue("c");
        m_field->setGuid("guid-curtain");
        QTest::keyClick(box(), Qt::Key_End);
        QTest::keyClicks(box(), "xy");
        QCOMPARE(m_field->getGuid(), QString("guid-curtain"));
        // Replaced in one go: the box is never empty.
        QTest::keyClick(box(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box(), "z");
        QCOMPARE(m_field->GetValue(), QString("z"));
        QCOMPARE(m_field->getGuid(), QString("guid-curtain"));
        m_field->setValue("another");
        QCOMPARE(m_field->getGuid(), QString("guid-curtain"));
    }

    void anEmptyBoxThatIsEmptiedKeepsTheAsset()
    {
        m_field->setGuid("guid-curtain");
        m_field->setValue(QString());
        QCOMPARE(m_field->getGuid(), QString("guid-curtain"));
    }

    void pickingIsAnEdit()
    {
        int edits = 0;
        m_field->setEditedHandler([&edits] { ++edits; });
        m_field->setQXS(m_client.get());
        pick([](AssetPicker &picker) { picker.close(); });
        QCOMPARE(edits, 0);
        pick([](AssetPicker &picker) { pickCurtain(picker); });
        QCOMPARE(edits, 1);
    }

    void survivesLosingItsFormWhileThePickerIsOpen()
    {
        m_field->setQXS(m_client.get());
        const QPointer<TextAssetWidget> field(m_field);
        pick([this](AssetPicker &) { m_form.reset(); });
        QVERIFY(!field);
    }

    void serviceErrorsReachTheHost()
    {
        m_field->setQXS(m_client.get());
        const QSignalSpy errors(m_field, &Zel::Control::runtimeError);
        m_client->failNext("GetAssetFolders", Zel::RuntimeError(75));
        QTest::mouseClick(button(), Qt::LeftButton);
        QCOMPARE(errors.count(), 1);
        QCOMPARE(errors.at(0).at(0).value<Zel::RuntimeError>().number(), 75);
    }

private:
    QLineEdit *box() const { return FieldTesting::child<QLineEdit>(m_field, "widgetValue"); }

    QPushButton *button() const { return FieldTesting::child<QPushButton>(m_field, "Command1"); }

    /// Does something once the picker is open.
    template <typename Act>
    void later(Act act)
    {
        QTimer::singleShot(0, this, [act] {
            auto *picker = qobject_cast<AssetPicker *>(QApplication::activeModalWidget());
            QVERIFY(picker);
            act(*picker);
        });
    }

    template <typename Act>
    void pick(Act act)
    {
        later(act);
        QTest::mouseClick(button(), Qt::LeftButton);
    }

    static void pickCurtain(AssetPicker &picker)
    {
        auto *tree = picker.findChild<Zel::TreeView *>("assetFolderView");
        const QModelIndex art = tree->model()->index(0, 0, tree->model()->index(0, 0));
        tree->expandAll();
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualRect(art).center());
        ListTesting::doubleClick(*picker.findChild<Zel::ListView *>("assetList"), 0);
    }

    std::unique_ptr<ZelTest::RecordingClient> m_client;
    std::unique_ptr<QWidget> m_form;
    TextAssetWidget *m_field = nullptr;
};

ZEL_TEST_MAIN(tst_TextAssetWidget)
#include "tst_textassetwidget.moc"
