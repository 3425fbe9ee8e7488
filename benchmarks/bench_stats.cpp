// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_stats [lines]
// How the list of page views of the statistics control fills, paints, sorts and uses memory, beside
// a QTreeWidget, as far as that goes, and beside the bare records put in order by the same texts,
// which no list that sorts by its texts can do without.

#include "measuring.h"
#include "platform/widgets/listview.h"
#include "stats/statscontrol.h"
#include "stats/trafficrows.h"
#include "testsupport/recordingclient.h"

#include <QApplication>
#include <QCollator>
#include <QPushButton>
#include <QTabBar>
#include <QTimer>
#include <QTreeWidget>

#include <functional>
#include <numeric>
#include <random>

using namespace Bench;
using ZelWebServiceControls::PageViewRows;

namespace {

using Records = QXSC::PageViewCollectionPtr;

constexpr int runs = 3;
constexpr int columnCount = 7;
constexpr int sortedColumns[] = {PageViewRows::UserID, PageViewRows::Date, PageViewRows::TimeSpent};
/// More lines take a QTreeWidget gigabytes and minutes.
constexpr int mostTreeLines = 100'000;
constexpr double fillGoal = 0.05;
constexpr double memoryGoal = 0.10;
constexpr double sortGoal = 1.1;

/// Three thousand persons over two days in no order.
Records makeRecords(int count)
{
    std::mt19937 random(20070109);
    QList<QXSC::StatsUserPtr> users;
    for (int i = 0; i < 3000; ++i) {
        QXSC::StatsUser user;
        user.UserID = QStringLiteral("user%1").arg(random() % 1'000'000);
        user.FirstName = QStringLiteral("First%1").arg(i % 100);
        user.LastName = QStringLiteral("Last%1").arg(i % 700);
        user.Email = user.UserID + QStringLiteral("@example.org");
        users << std::make_shared<const QXSC::StatsUser>(user);
    }
    const QDateTime first(QDate(2007, 1, 9), QTime(8, 0));
    auto records = std::make_shared<QXSC::PageViewCollection>();
    records->reserve(count);
    for (int i = 0; i < count; ++i) {
        QXSC::PageViewRecord record;
        record.User = users.at(static_cast<qsizetype>(random() % 3000));
        record.ViewDate = first.addSecs(static_cast<qint64>(random() % 172'800));
        record.TimeSpent = static_cast<qint32>(random() % 7200);
        record.Closed = random() % 5 != 0;
        records->add(std::make_shared<const QXSC::PageViewRecord>(record));
    }
    return records;
}

/// What one contender took: milliseconds, and bytes a line.
struct Figures
{
    double fill = 0;
    double sorts[3] = {};
    double memory = 0;
};

/// The control itself with a client that answers at once. Filling it is running a report.
struct OurList
{
    OurList()
        : list(control.findChild<Zel::ListView *>(QStringLiteral("pageViewList")))
    {
        control.Init(&client, QStringLiteral("d1"));
        control.findChild<QTabBar *>(QStringLiteral("reportsTabs"))->setCurrentIndex(2);
        while (control.findChild<QTimer *>(QStringLiteral("Timer1"))->isActive())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    QWidget *widget() { return &control; }

    QWidget *viewport() { return list->viewport(); }

    void fill(const Records &records)
    {
        client.pageViews = records;
        control.findChild<QPushButton *>(QStringLiteral("runReportCmd"))->click();
    }

    void sort(int column) { emit list->columnClicked(column); }

    ZelTest::RecordingClient client;
    ZelWebServiceControls::StatsControl control;
    Zel::ListView *list;
};

/// The same texts in every cell.
struct TreeWidget
{
    TreeWidget()
    {
        tree.setColumnCount(columnCount);
        tree.setRootIsDecorated(false);
        tree.setUniformRowHeights(true);
    }

    QWidget *widget() { return &tree; }

    QWidget *viewport() { return tree.viewport(); }

    void fill(const Records &records)
    {
        const PageViewRows rows(records);
        QList<QTreeWidgetItem *> items;
        items.reserve(records->count());
        for (qsizetype row = 0; row < records->count(); ++row) {
            auto *item = new QTreeWidgetItem;
            for (int column = 0; column < columnCount; ++column)
                item->setText(column, rows.text(row, column));
            items.append(item);
        }
        tree.addTopLevelItems(items);
    }

    void sort(int column) { tree.sortItems(column, Qt::DescendingOrder); }

    QTreeWidget tree;
};

template <typename Contender>
Figures measureOnce(const Records &records)
{
    Contender contender;
    contender.widget()->resize(1200, 700);
    contender.widget()->show();
    QApplication::processEvents();
    const auto shown = [&contender](const std::function<void()> &work) {
        return milliseconds([&] {
            work();
            contender.viewport()->repaint();
        });
    };
    Figures figures;
    const double before = bytesInUse();
    figures.fill = shown([&] { contender.fill(records); });
    for (size_t i = 0; i < 3; ++i)
        figures.sorts[i] = shown([&] { contender.sort(sortedColumns[i]); });
    figures.memory = (bytesInUse() - before) / static_cast<double>(records->count());
    return figures;
}

Figures medians(const std::vector<Figures> &all)
{
    const auto median = [&all](const std::function<double(const Figures &)> &field) {
        std::vector<double> values;
        for (const Figures &figures : all)
            values.push_back(field(figures));
        return medianOf(values);
    };
    Figures result;
    result.fill = median([](const Figures &each) { return each.fill; });
    result.memory = median([](const Figures &each) { return each.memory; });
    for (size_t i = 0; i < 3; ++i)
        result.sorts[i] = median([i](const Figures &each) { return each.sorts[i]; });
    return result;
}

template <typename Contender>
Figures measure(const Records &records)
{
    std::vector<Figures> all;
    for (int run = 0; run < runs; ++run)
        all.push_back(measureOnce<Contender>(records));
    return medians(all);
}

/// Texts are made, each gets the collator's sort key, and the records are put in order by them.
void sortBare(std::vector<QXSC::PageViewRecordPtr> &records, const PageViewRows &rows, int column)
{
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<QCollatorSortKey> keys;
    keys.reserve(records.size());
    for (size_t row = 0; row < records.size(); ++row)
        keys.push_back(collator.sortKey(rows.text(static_cast<qsizetype>(row), column)));
    std::vector<size_t> order(records.size());
    std::iota(order.begin(), order.end(), size_t(0));
    std::stable_sort(order.begin(), order.end(),
                     [&keys](size_t a, size_t b) { return keys[b].compare(keys[a]) < 0; });
    std::vector<QXSC::PageViewRecordPtr> sorted;
    sorted.reserve(records.size());
    for (const size_t at : order)
        sorted.push_back(records[at]);
    records.swap(sorted);
}

Figures measureBare(const Records &records)
{
    const PageViewRows rows(records);
    std::vector<Figures> all(runs);
    for (Figures &figures : all) {
        std::vector<QXSC::PageViewRecordPtr> bare;
        figures.fill = milliseconds([&] { bare.assign(records->begin(), records->end()); });
        for (size_t i = 0; i < 3; ++i) {
            bare.assign(records->begin(), records->end());
            figures.sorts[i] = milliseconds([&] { sortBare(bare, rows, sortedColumns[i]); });
        }
    }
    return medians(all);
}

void printHead(int lines)
{
    std::printf("\n%d page views, median of %d runs, milliseconds (memory: bytes a line)\n\n",
                lines, runs);
    std::printf("%-28s %12s %12s %12s %12s %10s\n", "", "fill, paint", "\"User ID\"", "\"Date\"",
                "\"Tme Spent\"", "memory");
}

void printRow(const char *name, const Figures &figures)
{
    std::printf("%-28s %12.2f %12.2f %12.2f %12.2f %10.1f\n", name, figures.fill, figures.sorts[0],
                figures.sorts[1], figures.sorts[2], figures.memory);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    const int lines = argc > 1 ? std::max(1, std::atoi(argv[1])) : 1'000'000;

    const int treeLines = std::min(lines, mostTreeLines);
    const Records few = makeRecords(treeLines);
    const Figures oursFew = measure<OurList>(few);
    const Figures tree = measure<TreeWidget>(few);
    printHead(treeLines);
    printRow("statistics control", oursFew);
    printRow("QTreeWidget", tree);

    const Records all = makeRecords(lines);
    const Figures ours = measure<OurList>(all);
    const Figures bare = measureBare(all);
    printHead(lines);
    printRow("statistics control", ours);
    printRow("bare records, same texts", bare);

    std::printf("\n");
    printGoal("fill and first paint", oursFew.fill, tree.fill, "QTreeWidget's", fillGoal);
    printGoal("memory a line", oursFew.memory, tree.memory, "QTreeWidget's", memoryGoal);
    printGoal("sort by \"User ID\"", ours.sorts[0], bare.sorts[0], "the bare records'", sortGoal);
    printGoal("sort by \"Date\"", ours.sorts[1], bare.sorts[1], "the bare records'", sortGoal);
    printGoal("sort by \"Tme Spent\"", ours.sorts[2], bare.sorts[2], "the bare records'", sortGoal);
    std::printf("%-32s %12.4f of QTreeWidget's (which sorts by code units, this by locale)\n",
                "sort by \"Date\"", oursFew.sorts[1] / tree.sorts[1]);
    return 0;
}
