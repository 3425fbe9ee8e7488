// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fieldtesting.h"
#include "pagedialog.h"
#include "records/customwidget.h"
#include "testsupport/recordingclient.h"
#include "testsupport/testcase.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using ZelWebServiceControls::CustomWidget;

/// The field whose editor is a page.
class tst_CustomWidget : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        m_dialog = new PageDialog;
        m_made = 0;
        ZelWebServiceControls::setComponentDialogMaker([this] {
            ++m_made;
            return m_dialog;
        });
        m_form = std::make_unique<QWidget>();
        m_field = new CustomWidget(m_form.get());
        m_form->show();
    }

    void cleanup()
    {
        m_form.reset();
        if (!m_made)
            delete m_dialog;
        ZelWebServiceControls::setComponentDialogMaker({});
    }

    void handsAllToTheDialog()
    {
        m_field->setQXS(&m_client);
        m_field->setUrl("http://127.0.0.1:1/nexo/tools_v2/Components/color.html");
        m_field->SetLabel("Title colour");
        m_field->setValue("#2762c9");
        m_field->SetAssetDependencies("a,b");
        m_field->setSource("color.html");
        click();
        QCOMPARE(m_dialog->client, &m_client);
        QCOMPARE(m_dialog->given,
                 (QStringList{"http://127.0.0.1:1/nexo/tools_v2/Components/color.html",
                              "Title colour", "#2762c9", "a,b"}));
    }

    void anEmptyClientIsHandedOnAsItIs()
    {
        m_dialog->client = &m_client;
        click();
        QCOMPARE(m_dialog->client, nullptr);
    }

    void dialogIs800By600UnlessTold()
    {
        click();
        QCOMPARE(m_dialog->sizes, QList<QSize>{QSize(800, 600)});
    }

    void zeroIsTheUsualSize_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<QSize>("expected");
        QTest::newRow("both") << 0 << 0 << QSize(800, 600);
        QTest::newRow("width") << 0 << 333 << QSize(800, 333);
        QTest::newRow("height") << 444 << 0 << QSize(444, 600);
        QTest::newRow("none") << 444 << 333 << QSize(444, 333);
    }

    void zeroIsTheUsualSize()
    {
        QFETCH(int, width);
        QFETCH(int, height);
        m_field->SetDimensions(1000, 1000);
        m_field->SetDimensions(qint16(width), qint16(height));
        click();
        QTEST(m_dialog->sizes.constLast(), "expected");
        // Every use has the entry's size, whatever became of it in the last one.
        m_dialog->resize(100, 100);
        click();
        QTEST(m_dialog->sizes.constLast(), "expected");
    }

    void takesWhatThePageGivesBack()
    {
        m_field->setValue("before");
        m_dialog->whenShown = [this] { accept("after", "x,y"); };
        click();
        QCOMPARE(m_field->GetValue(), QString("after"));
        QCOMPARE(m_field->getAssetDependencies(), QString("x,y"));
        // The box beside the button keeps what was set.
        QCOMPARE(FieldTesting::child<QLineEdit>(m_field, "widgetValue")->text(), QString("before"));
        // And the next use begins with it.
        click();
        QCOMPARE(m_dialog->given.mid(2), (QStringList{"after", "x,y"}));
    }

    void keepsItsValueWhenCancelled()
    {
        m_field->setValue("before");
        m_field->SetAssetDependencies("a");
        m_dialog->value = "after";
        m_dialog->dependencies = "x";
        for (const qint16 code : {qint16(2), qint16(0), qint16(-1), qint16(3)}) {
            m_dialog->code = code;
            click();
            QCOMPARE(m_field->GetValue(), QString("before"));
            QCOMPARE(m_field->getAssetDependencies(), QString("a"));
        }
    }

    void valueIsTheStoredOne()
    {
        m_field->setValue("stored");
        auto *box = FieldTesting::child<QLineEdit>(m_field, "widgetValue");
        QCOMPARE(box->text(), QString("stored"));
        box->setText("shown");
        QCOMPARE(m_field->GetValue(), QString("stored"));
    }

    void captionIsShownAsItStands()
    {
        auto *button = FieldTesting::child<QPushButton>(m_field, "widgetButton");
        QVERIFY(!button->text().isEmpty());
        m_field->setButtonText("Colour");
        QCOMPARE(button->text(), QString("Colour"));
        m_field->setButtonText("Cut & paste");
        QCOMPARE(button->text(), QString("Cut && paste")); // which shows one "&"
        QVERIFY(button->shortcut().isEmpty());
    }

    void oneDialogServesAllFields()
    {
        CustomWidget other(m_form.get());
        other.show();
        click();
        QTest::mouseClick(FieldTesting::child(&other, "widgetButton"), Qt::LeftButton);
        QCOMPARE(m_made, 1);
        QCOMPARE(m_dialog->sizes.size(), 2);
    }

    void aDialogInUseIsLeftAlone()
    {
        CustomWidget other(m_form.get());
        other.show();
        other.setUrl("second");
        m_field->setUrl("first");
        m_dialog->whenShown = [&] {
            FieldTesting::child<QPushButton>(&other, "widgetButton")->click();
            m_dialog->close();
        };
        click();
        QCOMPARE(m_dialog->given.constFirst(), QString("first"));
    }

    void errorsReachTheHostAndKeepTheValue()
    {
        const QSignalSpy errors(m_field, &Zel::Control::runtimeError);
        m_field->setValue("before");
        m_dialog->failure = std::make_shared<Zel::RuntimeError>(429, "no pages here");
        click();
        QCOMPARE(errors.count(), 1);
        QCOMPARE(errors.at(0).at(0).value<Zel::RuntimeError>().description(),
                 QString("no pages here"));
        QCOMPARE(m_field->GetValue(), QString("before"));
        QVERIFY(m_dialog->sizes.isEmpty());
    }

    void survivesLosingItsFormWhileTheDialogIsOpen()
    {
        const QPointer<CustomWidget> field(m_field);
        const QPointer<PageDialog> dialog(m_dialog);
        m_dialog->code = 1;
        m_dialog->whenShown = [this] { m_form.reset(); };
        click();
        QVERIFY(!field);
        QVERIFY(!dialog); // it goes with the window it belongs to, and is made again when needed
    }

    void onlyAnAcceptedPageIsAnEdit()
    {
        int edits = 0;
        m_field->setEditedHandler([&edits] { ++edits; });
        click();
        QCOMPARE(edits, 0);
        m_dialog->whenShown = [this] { accept("after", QString()); };
        click();
        QCOMPARE(edits, 1);
    }

private:
    void click() const
    {
        QTest::mouseClick(FieldTesting::child(m_field, "widgetButton"), Qt::LeftButton);
    }

    void accept(const QString &value, const QString &dependencies)
    {
        m_dialog->code = 1;
        m_dialog->value = value;
        m_dialog->dependencies = dependencies;
        m_dialog->close();
    }

    ZelTest::RecordingClient m_client;
    QPointer<PageDialog> m_dialog;
    int m_made = 0;
    std::unique_ptr<QWidget> m_form;
    CustomWidget *m_field = nullptr;
};

ZEL_TEST_MAIN(tst_CustomWidget)
#include "tst_customwidget.moc"
