// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assets/foldernames.h"
#include "recordfixture.h"
#include "records/checkboxwidget.h"
#include "records/customwidget.h"
#include "records/editedfield.h"
#include "records/textareawidget.h"
#include "records/textassetwidget.h"
#include "records/textwidget.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QSpinBox>
#include <QVBoxLayout>

using ZelTest::errorNumber;

namespace {

QStringList trail;

void note(const QString &what)
{
    trail << what;
}

} // namespace

/// A host's own class that notes what it is asked, with all that a field of any type needs.
class NotingField : public QWidget
{
    Q_OBJECT

public:
    explicit NotingField(QWidget *parent)
        : QWidget(parent)
    {
        resize(100, 30);
        hide();
    }

    ~NotingField() override { note("gone"); }

    Q_INVOKABLE void SetLabel(const QString &val)
    {
        note(QString("SetLabel %1%2").arg(val, isHidden() ? " hidden" : ""));
    }

    Q_INVOKABLE void setValue(const QString &val)
    {
        note("setValue " + val);
        m_value = val;
    }

    Q_INVOKABLE void SetLabelWidth(int w)
    {
        const Zel::TwipsRect place = Zel::twipsGeometry(this);
        note(QString("SetLabelWidth %1 at %2, %3 wide").arg(w).arg(place.top).arg(place.width));
        Zel::LateBound(this).let("Height", higher);
    }

    Q_INVOKABLE QString GetValue()
    {
        note("GetValue");
        return m_value;
    }

    Q_INVOKABLE void setExt(const QString &val) { note("setExt " + val); }

    Q_INVOKABLE void setRestrictedFolders(const QVariant &val)
    {
        const auto names = val.value<ZelWebServiceControls::FolderNamesPtr>();
        note(QString("setRestrictedFolders %1 %2").arg(names->count()).arg(names->item(1)));
    }

    Q_INVOKABLE void setQXS(QXSC::ServiceClient *qxs) { note(qxs ? "setQXS" : "setQXS null"); }

    Q_INVOKABLE void setGuid(const QString &val) { note("setGuid " + val); }

    Q_INVOKABLE QString getGuid()
    {
        note("getGuid");
        return "guid";
    }

    Q_INVOKABLE void setUrl(const QString &val) { note("setUrl " + val); }

    Q_INVOKABLE void SetAssetDependencies(const QString &val)
    {
        note("SetAssetDependencies " + val);
    }

    Q_INVOKABLE QString getAssetDependencies()
    {
        note("getAssetDependencies");
        return "dependencies";
    }

    Q_INVOKABLE void SetDimensions(qint16 width, qint16 height)
    {
        note(QString("SetDimensions %1 %2").arg(width).arg(height));
    }

    Q_INVOKABLE void setButtonText(const QString &val) { note("setButtonText " + val); }

    static double higher;

private:
    QString m_value;
};

double NotingField::higher = 400;

/// A host's number field: what a class needs for TEXT entries, and no more.
class NumberField : public QWidget, public ZelWebServiceControls::EditedField
{
    Q_OBJECT

public:
    explicit NumberField(QWidget *parent)
        : QWidget(parent)
        , m_box(new QSpinBox(this))
    {
        auto *layout = new QVBoxLayout(this);
        layout->setContentsMargins({});
        layout->addWidget(m_box);
        resize(200, 30);
        connect(m_box, &QSpinBox::valueChanged, this, [this] { tellEdited(); });
    }

    Q_INVOKABLE void SetLabel(const QString &val) { m_box->setPrefix(val); }

    Q_INVOKABLE void setValue(const QString &val) { m_box->setValue(val.toInt()); }

    Q_INVOKABLE int GetValue() const { return m_box->value(); }

    Q_INVOKABLE void SetLabelWidth(int) {}

private:
    QSpinBox *m_box;
};

/// Lacks a member.
class PoorField : public QWidget
{
    Q_OBJECT

public:
    explicit PoorField(QWidget *parent)
        : QWidget(parent)
    {
    }

    Q_INVOKABLE void SetLabel(const QString &) {}

    Q_INVOKABLE void SetLabelWidth(int) {}

    Q_INVOKABLE void setValue(const QString &val)
    {
        if (val == QLatin1String("bad"))
            throw Zel::RuntimeError(5);
    }
};

/// Forms made of a host's own field classes.
class tst_DataRecordHostFields : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        // What the test before has put in their places.
        using namespace ZelWebServiceControls;
        Zel::ControlRegistry::add<CheckboxWidget>();
        Zel::ControlRegistry::add<CustomWidget>();
        Zel::ControlRegistry::add<TextAreaWidget>();
        Zel::ControlRegistry::add<TextAssetWidget>();
        Zel::ControlRegistry::add<TextWidget>();
        m = std::make_unique<RecordFixture>();
        m->client.componentServer = "https://media.example.org";
        NotingField::higher = 400;
        trail.clear();
    }

    void cleanup() { m.reset(); }

    void aLineOfText()
    {
        introduce<NotingField>("TextWidget");
        m->load({entry("TEXT", "Title", "a")});
        QCOMPARE(trail, (QStringList{"SetLabel Title", widths("Title"), "setValue a"}));
        QVERIFY(m->field("widget_Title")->isVisible());
        QCOMPARE(m->placeOf(m->frame()).height, 500.0);
        trail.clear();
        m->manager->UpdateDataRecord();
        QCOMPARE(trail, QStringList{"GetValue"});
        trail.clear();
        m->load({});
        QCOMPARE(trail, QStringList{"gone"});
    }

    void linesThatAreTheSame()
    {
        for (const auto &[type, name] :
             std::initializer_list<std::pair<const char *, const char *>>{
                 {"TEXTAREA", "TextAreaWidget"}, {"CHECKBOX", "CheckboxWidget"}}) {
            introduce<NotingField>(name);
            trail.clear();
            m->load({entry(type, "Title", "a")});
            QCOMPARE(trail, (QStringList{"SetLabel Title", widths("Title"), "setValue a"}));
            m->load({});
        }
    }

    void anAsset()
    {
        introduce<NotingField>("TextAssetWidget");
        QXSC::DataRecordEntry asset = entry("TEXTASSET", "Logo", "a.png");
        asset.ext = "jpg,png";
        asset.value.guid = "guid-a";
        m->load({asset});
        QCOMPARE(trail,
                 (QStringList{"SetLabel Logo", "setExt jpg,png", "setRestrictedFolders 1 QXStudio",
                              "setQXS", widths("Logo"), "setValue a.png", "setGuid guid-a"}));
        trail.clear();
        m->manager->UpdateDataRecord();
        QCOMPARE(trail, (QStringList{"GetValue", "getGuid"}));
    }

    void aPage()
    {
        introduce<NotingField>("CustomWidget");
        QXSC::DataRecordEntry page = entry("CUSTOM", "Colours", "#1");
        page.source = "color.html";
        page.width = 640;
        page.height = -7;
        page.buttonText = "Choose";
        page.value.assetDependencies = "x,y";
        m->load({page});
        QCOMPARE(trail, (QStringList{
                            "SetLabel Colours",
                            "setUrl https://media.example.org/nexo/tools_v2/Components/color.html",
                            "SetAssetDependencies x,y", "SetDimensions 640 -7",
                            "setButtonText Choose", "setQXS", widths("Colours"), "setValue #1"}));
        trail.clear();
        m->manager->UpdateDataRecord();
        QCOMPARE(trail, (QStringList{"GetValue", "getAssetDependencies"}));
        QCOMPARE(m->manager->GetDataRecordEntry("Colours")->value.assetDependencies,
                 QString("dependencies"));
    }

    void aFieldsOwnHeightCounts()
    {
        introduce<NotingField>("TextWidget");
        NotingField::higher = 400.5;
        m->load({entry("TEXT", "a"), entry("TEXT", "b"), entry("TEXT", "c")});
        // 400.5 is 400, then 800.5 is 800: to the even neighbour each time.
        QCOMPARE(m->placeOf(m->field("widget_b")).top, 400.0);
        QCOMPARE(m->placeOf(m->field("widget_c")).top, 800.0);
        QCOMPARE(m->placeOf(m->frame()).height, 1300.0);
    }

    void theFrameIsHigherThanItsFieldsBy100Or16BitsOverflow()
    {
        introduce<NotingField>("TextWidget");
        NotingField::higher = 32667;
        QCOMPARE(m->loadError({entry("TEXT", "a", "v")}), 0);
        QCOMPARE(m->placeOf(m->frame()).height, 32767.0);
        m->load({});
        NotingField::higher = 32668;
        QCOMPARE(m->loadError({entry("TEXT", "a", "v")}), 6);
        // All was done but for the height of the frame.
        QCOMPARE(m->value("widget_a"), QString("v"));
        QCOMPARE(m->scroll()->Max(), 5000 - 32668);
        QVERIFY(!m->scroll()->isHidden());
        QCOMPARE(m->placeOf(m->frame()).height, 100.0);
    }

    void anyWidgetClassWillDo()
    {
        introduce<NumberField>("TextWidget");
        const QXSC::DataRecordPtr record = m->load({entry("TEXT", "Count ", "12")});
        QTest::keyClick(m->field("widget_Count_")->findChild<QSpinBox *>(), Qt::Key_Up);
        QCOMPARE(m->manager->changedLabels(), QStringList{"Count "});
        m->manager->UpdateDataRecord();
        QCOMPARE(record->entries->item(1)->value.text, QString("13"));
    }

    void hostFieldsTakePartInTheTabOrder()
    {
        introduce<PoorField>("CheckboxWidget"); // has nothing that takes the focus
        introduce<NumberField>("TextWidget");
        m->load({entry("CHECKBOX", "a"), entry("TEXT", "b"), entry("TEXTAREA", "c"),
                 entry("TEXT", "d")});
        const auto box = [this](const char *name) {
            return m->field(name)->findChild<QSpinBox *>();
        };
        m->manager->setFocus();
        QCOMPARE(QApplication::focusWidget(), box("widget_b"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m->box("widget_c"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), box("widget_d"));
    }

    void aHostsFieldTellsItsEdits()
    {
        introduce<NumberField>("TextWidget");
        QStringList edited;
        m->manager->setFieldEditedHandler([&edited](const QString &label) { edited << label; });
        m->load({entry("TEXT", "Count", "0")});
        QTest::keyClick(m->field("widget_Count")->findChild<QSpinBox *>(), Qt::Key_Up);
        QCOMPARE(edited, QStringList{"Count"});
    }

    void aClassWithoutAMemberIsAnError()
    {
        introduce<PoorField>("TextWidget");
        introduce<PoorField>("TextAssetWidget");
        QCOMPARE(m->loadError({entry("TEXT", "a"), entry("TEXTASSET", "b"), entry("TEXT", "c")}),
                 438);
        QCOMPARE(m->fields().size(), 2);
        QCOMPARE(m->loadError({entry("TEXT", "a", "before")}), 0);
        QCOMPARE(errorNumber([this] { m->manager->UpdateDataRecord(); }), 438);
        QCOMPARE(errorNumber([this] { m->manager->changedLabels(); }), 438);
        QCOMPARE(m->manager->GetDataRecordEntry("a")->value.text, QString("before"));
    }

    void errorsOfAFieldEndTheBuild()
    {
        introduce<PoorField>("TextWidget");
        QCOMPARE(m->loadError({entry("TEXT", "a"), entry("TEXT", "b", "bad"), entry("TEXT", "c")}),
                 5);
        QCOMPARE(m->fields(), (QStringList{"widget_a", "widget_b"}));
        // Setting a value is silent about them.
        m->manager->SetDataRecordValue("a", "bad");
    }

    void fieldsAHostHasTakenAreNotIntroducedOver()
    {
        introduce<PoorField>("TextWidget");
        ZelWebServiceControls::introduceFieldWidgets();
        const std::unique_ptr<QWidget> field(
            Zel::ControlRegistry::create("ZelWebServiceControls.TextWidget"));
        QVERIFY(qobject_cast<PoorField *>(field.get()));
    }

private:
    template <typename Field>
    static void introduce(const char *name)
    {
        Zel::ControlRegistry::add(QStringLiteral("ZelWebServiceControls.") + QLatin1String(name),
                                  [](QWidget *parent) -> QWidget * { return new Field(parent); });
    }

    /// What a field notes when it is laid out at the top of the form.
    QString widths(const QString &label) const
    {
        return QString("SetLabelWidth %1 at 0, %2 wide")
            .arg(std::nearbyint(Zel::textWidthTwips(label, m->manager)))
            .arg(8000 - 355);
    }

    std::unique_ptr<RecordFixture> m;
};

ZEL_TEST_MAIN(tst_DataRecordHostFields)
#include "tst_datarecordhostfields.moc"
