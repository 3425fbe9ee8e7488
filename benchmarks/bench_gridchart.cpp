// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_gridchart [most respondents]
// How long GridChart takes to load a results workbook of 50 questions, from 1,000 to 200,000
// respondents, beside a bare pass of QXmlStreamReader over the same workbook with its texts
// escaped, which is the least that any reader of it on that class costs.

#include "datavisualization/gridchart.h"
#include "datavisualization/workbookreader.h"
#include "measuring.h"
#include "workbooktext.h"

#include <QApplication>

#include <random>

using namespace Bench;
using ZelDataVisualization::GridChart;

namespace {

constexpr int questions = 50;
constexpr double goal = 0.20;
constexpr double MegaByte = 1e6;

QList<WorkbookText::Question> makeQuestions(int respondents)
{
    QList<WorkbookText::Question> list;
    for (int q = 0; q < questions; ++q) {
        WorkbookText::Question question;
        question.text = QStringLiteral("Question %1: which of these <b>fits & why</b>?").arg(q + 1);
        for (int k = 0; k < 6; ++k)
            question.answers << WorkbookText::Answer{QStringLiteral("Choice %1").arg(k + 1),
                                                     k == q % 6, respondents / 6};
        list << question;
    }
    return list;
}

/// A survey as people answer it: one in twenty answers is skipped, one in ten has two choices.
QString workbook(int respondents, WorkbookText::Form form)
{
    std::mt19937 random(20070125);
    WorkbookText text(makeQuestions(respondents), WorkbookText::Kind::Survey, form);
    text.reserve(qsizetype(respondents) * questions * 68);
    QStringList answers(questions);
    for (int i = 0; i < respondents; ++i) {
        for (QString &answer : answers) {
            const unsigned kind = random() % 20;
            const unsigned choice = random() % 6 + 1;
            answer = kind == 0  ? QString()
                     : kind < 3 ? QStringLiteral("%1,%2").arg(choice).arg(choice % 6 + 1)
                                : QString::number(choice);
        }
        text.addRespondent(QStringLiteral("%1-7c1f-4b52-9a60-0d1f7a2b%2")
                               .arg(random(), 8, 16, QLatin1Char('0'))
                               .arg(i, 4, 16, QLatin1Char('0')),
                           answers);
    }
    return text.text();
}

/// The most memory the process has had.
double peakBytes()
{
    double peak = 0;
    if (FILE *const status = std::fopen("/proc/self/status", "r")) {
        char line[256];
        while (std::fgets(line, sizeof line, status)) {
            long kilobytes = 0;
            if (std::sscanf(line, "VmHWM: %ld kB", &kilobytes) == 1)
                peak = static_cast<double>(kilobytes) * 1024;
        }
        std::fclose(status);
    }
    return peak;
}

void forgetPeak()
{
    if (FILE *const refs = std::fopen("/proc/self/clear_refs", "w")) {
        std::fputs("5", refs);
        std::fclose(refs);
    }
}

struct Measured
{
    double load;
    double bare;
    double cells;
};

Measured measure(int respondents)
{
    const int runs = respondents > 50'000 ? 3 : 5;
    std::vector<double> loads, readings, bares;
    double peak = 0, kept = 0, bytes = 0;
    {
        const QString text = workbook(respondents, WorkbookText::Form::Kept);
        bytes = static_cast<double>(text.size()) * sizeof(QChar);
        for (int run = 0; run < runs; ++run) {
            const double before = residentBytes();
            forgetPeak();
            GridChart chart;
            loads.push_back(milliseconds([&] {
                if (!chart.LoadWorkbookXml(text))
                    std::printf("not understood: %s\n", qPrintable(chart.problem()));
            }));
            peak = peakBytes() - before;
            kept = residentBytes() - before;
            readings.push_back(milliseconds([&] { ZelDataVisualization::readWorkbook(text); }));
        }
    }
    {
        const QString text = workbook(respondents, WorkbookText::Form::Escaped);
        for (int run = 0; run < runs; ++run)
            bares.push_back(bareXmlPass(text));
    }
    const Measured result{medianOf(loads), medianOf(bares), respondents * double(questions)};
    std::printf("%8d %9.1f %10.4f %8.0f %10.4f %10.3f %9.1f %9.1f %8.3f\n", respondents,
                bytes / MegaByte, result.load / 1000, bytes / MegaByte / (result.load / 1000),
                medianOf(readings) / 1000, result.bare / 1000, peak / MegaByte, kept / MegaByte,
                result.load / result.bare);
    std::fflush(stdout);
    return result;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int most = argc > 1 ? std::max(1'000, std::atoi(argv[1])) : 200'000;
    measure(1'000); // warms up
    std::printf("\n%d questions; median of 3 or 5 runs\n\n", questions);
    std::printf("%8s %9s %10s %8s %10s %10s %9s %9s %8s\n", "people", "text MB", "load s", "MB/s",
                "reading s", "bare s", "peak MB", "kept MB", "ratio");
    Measured first{}, last{};
    for (int respondents = 1'000; respondents <= most;
         respondents *= respondents == 100'000 ? 2 : 10) {
        last = measure(respondents);
        if (first.cells == 0)
            first = last;
    }
    std::printf("\n");
    printGoal("loading the largest", last.load, last.bare, "the bare pass", goal);
    std::printf("growth per cell from the smallest to the largest: %.2f (linear is 1)\n",
                (last.load / last.cells) / (first.load / first.cells));
    return 0;
}
