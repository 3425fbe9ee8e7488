// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_recordform
// How fast a data record becomes a form on the screen and what it takes of memory, beside the same
// number of labels and text boxes in a QFormLayout.
#include "measuring.h"
#include "records/datarecordmanager.h"
#include "testsupport/recordingclient.h"

#include <QApplication>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>

#include <algorithm>
#include <cstdio>
#include <memory>

using namespace Bench;

namespace {

constexpr int runs = 25;

/// Milliseconds until the form is there and until it is painted, and bytes it holds then.
struct Figures
{
    double build = 0;
    double paint = 0;
    double memory = 0;
};

/// Entries with lines of text, of which every one of `step` is shown.
QXSC::DataRecordPtr makeRecord(int count, int step)
{
    QList<QXSC::DataRecordEntry> entries;
    for (int i = 0; i < count; ++i) {
        QXSC::DataRecordEntry entry;
        entry.type = QStringLiteral("TEXT");
        entry.label = QStringLiteral("Setting number %1").arg(i);
        entry.value.text = QStringLiteral("The value of setting %1").arg(i);
        entry.hidden = i % step != 0;
        entries << entry;
    }
    return ZelTest::dataRecord(entries);
}

void onScreen(QWidget &widget)
{
    widget.resize(700, 800);
    widget.show();
    QApplication::processEvents();
}

Figures ours(const QXSC::DataRecordPtr &record)
{
    ZelTest::RecordingClient client;
    client.dataRecords[QStringLiteral("theme")] = record;
    ZelWebServiceControls::DataRecordManager form;
    form.Init(&client);
    onScreen(form);
    Figures figures;
    const double before = bytesInUse();
    figures.build = milliseconds([&] { form.LoadThemeDataRecord(QStringLiteral("theme")); });
    figures.paint = figures.build + milliseconds([&form] { form.grab(); });
    figures.memory = bytesInUse() - before;
    return figures;
}

Figures formLayout(const QXSC::DataRecordPtr &record)
{
    QScrollArea area;
    area.setWidgetResizable(true);
    onScreen(area);
    Figures figures;
    const double before = bytesInUse();
    figures.build = milliseconds([&] {
        auto *page = new QWidget;
        auto *layout = new QFormLayout(page);
        for (const QXSC::DataRecordEntryPtr &entry : *record->entries) {
            if (!entry->hidden)
                layout->addRow(new QLabel(entry->label), new QLineEdit(entry->value.text));
        }
        area.setWidget(page);
    });
    figures.paint = figures.build + milliseconds([&area] { area.grab(); });
    figures.memory = bytesInUse() - before;
    return figures;
}

/// The least of many runs, which what else the machine does disturbs least; the contenders take
/// turns.
std::pair<Figures, Figures> measure(const QXSC::DataRecordPtr &record)
{
    std::vector<Figures> all[2];
    for (int run = 0; run < runs; ++run) {
        all[0].push_back(ours(record));
        all[1].push_back(formLayout(record));
    }
    const auto least = [](const std::vector<Figures> &figures) {
        Figures result = figures.front();
        for (const Figures &one : figures)
            result = {std::min(result.build, one.build), std::min(result.paint, one.paint),
                      std::min(result.memory, one.memory)};
        return result;
    };
    return {least(all[0]), least(all[1])};
}

void print(const char *name, const Figures &figures)
{
    std::printf("  %-30s %8.2f ms %8.2f ms %10.0f bytes\n", name, figures.build, figures.paint,
                figures.memory);
}

void compare(const char *name, const QXSC::DataRecordPtr &record)
{
    const auto [form, layout] = measure(record);
    std::printf("%s: built, painted, memory\n", name);
    print("record form", form);
    print("QFormLayout", layout);
    printGoal("  build", form.build, layout.build, "QFormLayout's", 1.5);
    printGoal("  build and first paint", form.paint, layout.paint, "QFormLayout's", 1.5);
    printGoal("  memory", form.memory, layout.memory, "QFormLayout's", 1.5);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ZelWebServiceControls::introduceFieldWidgets();
    measure(makeRecord(80, 1)); // fonts and styles are loaded once
    std::printf("Least of %d runs; a field beside a QLabel and a QLineEdit\n\n", runs);
    for (const int shown : {10, 20, 40, 80})
        compare(qPrintable(QStringLiteral("%1 fields").arg(shown)), makeRecord(shown, 1));
    compare("5,000 entries, 80 of them shown (beside 80 rows)", makeRecord(5040, 63));
    return 0;
}
