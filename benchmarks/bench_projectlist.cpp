// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_projectlist [lines]
// How the list of projects fills, paints, sorts and uses memory, beside what Qt has for the same
// job.
#include "bench_projectlist.h"

#include "platform/widgets/listview.h"
#include "projects/projectlist.h"
#include "testsupport/recordingclient.h"

#include <QApplication>
#include <QHeaderView>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QTreeWidget>

#include <algorithm>
#include <cstdio>
#include <functional>

using namespace Bench;
using namespace ProjectListBench;

namespace {

constexpr int runs = 5;
constexpr int createdColumn = 2;

/// What one contender took: milliseconds, and bytes a line.
struct Figures
{
    double fill = 0;
    double sortCreated = 0;
    double sortName = 0;
    double memory = 0;
};

/// One contender's list, empty, on the screen.
struct Contender
{
    virtual ~Contender() = default;
    virtual QWidget *widget() = 0;
    virtual QWidget *viewport() = 0;
    virtual void fill(const Records &records) = 0;
    virtual void sort(int column) = 0;
};

/// The control itself, loaded from a client that answers at once.
struct OurList : Contender
{
    OurList()
        : list(control.findChild<Zel::ListView *>(QStringLiteral("projectList")))
    {
    }

    QWidget *widget() override { return &control; }

    QWidget *viewport() override { return list->viewport(); }

    void fill(const Records &records) override
    {
        client.projects = records;
        control.Init(&client, QStringLiteral("webcast"));
    }

    void sort(int column) override { emit list->columnClicked(column); }

    ZelTest::RecordingClient client;
    ZelWebServiceControls::ProjectList control;
    Zel::ListView *list;
};

/// Dates are QDateTime data: as texts QTreeWidget would put them in the wrong order.
struct TreeWidget : Contender
{
    TreeWidget()
    {
        tree.setColumnCount(columnCount);
        tree.setRootIsDecorated(false);
        tree.setUniformRowHeights(true);
    }

    QWidget *widget() override { return &tree; }

    QWidget *viewport() override { return tree.viewport(); }

    void fill(const Records &records) override
    {
        QList<QTreeWidgetItem *> items;
        items.reserve(records->count());
        for (const QXSC::ProjectRecordPtr &record : *records) {
            auto *item = new QTreeWidgetItem;
            for (int column = 0; column < columnCount; ++column)
                item->setData(column, Qt::DisplayRole, value(*record, column));
            items.append(item);
        }
        tree.addTopLevelItems(items);
    }

    void sort(int column) override { tree.sortItems(column, Qt::DescendingOrder); }

    QTreeWidget tree;
};

struct SortFilterProxy : Contender
{
    SortFilterProxy()
    {
        proxy.setSortLocaleAware(true);
        proxy.setSortCaseSensitivity(Qt::CaseInsensitive);
        tree.setRootIsDecorated(false);
        tree.setUniformRowHeights(true);
        tree.setModel(&proxy);
    }

    QWidget *widget() override { return &tree; }

    QWidget *viewport() override { return tree.viewport(); }

    void fill(const Records &records) override
    {
        model.setRecords(records);
        proxy.setSourceModel(&model);
    }

    void sort(int column) override { proxy.sort(column, Qt::DescendingOrder); }

    ProjectModel model;
    QSortFilterProxyModel proxy;
    QTreeView tree;
};

Figures measureOnce(Contender &contender, const Records &records)
{
    contender.widget()->resize(1000, 600);
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
    figures.sortCreated = shown([&] { contender.sort(createdColumn); });
    figures.sortName = shown([&] { contender.sort(0); });
    figures.memory = (bytesInUse() - before) / static_cast<double>(records->count());
    return figures;
}

template <typename Kind>
Figures measure(const Records &records)
{
    std::vector<Figures> all;
    for (int run = 0; run < runs; ++run) {
        Kind contender;
        all.push_back(measureOnce(contender, records));
    }
    const auto median = [&all](double Figures::*field) {
        std::vector<double> values;
        for (const Figures &figures : all)
            values.push_back(figures.*field);
        return medianOf(values);
    };
    return {median(&Figures::fill), median(&Figures::sortCreated), median(&Figures::sortName),
            median(&Figures::memory)};
}

/// What no list can beat: std::sort over 64-bit keys that are there already.
double sortLimit(const Records &records)
{
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        std::vector<qint64> keys;
        for (const QXSC::ProjectRecordPtr &record : *records)
            keys.push_back(record->hasCreated ? record->created.toMSecsSinceEpoch() : 0);
        times.push_back(milliseconds([&keys] { std::sort(keys.begin(), keys.end()); }));
    }
    return medianOf(times);
}

void printRow(const char *name, const Figures &figures)
{
    std::printf("%-32s %12.2f %16.2f %13.2f %14.1f\n", name, figures.fill, figures.sortCreated,
                figures.sortName, figures.memory);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    const int lines = argc > 1 ? std::max(1, std::atoi(argv[1])) : 100'000;
    const Records records = makeRecords(lines);

    const Figures ours = measure<OurList>(records);
    const Figures widget = measure<TreeWidget>(records);
    const Figures proxy = measure<SortFilterProxy>(records);

    std::printf(
        "%d projects, median of %d runs, milliseconds (memory: bytes a line, after the sorts)\n\n",
        lines, runs);
    std::printf("%-32s %12s %16s %13s %14s\n", "", "fill, paint", "sort \"Created\"",
                "sort \"Name\"", "memory");
    printRow("project list", ours);
    printRow("QTreeWidget", widget);
    printRow("QTreeView, sort and filter proxy", proxy);
    std::printf("%-32s %12s %16.2f\n\n", "std::sort over 64-bit keys", "", sortLimit(records));
    printGoal("fill and first paint", ours.fill, widget.fill, "QTreeWidget's", 0.10);
    printGoal("sort by \"Created\"", ours.sortCreated, widget.sortCreated, "QTreeWidget's", 0.05);
    printGoal("memory a line", ours.memory, widget.memory, "QTreeWidget's", 0.25);
    std::printf("%-32s %12.4f of QTreeWidget's (which sorts by code units, this by locale)\n",
                "sort by \"Name\"", ours.sortName / widget.sortName);
    return 0;
}
