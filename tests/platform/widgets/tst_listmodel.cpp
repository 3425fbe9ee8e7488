// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "listtesting.h"
#include "platform/widgets/listmodel.h"
#include "testsupport/testcase.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

using namespace Zel;

namespace {

/// Rows whose texts cannot be had.
class BadRows : public ListRowProvider
{
public:
    qsizetype rowCount() const override { return 2; }

    QString text(qsizetype row, int) const override
    {
        throw RuntimeError(RuntimeError::TypeMismatch, QString::number(row));
    }
};

/// Rows that say all that a provider can say.
class RichRows : public ListLines
{
public:
    int smallIcon(qsizetype) const override { return 2; }

    int largeIcon(qsizetype) const override { return 3; }

    bool isChecked(qsizetype row) const override { return row == 1; }

    bool isGhosted(qsizetype row) const override { return row == 0; }

    QColor colour(qsizetype, int column) const override
    {
        return column == 1 ? QColor(Qt::blue) : QColor();
    }
};

} // namespace

class TestListModel : public ZelTest::TestCase
{
    Q_OBJECT

    std::unique_ptr<ListModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;

    QVariant at(int position, int role, int column = 0) const
    {
        return m_model->index(position, column).data(role);
    }

    void fill()
    {
        auto rows = std::make_shared<RichRows>();
        rows->add(QStringLiteral("zero"), {QStringLiteral("0")}, 100);
        rows->add(QStringLiteral("one"), {QStringLiteral("1")}, 101);
        rows->add(QStringLiteral("two"), {}, 102);
        m_model->setProvider(rows);
    }

private slots:

    void init()
    {
        TestCase::init();
        m_model = std::make_unique<ListModel>();
        m_tester = std::make_unique<QAbstractItemModelTester>(
            m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_model->addColumn({QStringLiteral("Name"), 4145, {}, Qt::AlignLeft});
        m_model->addColumn(
            {QStringLiteral("Created"), 1900, QStringLiteral("DATE"), Qt::AlignRight});
    }

    void cleanup()
    {
        m_tester.reset();
        m_model.reset();
    }

    void answersTheProvider()
    {
        fill();
        QCOMPARE(m_model->rowCount(), 3);
        QCOMPARE(at(1, Qt::DisplayRole).toString(), QStringLiteral("one"));
        QCOMPARE(at(1, Qt::DisplayRole, 1).toString(), QStringLiteral("1"));
        QCOMPARE(at(2, Qt::DisplayRole, 1).toString(), QString());
        QCOMPARE(at(2, TagRole, 1), QVariant(102));
        QCOMPARE(at(0, SmallIconRole), QVariant(2));
        QCOMPARE(at(0, LargeIconRole), QVariant(3));
        QCOMPARE(at(1, CheckedRole), QVariant(true));
        QCOMPARE(at(0, GhostedRole), QVariant(true));
        QCOMPARE(at(0, Qt::ForegroundRole, 1).value<QColor>(), QColor(Qt::blue));
        QVERIFY(!at(0, Qt::ForegroundRole).isValid());
        QCOMPARE(at(2, RecordIndexRole).value<qsizetype>(), 2);
        QVERIFY(!at(2, Qt::EditRole).isValid());
    }

    void headersHaveCaptionTagAndWidth()
    {
        QCOMPARE(m_model->headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(),
                 QStringLiteral("Created"));
        QCOMPARE(m_model->headerData(1, Qt::Horizontal, ColumnTagRole).toString(),
                 QStringLiteral("DATE"));
        QCOMPARE(m_model->headerData(1, Qt::Horizontal, ColumnWidthRole).toDouble(), 1900.0);
        QVERIFY(m_model->headerData(1, Qt::Horizontal, Qt::TextAlignmentRole).toInt() &
                Qt::AlignRight);
        QVERIFY(!m_model->headerData(2, Qt::Horizontal, Qt::DisplayRole).isValid());
        QVERIFY(!m_model->headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
    }

    void whatCodeSetsLiesOverTheProvider()
    {
        fill();
        QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
        m_model->setText(1, 1, QStringLiteral("uno"));
        m_model->setSmallIcon(1, 0);
        m_model->setLargeIcon(1, 1);
        m_model->setChecked(1, false);
        m_model->setGhosted(1, true);
        m_model->setLineColour(1, Qt::red);
        m_model->setCellColour(1, 0, Qt::green);
        m_model->setCellTag(1, 1, QStringLiteral("cell"));
        QCOMPARE(changed.size(), 8);
        QCOMPARE(changed.first().at(0).toModelIndex().row(), 1);
        QCOMPARE(at(1, Qt::DisplayRole, 1).toString(), QStringLiteral("uno"));
        QCOMPARE(at(1, SmallIconRole), QVariant(0));
        QCOMPARE(at(1, LargeIconRole), QVariant(1));
        QCOMPARE(at(1, CheckedRole), QVariant(false));
        QCOMPARE(at(1, GhostedRole), QVariant(true));
        QCOMPARE(at(1, Qt::ForegroundRole, 1).value<QColor>(), QColor(Qt::red));
        QCOMPARE(at(1, Qt::ForegroundRole, 0).value<QColor>(), QColor(Qt::green));
        QCOMPARE(at(1, CellTagRole, 1).toString(), QStringLiteral("cell"));
        QVERIFY(!at(1, CellTagRole, 0).isValid());
        // The other lines are as they were.
        QCOMPARE(at(2, SmallIconRole), QVariant(2));
        QCOMPARE(at(2, GhostedRole), QVariant(false));

        m_model->setCellColour(1, 0, QColor());
        QCOMPARE(at(1, Qt::ForegroundRole, 0).value<QColor>(), QColor(Qt::red));
        fill();
        QCOMPARE(at(1, Qt::DisplayRole, 1).toString(), QStringLiteral("1"));
        QCOMPARE(at(1, GhostedRole), QVariant(false));
    }

    void theDecorationIsTheSmallIcon()
    {
        fill();
        QVERIFY(!at(0, Qt::DecorationRole).isValid());
        QPixmap red(16, 16);
        red.fill(Qt::red);
        QPixmap green(16, 16);
        green.fill(Qt::green);
        m_model->setSmallImages({QIcon(red), QIcon(green)});
        const auto colour = [this](int position) {
            return at(position, Qt::DecorationRole)
                .value<QIcon>()
                .pixmap(16)
                .toImage()
                .pixelColor(8, 8);
        };
        QCOMPARE(colour(0), QColor(Qt::green));
        m_model->setSmallIcon(0, 1);
        QCOMPARE(colour(0), QColor(Qt::red));
        for (int none : {0, 3, -1}) {
            m_model->setSmallIcon(0, none);
            QVERIFY(at(0, Qt::DecorationRole).value<QIcon>().isNull());
        }
        QVERIFY(!at(0, Qt::DecorationRole, 1).isValid());
    }

    void checkBoxesAreOnTheFirstColumnWhileShown()
    {
        fill();
        QVERIFY(!at(1, Qt::CheckStateRole).isValid());
        QVERIFY(!m_model->setData(m_model->index(1, 0), Qt::Unchecked, Qt::CheckStateRole));
        m_model->setCheckBoxes(true);
        QCOMPARE(at(1, Qt::CheckStateRole).toInt(), int(Qt::Checked));
        QVERIFY(!at(1, Qt::CheckStateRole, 1).isValid());
        QVERIFY(m_model->index(1, 0).flags() & Qt::ItemIsUserCheckable);
        QVERIFY(!(m_model->index(1, 1).flags() & Qt::ItemIsUserCheckable));
    }

    void onlyAPersonsCheckIsReported()
    {
        fill();
        m_model->setCheckBoxes(true);
        QSignalSpy checks(m_model.get(), &ListModel::checkChanged);
        m_model->setChecked(2, true);
        QCOMPARE(checks.size(), 0);
        QVERIFY(m_model->setData(m_model->index(2, 0), Qt::Unchecked, Qt::CheckStateRole));
        QCOMPARE(checks.size(), 1);
        QCOMPARE(checks.first(), QVariantList({QVariant::fromValue<qsizetype>(2), false}));
        // Already so: nothing has changed.
        QVERIFY(m_model->setData(m_model->index(2, 0), Qt::Unchecked, Qt::CheckStateRole));
        QCOMPARE(checks.size(), 1);
    }

    void anErrorOfTheProviderIsAnEmptyCellToViewsAndAnErrorToCode()
    {
        m_model->setProvider(std::make_shared<BadRows>());
        QVERIFY(!at(0, Qt::DisplayRole).isValid());
        QCOMPARE(at(0, RecordIndexRole).value<qsizetype>(), 0);
        QVERIFY_THROWS_EXCEPTION(RuntimeError, (void)m_model->text(0, 0));
    }

    void persistentIndexesFollowTheirRecordsThroughASort()
    {
        fill();
        const QPersistentModelIndex one = m_model->indexOf(1, 1);
        m_model->setSorted({2, 0, 1});
        QCOMPARE(one.row(), 2);
        QCOMPARE(one.column(), 1);
        QCOMPARE(at(0, Qt::DisplayRole).toString(), QStringLiteral("two"));
        QCOMPARE(at(0, RecordIndexRole).value<qsizetype>(), 2);
        m_model->setSorted({});
        QCOMPARE(one.row(), 1);
    }

    void aFilterShowsOnlyWhatPasses()
    {
        fill();
        m_model->setSorted({2, 1, 0});
        m_model->setFilter([](qsizetype row) { return row != 1; });
        QCOMPARE(m_model->rowCount(), 2);
        QCOMPARE(at(0, Qt::DisplayRole).toString(), QStringLiteral("two"));
        QVERIFY(!m_model->indexOf(1).isValid());
        QCOMPARE(m_model->count(), 3);
        // A hidden line can be changed.
        m_model->setText(1, 0, QStringLiteral("uno"));
        m_model->setFilter({});
        QCOMPARE(at(1, Qt::DisplayRole).toString(), QStringLiteral("uno"));
    }

    void recordsAtTheEndAreTakenIn()
    {
        auto rows = std::make_shared<ListLines>();
        rows->add(QStringLiteral("first"));
        m_model->setProvider(rows);
        m_model->setGhosted(0, true);
        rows->add(QStringLiteral("second"));
        rows->add(QStringLiteral("third"));
        QCOMPARE(m_model->rowCount(), 1);
        QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
        m_model->appendRows();
        QCOMPARE(inserted.size(), 1);
        QCOMPARE(m_model->rowCount(), 3);
        QCOMPARE(at(0, GhostedRole), QVariant(true));
        m_model->appendRows();
        QCOMPARE(inserted.size(), 1);
    }

    void withoutAProviderThereIsNothing()
    {
        fill();
        m_model->setProvider(nullptr);
        QCOMPARE(m_model->rowCount(), 0);
        QVERIFY(!m_model->contains(0));
        m_model->clearColumns();
        QCOMPARE(m_model->columnCount(), 0);
    }
};

ZEL_TEST_MAIN(TestListModel)
#include "tst_listmodel.moc"
