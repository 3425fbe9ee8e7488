// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_workbook [most-respondents]
// How responses to a survey of 50 questions are grouped and written as a workbook, beside
// libxlsxwriter in constant-memory mode and QXmlStreamWriter writing the same cells, and beside one
// copy of the same bytes, which is the limit; and how the chart loads the workbook that was
// written, beside a bare pass of QXmlStreamReader over the same text.
#include "datavisualization/workbookreader.h"
#include "measuring.h"
#include "stats/surveyusers.h"
#include "stats/workbook.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QTemporaryDir>
#include <QXmlStreamWriter>

#include <cstring>
#include <memory>
#include <sys/resource.h>
#include <xlsxwriter.h>

using namespace Bench;
using namespace ZelWebServiceControls;

namespace {

constexpr int questions = 50;
constexpr int answersOfQuestion = 6;
constexpr double megabyte = 1024.0 * 1024.0;

QXSC::SurveyRecordPtr survey()
{
    auto list = std::make_shared<QXSC::SurveyQuestionCollection>();
    for (int q = 0; q < questions; ++q) {
        auto question = std::make_shared<QXSC::SurveyQuestion>();
        question->guid = QStringLiteral("5b0c6c1e-8a3f-4d57-9e21-0000000000%1").arg(q, 2);
        question->questionTxt = QStringLiteral("How much do you agree with statement %1?").arg(q);
        auto answers = std::make_shared<QXSC::SurveyAnswerCollection>();
        for (int k = 1; k <= answersOfQuestion; ++k) {
            auto answer = std::make_shared<QXSC::SurveyAnswer>();
            answer->guid = QStringLiteral("q%1a%2").arg(q).arg(k);
            answer->answerTxt = QStringLiteral("Choice %1").arg(k);
            answer->Row = qint16(k);
            answer->correct = k == 1 + q % answersOfQuestion;
            answers->add(answer);
        }
        question->answers = answers;
        list->add(question);
    }
    auto record = std::make_shared<QXSC::SurveyRecord>();
    record->questions = list;
    return record;
}

/// Every respondent answers every question but one in twenty. Texts that are equal share their
/// storage, as those of the service client do.
QList<QXSC::SurveyResponse> responses(const QXSC::SurveyRecord &record, int respondents)
{
    QStringList positions;
    for (int k = 1; k <= answersOfQuestion; ++k)
        positions.append(QString::number(k));
    QList<QXSC::SurveyResponse> list;
    list.reserve(qsizetype(respondents) * questions);
    const QDateTime moment(QDate(2026, 3, 4), QTime(10, 0));
    quint32 random = 1;
    for (int r = 0; r < respondents; ++r) {
        const QString user =
            QStringLiteral("c0ffee00-1111-4222-8333-%1").arg(r, 12, 10, QChar(u'0'));
        for (const QXSC::SurveyQuestionPtr &question : *record.questions) {
            random = random * 1664525u + 1013904223u;
            if ((random >> 16) % 20 == 0)
                continue;
            const int k = int((random >> 20) % answersOfQuestion);
            const QXSC::SurveyAnswerPtr &answer = question->answers->item(k + 1);
            list.append(
                {user, question->guid, answer->guid, positions[k], answer->answerTxt, moment});
        }
    }
    return list;
}

/// Forgets the peak so far; the next `peakBytes` is of what comes after.
void forgetPeak()
{
    malloc_trim(0);
    if (FILE *const file = std::fopen("/proc/self/clear_refs", "w")) {
        std::fputs("5", file);
        std::fclose(file);
    }
}

double peakBytes()
{
    double kilobytes = 0;
    if (FILE *const file = std::fopen("/proc/self/status", "r")) {
        char line[256];
        while (std::fgets(line, sizeof line, file)) {
            if (std::strncmp(line, "VmHWM:", 6) == 0)
                kilobytes = std::atof(line + 6);
        }
        std::fclose(file);
    }
    return kilobytes * 1024;
}

/// The rows of the respondents by QXmlStreamWriter, into a text as ours.
qsizetype writtenByQt(const SurveyUsers &users)
{
    QString text;
    QXmlStreamWriter xml(&text);
    const auto cell = [&xml](const QString &style, const QString &type, const QString &value) {
        xml.writeStartElement(QStringLiteral("Cell"));
        xml.writeAttribute(QStringLiteral("ss:StyleID"), style);
        xml.writeStartElement(QStringLiteral("Data"));
        xml.writeAttribute(QStringLiteral("ss:Type"), type);
        xml.writeCharacters(value);
        xml.writeEndElement();
        xml.writeEndElement();
    };
    const QString right = QStringLiteral("s28");
    const QString wrong = QStringLiteral("s29");
    const QString number = QStringLiteral("Number");
    const QString string = QStringLiteral("String");
    const QString skipped = QStringLiteral("(skipped)");
    users.forEachRow([&](const SurveyUsers::Row &row) {
        xml.writeStartElement(QStringLiteral("Row"));
        cell(wrong, string, row.guid);
        for (const SurveyUsers::Cell &of : row.cells)
            cell(of.right ? right : wrong, of.single ? number : string, of.text.value_or(skipped));
        cell(QStringLiteral("s53"), number, QString::number(row.score));
        cell(QStringLiteral("s55"), number, QString::number(row.score / double(questions)));
        xml.writeEndElement();
    });
    return text.size();
}

/// The same cells by libxlsxwriter, each row written to a file at once.
void writtenByLibrary(const SurveyUsers &users, const QByteArray &folder)
{
    lxw_workbook_options options{};
    options.constant_memory = 1;
    QByteArray temporary = folder;
    options.tmpdir = temporary.data();
    const QByteArray name = folder + "/peer.xlsx";
    lxw_workbook *const workbook = workbook_new_opt(name.constData(), &options);
    lxw_worksheet *const sheet = workbook_add_worksheet(workbook, "Responses");
    lxw_format *const right = workbook_add_format(workbook);
    format_set_font_color(right, 0x339966);
    lxw_row_t at = 0;
    users.forEachRow([&](const SurveyUsers::Row &row) {
        lxw_col_t column = 0;
        worksheet_write_string(sheet, at, column++, row.guid.toUtf8().constData(), nullptr);
        for (const SurveyUsers::Cell &of : row.cells) {
            lxw_format *const format = of.right ? right : nullptr;
            if (of.single)
                worksheet_write_number(sheet, at, column++, of.text->toDouble(), format);
            else
                worksheet_write_string(sheet, at, column++, "(skipped)", format);
        }
        worksheet_write_number(sheet, at, column++, row.score, nullptr);
        worksheet_write_number(sheet, at, column++, row.score / double(questions), nullptr);
        ++at;
    });
    workbook_close(workbook);
}

double copied(const QString &text)
{
    const size_t bytes = size_t(text.size()) * sizeof(QChar);
    return milliseconds([&] {
        const std::unique_ptr<char[]> copy(new char[bytes]);
        std::memcpy(copy.get(), text.constData(), bytes);
        // The copy is needed, the compiler is told.
        __asm__ volatile("" : : "r"(copy.get()) : "memory");
    });
}

struct Figures
{
    double load = 0;
    double bare = 0;
    double group = 0;
    double write = 0;
    double copy = 0;
    double qt = 0;
    double library = 0;
};

Figures measure(const QXSC::SurveyRecordPtr &record, int respondents, const QByteArray &folder)
{
    const QList<QXSC::SurveyResponse> list = responses(*record, respondents);
    Figures figures;
    const double before = residentBytes();
    forgetPeak();
    SurveyUsers users;
    figures.group = milliseconds([&] { users.SortResponse(list, record); });
    const double grouped = residentBytes() - before;
    std::vector<double> writes;
    std::vector<double> copies;
    std::vector<double> loads;
    double bytes = 0;
    double peak = 0;
    for (int run = 0; run < 3; ++run) {
        forgetPeak();
        QString text;
        const double start = residentBytes();
        writes.push_back(milliseconds([&] { text = surveyWorkbook(*record, users); }));
        peak = std::max(peak, peakBytes() - start);
        bytes = double(text.size()) * sizeof(QChar);
        copies.push_back(copied(text));
        loads.push_back(milliseconds([&] { ZelDataVisualization::readWorkbook(text); }));
        if (run == 0)
            figures.bare = bareXmlPass(text);
    }
    figures.load = medianOf(loads);
    figures.write = medianOf(writes);
    figures.copy = medianOf(copies);
    // What the peers are handed costs time too; it is not theirs.
    const double reading = milliseconds([&] { users.forEachRow([](const SurveyUsers::Row &) {}); });
    figures.qt = milliseconds([&] { writtenByQt(users); }) - reading;
    figures.library = milliseconds([&] { writtenByLibrary(users, folder); }) - reading;
    std::printf("%8d %9.1f %9.1f %9.1f %9.1f %10.1f %9.1f %9.1f | %8.0f %8.0f | %7.1f %7.1f "
                "%7.1f\n",
                respondents, figures.group, figures.write, figures.copy, figures.qt,
                figures.library, figures.load, figures.bare,
                bytes / megabyte / (figures.write / 1000), bytes / megabyte / (figures.copy / 1000),
                grouped / megabyte, peak / megabyte, bytes / megabyte);
    std::fflush(stdout);
    return figures;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const int most = argc > 1 ? std::atoi(argv[1]) : 200000;
    const QTemporaryDir folder;
    const QXSC::SurveyRecordPtr record = survey();
    std::printf("Respondents x %d questions. Milliseconds; megabytes a second; megabytes.\n",
                questions);
    std::printf("%8s %9s %9s %9s %9s %10s %9s %9s | %8s %8s | %7s %7s %7s\n", "count", "grouping",
                "writing", "copying", "QXmlStr.", "libxlsxwr.", "loading", "bare pass", "writing",
                "copying", "models", "peak", "text");
    measure(record, 200, folder.path().toUtf8()); // wakes everything up
    std::vector<std::pair<int, Figures>> all;
    for (const int respondents : {1000, 10000, 50000, 200000}) {
        if (respondents <= most) {
            all.emplace_back(respondents, measure(record, respondents, folder.path().toUtf8()));
        }
    }
    if (all.empty())
        return 0;
    std::printf("\n");
    const Figures &last = all.back().second;
    printGoal("writing", last.write, last.qt, "QXmlStreamWriter", 0.12);
    printGoal("writing", last.write, last.library, "libxlsxwriter", 0.12);
    printGoal("loading", last.load, last.bare, "a bare QXmlStreamReader pass", 0.20);
    std::printf("%-32s %12.4f of one copy\n", "writing", last.write / last.copy);
    const auto perCell = [](const std::pair<int, Figures> &of, double Figures::*part) {
        return of.second.*part * 1e6 / (double(of.first) * questions);
    };
    for (const auto &of : all) {
        std::printf("%8d respondents: grouping %6.1f, writing %6.1f, loading %6.1f nanoseconds a "
                    "cell\n",
                    of.first, perCell(of, &Figures::group), perCell(of, &Figures::write),
                    perCell(of, &Figures::load));
    }
    return 0;
}
