// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/latebound.h"

#include "common/contract/projectrecord.h"
#include "platform/widgets/control.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QLineEdit>
#include <QTest>

using QXSC::ProjectRecord;
using QXSC::ProjectRecordPtr;
using Zel::LateBound;
using ZelTest::errorNumber;

/// A control with members of every kind.
class Panel : public Zel::Control
{
    Q_OBJECT
    Q_PROPERTY(QString Label READ Label WRITE setLabel)
    Q_PROPERTY(int Count READ Count)
    Q_PROPERTY(QVariant Anything MEMBER m_anything)
    Q_PROPERTY(Kind Kind MEMBER m_kind)
    Q_PROPERTY(QWidget *Partner MEMBER m_partner)
    Q_PROPERTY(QString value MEMBER m_lowerValue)

public:
    enum class Kind
    {
        Small,
        Big
    };
    Q_ENUM(Kind)

    using Control::Control;

    QString Label() const { return m_label; }

    void setLabel(const QString &label)
    {
        if (label == QLatin1String("bad"))
            throw Zel::RuntimeError(Zel::RuntimeError::InvalidProcedureCall);
        m_label = label;
    }

    int Count() const { return 3; }

    Q_INVOKABLE QString Value() const { return QStringLiteral("from Value()"); }

    Q_INVOKABLE void SetLabel(const QString &text) { m_label = text; }

    Q_INVOKABLE void setlabelwidth(int) { m_calls << QStringLiteral("lower"); }

    Q_INVOKABLE void SetLabelWidth(qint16 width) { m_calls << QString::number(width); }

    Q_INVOKABLE QString Init(const QString &first, int second = 7, bool third = false)
    {
        return QStringLiteral("%1 %2 %3").arg(first).arg(second).arg(third ? "True" : "False");
    }

    Q_INVOKABLE double Half(double number) { return number / 2; }

    Q_INVOKABLE bool Not(bool value) { return !value; }

    Q_INVOKABLE QVariant Echo(const QVariant &value) { return value; }

    Q_INVOKABLE QXSC::ProjectRecordPtr Same(const QXSC::ProjectRecordPtr &record) { return record; }

    Q_INVOKABLE QWidget *Holder(QWidget *widget) { return widget; }

    Q_INVOKABLE void Fail() { throw Zel::RuntimeError(457, QStringLiteral("twice")); }

    Q_INVOKABLE void Vanish() { delete this; }

    Q_INVOKABLE QString Join(const QString &a, const QString &b, const QString &c, const QString &d,
                             const QString &e, const QString &f, const QString &g, const QString &h,
                             const QString &i, const QString &j)
    {
        return a + b + c + d + e + f + g + h + i + j;
    }

    QStringList m_calls;

public slots:

    void ShowAssetPicker() { m_calls << QStringLiteral("picker"); }

signals:
    void Selected();

protected:
    Q_INVOKABLE void Guarded() { m_calls << QStringLiteral("protected"); }

private slots:

    void onClicked() { m_calls << QStringLiteral("private"); }

private:
    QString m_label = QStringLiteral("label");
    QString m_lowerValue = QStringLiteral("from value");
    QVariant m_anything;
    Kind m_kind = Kind::Small;
    QWidget *m_partner = nullptr;
};

/// Has members of its own and one that hides that of its base.
class BiggerPanel : public Panel
{
    Q_OBJECT

public:
    using Panel::Panel;

    Q_INVOKABLE QString Value() const { return QStringLiteral("from the bigger one"); }
};

/// A host's own class: no control.
class HostLine : public QLineEdit
{
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

    Q_INVOKABLE QString GetValue() const { return text(); }
};

class TestLateBound : public ZelTest::TestCase
{
    Q_OBJECT

    static QVariant call(QObject *object, const char *name, const QVariantList &arguments = {})
    {
        return LateBound(object).call(QString::fromLatin1(name), arguments);
    }

    static int callError(QObject *object, const char *name, const QVariantList &arguments = {})
    {
        return errorNumber([&] { call(object, name, arguments); });
    }

    static int letError(QObject *object, const char *name, const QVariant &value)
    {
        return errorNumber([&] { LateBound(object).let(QString::fromLatin1(name), value); });
    }

private slots:

    void propertiesAreReadAndSet()
    {
        Panel panel;
        const LateBound late(&panel);
        QCOMPARE(late.object(), &panel);
        late.let(QStringLiteral("Label"), QStringLiteral("Intro text"));
        QCOMPARE(late.get(QStringLiteral("Label")), QVariant(QStringLiteral("Intro text")));
        QCOMPARE(late.get(QStringLiteral("Count")), QVariant(3));
        QCOMPARE(late.call(QStringLiteral("Count")), QVariant(3));
    }

    void methodsAndSlotsAreCalled()
    {
        Panel panel;
        QCOMPARE(call(&panel, "SetLabel", {QStringLiteral("x")}), QVariant());
        QCOMPARE(panel.Label(), QStringLiteral("x"));
        call(&panel, "ShowAssetPicker");
        QCOMPARE(panel.m_calls, QStringList{QStringLiteral("picker")});
        QCOMPARE(LateBound(&panel).get(QStringLiteral("Value")),
                 QVariant(QStringLiteral("from Value()")));
    }

    void exactCaseComesBeforeAnyCase()
    {
        Panel panel;
        QCOMPARE(call(&panel, "value"), QVariant(QStringLiteral("from value")));
        QCOMPARE(call(&panel, "Value"), QVariant(QStringLiteral("from Value()")));
        call(&panel, "SetLabelWidth", {5});
        call(&panel, "setlabelwidth", {5});
        QCOMPARE(panel.m_calls, (QStringList{QStringLiteral("5"), QStringLiteral("lower")}));
        LateBound(&panel).let(QStringLiteral("LABEL"), QStringLiteral("any"));
        QCOMPARE(LateBound(&panel).get(QStringLiteral("label")), QVariant(QStringLiteral("any")));
        // The method of exactly this name counts, not the property of nearly this name.
        QCOMPARE(letError(&panel, "Value", QStringLiteral("x")), 450);
        call(&panel, "sETlABEL", {QStringLiteral("case")});
        QCOMPARE(panel.Label(), QStringLiteral("case"));
    }

    void theNumberOfArgumentsChoosesTheMethod()
    {
        Panel panel;
        QCOMPARE(call(&panel, "Init", {QStringLiteral("a")}).toString(),
                 QStringLiteral("a 7 False"));
        QCOMPARE(call(&panel, "Init", {QStringLiteral("a"), 8}).toString(),
                 QStringLiteral("a 8 False"));
        QCOMPARE(call(&panel, "Init", {QStringLiteral("a"), 8, true}).toString(),
                 QStringLiteral("a 8 True"));
        const QVariantList ten{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
        QCOMPARE(call(&panel, "Join", ten).toString(), QStringLiteral("0123456789"));
    }

    void aWrongNumberOfArgumentsIsError450()
    {
        Panel panel;
        QCOMPARE(callError(&panel, "Init"), 450);
        QCOMPARE(callError(&panel, "init", {1, 2, 3, 4}), 450);
        QCOMPARE(callError(&panel, "Label", {1}), 450);
        QCOMPARE(callError(&panel, "Join", QVariantList(11)), 450);
        QCOMPARE(letError(&panel, "Count", 4), 450);
        QCOMPARE(letError(&panel, "SetLabel", QStringLiteral("x")), 450);
    }

    void anUnknownNameIsError438()
    {
        Panel panel;
        for (const char *name : {"SetLabels", "", " Label", "Label ", "m_label", "L\xe4"}) {
            QCOMPARE(callError(&panel, name), 438);
            QCOMPARE(callError(&panel, name, QVariantList(11)), 438);
            QCOMPARE(letError(&panel, name, 1), 438);
        }
        try {
            call(&panel, "NoSuchName");
        } catch (const Zel::RuntimeError &error) {
            QVERIFY(error.description().contains(QStringLiteral("\"NoSuchName\"")));
        }
    }

    void whatIsNotPublicAndSignalsAreNoMembers()
    {
        Panel panel;
        for (const char *name : {"Guarded", "onClicked", "Selected", "changed", "runtimeError"})
            QCOMPARE(callError(&panel, name), 438);
        QVERIFY(panel.m_calls.isEmpty());
    }

    void membersOfTheControlBaseAndOfQtAreOutOfReach()
    {
        Panel panel;
        panel.resize(50, 60);
        for (const char *name : {"PropertyBagText", "enabled", "geometry", "pos", "size", "x",
                                 "font", "close", "deleteLater", "update", "objectName", "show"})
            QCOMPARE(callError(&panel, name), 438);
        QCOMPARE(letError(&panel, "objectName", QStringLiteral("x")), 438);
        // In twips, never Qt's pixels.
        QCOMPARE(call(&panel, "width"), QVariant(50.0 * 1440 / panel.logicalDpiX()));
    }

    void aClassOfTheHostIsReachedBelowQWidget()
    {
        HostLine line;
        call(&line, "setText", {QStringLiteral("typed")});
        QCOMPARE(call(&line, "GetValue"), QVariant(QStringLiteral("typed")));
        QCOMPARE(call(&line, "Text"), QVariant(QStringLiteral("typed")));
        LateBound(&line).let(QStringLiteral("MaxLength"), 3);
        QCOMPARE(line.text(), QStringLiteral("typ"));
        QCOMPARE(callError(&line, "deleteLater"), 438);
        QCOMPARE(callError(&line, "close"), 438);
        QCOMPARE(callError(&line, "minimumWidth"), 438);
    }

    void theMostDerivedMemberCounts()
    {
        BiggerPanel panel;
        QCOMPARE(call(&panel, "Value"), QVariant(QStringLiteral("from the bigger one")));
        QCOMPARE(call(&panel, "Count"), QVariant(3));
    }

    void argumentsConvert()
    {
        Panel panel;
        QCOMPARE(call(&panel, "Half", {QStringLiteral("3")}), QVariant(1.5));
        QCOMPARE(call(&panel, "Half", {true}), QVariant(-0.5));
        QCOMPARE(call(&panel, "Not", {QStringLiteral("False")}), QVariant(true));
        QCOMPARE(call(&panel, "Not", {-1}), QVariant(false));
        call(&panel, "SetLabelWidth", {2.5});
        call(&panel, "SetLabelWidth", {QStringLiteral("3")});
        QCOMPARE(panel.m_calls, (QStringList{QStringLiteral("2"), QStringLiteral("3")}));
        call(&panel, "SetLabel", {true});
        QCOMPARE(panel.Label(), QStringLiteral("True"));
        LateBound(&panel).let(QStringLiteral("Label"), 1.5);
        QCOMPARE(panel.Label(), QStringLiteral("1.5"));
        LateBound(&panel).let(QStringLiteral("Kind"), 1);
        QCOMPARE(panel.property("Kind").value<Panel::Kind>(), Panel::Kind::Big);
    }

    void whatDoesNotConvertIsError13AndTooMuchError6()
    {
        Panel panel;
        QCOMPARE(callError(&panel, "Half", {QStringLiteral("much")}), 13);
        QCOMPARE(callError(&panel, "Not", {QStringLiteral("yes")}), 13);
        QCOMPARE(callError(&panel, "SetLabel", {QVariant::fromValue<QObject *>(&panel)}), 13);
        QCOMPARE(callError(&panel, "Holder", {5}), 13);
        QCOMPARE(callError(&panel, "Same", {QStringLiteral("guid")}), 13);
        QCOMPARE(callError(&panel, "SetLabelWidth", {32768}), 6);
        QCOMPARE(letError(&panel, "Kind", QStringLiteral("Huge")), 13);
        QCOMPARE(letError(&panel, "Partner", QVariant::fromValue<QObject *>(this)), 13);
        QVERIFY(panel.m_calls.isEmpty());
    }

    void variantsPassUntouched()
    {
        Panel panel;
        const QVariantList values{QVariant::fromValue(qint16(5)), QStringLiteral("text"),
                                  QStringList{QStringLiteral("QXStudio")}, QVariant()};
        for (const QVariant &value : values) {
            const QVariant echo = call(&panel, "Echo", {value});
            QCOMPARE(echo, value);
            QCOMPARE(echo.typeId(), value.typeId());
            LateBound(&panel).let(QStringLiteral("Anything"), value);
            QCOMPARE(call(&panel, "Anything").typeId(), value.typeId());
        }
    }

    void recordsPassByReference()
    {
        Panel panel;
        const auto record = std::make_shared<const ProjectRecord>();
        const QVariant back = call(&panel, "Same", {QVariant::fromValue<ProjectRecordPtr>(record)});
        QCOMPARE(back.value<ProjectRecordPtr>().get(), record.get());
        const QVariant none = call(&panel, "Same", {QVariant::fromValue(ProjectRecordPtr())});
        QVERIFY(none.isValid());
        QCOMPARE(none.value<ProjectRecordPtr>(), nullptr);
    }

    void objectsPassAsTheirOwnClasses()
    {
        Panel panel;
        QObject *object = &panel;
        QCOMPARE(call(&panel, "Holder", {QVariant::fromValue(object)}).value<QWidget *>(), &panel);
        QCOMPARE(call(&panel, "Holder", {QVariant::fromValue(nullptr)}).value<QWidget *>(),
                 nullptr);
        LateBound(&panel).let(QStringLiteral("Partner"), QVariant::fromValue(object));
        QCOMPARE(panel.property("Partner").value<QWidget *>(), &panel);
    }

    void errorsOfTheMemberReachTheCaller()
    {
        Panel panel;
        try {
            call(&panel, "Fail");
            QFAIL("nothing was thrown");
        } catch (const Zel::RuntimeError &error) {
            QCOMPARE(error.number(), 457);
            QCOMPARE(error.description(), QStringLiteral("twice"));
        }
        QCOMPARE(letError(&panel, "Label", QStringLiteral("bad")), 5);
    }

    void anObjectThatIsGoneIsError91()
    {
        auto *panel = new Panel;
        const LateBound late(panel);
        QCOMPARE(late.call(QStringLiteral("Vanish")), QVariant());
        QCOMPARE(late.object(), nullptr);
        QCOMPARE(errorNumber([&] { late.get(QStringLiteral("Label")); }), 91);
        QCOMPARE(errorNumber([&] { late.let(QStringLiteral("Width"), 5); }), 91);
        QCOMPARE(errorNumber([&] { late.call(QStringLiteral("Nothing")); }), 91);
        QCOMPARE(callError(nullptr, "Label"), 91);
    }
};

ZEL_TEST_MAIN(TestLateBound)
#include "tst_latebound.moc"
