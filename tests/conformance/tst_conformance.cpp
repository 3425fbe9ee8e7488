// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "conformancetable.h"
#include "controlmembers.h"
#include "controls.h"
#include "platform/core/variantconversion.h"
#include "platform/widgets/latebound.h"
#include "testsupport/testcase.h"

#include <QDirIterator>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>

using Zel::Control;
using Zel::ControlRegistry;
using Zel::PropertyBag;

namespace {

const QString folder = QStringLiteral(ZEL_SOURCE_DIR "/tests/conformance");

/// A table of a sibling library is named by the whole ProgID.
QString progIdOf(const QString &name)
{
    return name.contains(u'.') ? name : QStringLiteral("ZelWebServiceControls.") + name;
}

/// A line of a table's property bag.
struct Stored
{
    explicit Stored(const QStringList &columns)
        : name(columns.at(1))
        , byDefault(valueOf(columns.at(2), columns.at(3)))
        , other(valueOf(columns.at(2), columns.at(4)))
    {
    }

    static QVariant valueOf(const QString &type, const QString &text)
    {
        if (type == QStringLiteral("boolean"))
            return Zel::booleanFrom(text, QLocale::c());
        if (type == QStringLiteral("color"))
            return Zel::colorFrom(text, QLocale::c());
        return text.mid(1, text.size() - 2);
    }

    PropertyBag bag() const
    {
        PropertyBag result;
        result.write(name, other, byDefault);
        return result;
    }

    QString name;
    QVariant byDefault;
    QVariant other;
};

/// A value that is not `value`.
QVariant anotherThan(const QVariant &value)
{
    if (value.metaType() == QMetaType::fromType<bool>())
        return !value.toBool();
    if (value.metaType() == QMetaType::fromType<QString>())
        return QString(value.toString() + u'x');
    return value.toUInt() ^ 1u;
}

/// The classes in the sources that derive from Control and that hosts make by their ProgIDs: those
/// of the library, and with its name those of ZelDataVisualization. The web images are for other
/// controls.
QStringList controlsInTheSources()
{
    static const QRegularExpression declaration(QStringLiteral(
        "class\\s+ZEL_EXPORT\\s+(\\w+)\\s*(?:final)?\\s*:\\s*public Zel::Control\\b"));
    QStringList names;
    QDirIterator headers(QStringLiteral(ZEL_SOURCE_DIR "/src"), {QStringLiteral("*.h")},
                         QDir::Files, QDirIterator::Subdirectories);
    while (headers.hasNext()) {
        QFile file(headers.next());
        if (!file.open(QFile::ReadOnly))
            continue;
        const QString header = QString::fromUtf8(file.readAll());
        const auto match = declaration.match(header);
        if (!match.hasMatch())
            continue;
        if (header.contains(QStringLiteral("namespace ZelWebServiceControls {")))
            names << match.captured(1);
        else if (header.contains(QStringLiteral("namespace ZelDataVisualization {")))
            names << QStringLiteral("ZelDataVisualization.") + match.captured(1);
    }
    names.sort();
    return names;
}

} // namespace

/// Checks every control against its table; README.md beside this file says what a table holds.
class tst_Conformance : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        introduceControls();
    }

    void everyControlHasATable();

    void tablesAreWellFormed_data() { addTables(); }

    void tablesAreWellFormed();

    void membersAreThoseOfTheTable_data() { addTables(); }

    void membersAreThoseOfTheTable();

    void membersAreReachedByName_data() { addTables(); }

    void membersAreReachedByName();

    void eventsAreThoseOfTheTable_data() { addTables(); }

    void eventsAreThoseOfTheTable();

    void defaultsAreNotStored_data() { addTables(); }

    void defaultsAreNotStored();

    void otherValuesAreStoredUnderTheirNames_data() { addTables(); }

    void otherValuesAreStoredUnderTheirNames();

    void storedValuesAreRead_data() { addTables(); }

    void storedValuesAreRead();

    void nothingElseIsStored_data() { addTables(); }

    void nothingElseIsStored();

    void childrenAreThoseOfTheTable_data() { addTables(); }

    void childrenAreThoseOfTheTable();

private:
    static void addTables();
    static std::unique_ptr<Control> make(Control::Mode mode);
    static ConformanceTable table();
    static QList<Stored> bagOfTable();
};

void tst_Conformance::addTables()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : ConformanceTable::names(folder))
        QTest::newRow(qPrintable(name)) << name;
}

std::unique_ptr<Control> tst_Conformance::make(Control::Mode mode)
{
    QFETCH(QString, name);
    auto *control = qobject_cast<Control *>(ControlRegistry::create(progIdOf(name)));
    Q_ASSERT(control);
    control->setMode(mode);
    return std::unique_ptr<Control>(control);
}

ConformanceTable tst_Conformance::table()
{
    QFETCH(QString, name);
    return ConformanceTable(folder, name);
}

QList<Stored> tst_Conformance::bagOfTable()
{
    QList<Stored> result;
    for (const QStringList &columns : table().lines(QStringLiteral("bag")))
        result << Stored(columns);
    return result;
}

void tst_Conformance::everyControlHasATable()
{
    const QStringList names = ConformanceTable::names(folder);
    QStringList progIds;
    for (const QString &name : names)
        progIds << progIdOf(name);
    progIds.sort();
    QCOMPARE(ControlRegistry::progIds(), progIds);
    QCOMPARE(controlsInTheSources(), names);
}

void tst_Conformance::tablesAreWellFormed()
{
    QCOMPARE(table().problems(), QStringList());
    QVERIFY(!table().lines(QStringLiteral("child")).isEmpty());
}

void tst_Conformance::membersAreThoseOfTheTable()
{
    const auto control = make(Control::Mode::Run);
    const QMetaObject *metaObject = control->metaObject();
    QCOMPARE(metaObject->superClass(), &Control::staticMetaObject);
    QCOMPARE(ControlMembers::properties(metaObject), table().texts(QStringLiteral("property")));
    QCOMPARE(ControlMembers::methods(metaObject), table().texts(QStringLiteral("method")));
    QCOMPARE(ControlMembers::enumerations(metaObject), QStringList());
}

void tst_Conformance::membersAreReachedByName()
{
    const auto control = make(Control::Mode::Design);
    const Zel::LateBound member(control.get());
    for (const QStringList &columns : table().lines(QStringLiteral("property"))) {
        const QVariant value = member.get(columns.at(1));
        QCOMPARE(QString::fromLatin1(value.metaType().name()), columns.at(2));
        if (!columns.at(3).contains(QStringLiteral("let")))
            continue;
        member.let(columns.at(1).toUpper(), anotherThan(value));
        QCOMPARE(member.get(columns.at(1).toLower()), anotherThan(value));
    }
}

void tst_Conformance::eventsAreThoseOfTheTable()
{
    const auto control = make(Control::Mode::Run);
    QCOMPARE(ControlMembers::events(control->metaObject()), table().texts(QStringLiteral("event")));
    QStringList names;
    for (const QStringList &columns : table().lines(QStringLiteral("event")))
        names << columns.at(2);
    QCOMPARE(Control::eventNames(control->metaObject()), names);
}

void tst_Conformance::defaultsAreNotStored()
{
    const auto placed = make(Control::Mode::Run);
    QVERIFY(placed->writePropertyBag().isEmpty());
    const auto read = make(Control::Mode::Run);
    read->readPropertyBag(PropertyBag());
    QVERIFY(read->writePropertyBag().isEmpty());
    for (const Stored &stored : bagOfTable()) {
        QCOMPARE(placed->property(qPrintable(stored.name)), stored.byDefault);
        QCOMPARE(read->property(qPrintable(stored.name)), stored.byDefault);
    }
}

void tst_Conformance::otherValuesAreStoredUnderTheirNames()
{
    for (const Stored &stored : bagOfTable()) {
        const auto control = make(Control::Mode::Design);
        const QSignalSpy changed(control.get(), &Control::changed);
        QVERIFY(stored.byDefault != stored.other);
        QVERIFY(control->setProperty(qPrintable(stored.name), stored.other));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(control->writePropertyBag().names(), QStringList{stored.name});
        QCOMPARE(control->writePropertyBag().read(stored.name), stored.other);
        QVERIFY(control->setProperty(qPrintable(stored.name), stored.byDefault));
        QCOMPARE(changed.count(), 2);
        QVERIFY(control->writePropertyBag().isEmpty());
    }
}

void tst_Conformance::storedValuesAreRead()
{
    for (const Stored &stored : bagOfTable()) {
        const auto control = make(Control::Mode::Run);
        const QSignalSpy changed(control.get(), &Control::changed);
        control->readPropertyBag(stored.bag());
        QCOMPARE(control->property(qPrintable(stored.name)), stored.other);
        QVERIFY(control->writePropertyBag() == stored.bag());
        control->readPropertyBag(PropertyBag());
        QCOMPARE(control->property(qPrintable(stored.name)), stored.byDefault);
        QCOMPARE(changed.count(), 0);
    }
}

void tst_Conformance::nothingElseIsStored()
{
    const auto control = make(Control::Mode::Design);
    for (const QStringList &columns : table().lines(QStringLiteral("property"))) {
        const QByteArray name = columns.at(1).toLatin1();
        control->setProperty(name.constData(), anotherThan(control->property(name.constData())));
    }
    QStringList names;
    for (const Stored &stored : bagOfTable())
        names << stored.name;
    QCOMPARE(control->writePropertyBag().names(), names);
}

void tst_Conformance::childrenAreThoseOfTheTable()
{
    const auto control = make(Control::Mode::Run);
    QStringList actual;
    for (const QObject *child : control->findChildren<QObject *>()) {
        // Qt names parts of its own widgets "qt_...", and the arrows of a tab bar.
        if (child->objectName().isEmpty() ||
            child->objectName().startsWith(QStringLiteral("qt_")) ||
            qobject_cast<QTabBar *>(child->parent()))
            continue;
        const auto *widget = qobject_cast<const QWidget *>(child);
        const bool inControl = child->parent() == control.get();
        actual << QStringLiteral("child %1 %2 %3 %4")
                      .arg(child->objectName(),
                           QString::fromLatin1(child->metaObject()->className()),
                           inControl ? QStringLiteral("-") : child->parent()->objectName(),
                           widget && widget->isHidden() ? QStringLiteral("hidden")
                                                        : QStringLiteral("shown"));
    }
    QStringList expected = table().texts(QStringLiteral("child"));
    // The order of children is that of their stacking and nothing that a host binds to.
    actual.sort();
    expected.sort();
    QCOMPARE(actual, expected);
}

ZEL_TEST_MAIN(tst_Conformance)
#include "tst_conformance.moc"
