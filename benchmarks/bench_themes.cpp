// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_themes [themes]
// How long a list of themes takes to load, beside a plain pass of QXmlStreamReader over the same
// definitions, which no reader of them can do without.

#include "measuring.h"
#include "testsupport/recordingclient.h"
#include "themes/themelist.h"

#include <QApplication>
#include <QThread>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <random>

using namespace Bench;

namespace {

constexpr int runs = 7;
constexpr qsizetype definitionSize = 20'000;
constexpr double goal = 1.2;

const QString appVersion = QStringLiteral("3.2.10");
const QString flags = QStringLiteral("type:video,audio;layout:wide");

using Random = std::mt19937;

void writeField(QXmlStreamWriter &writer, const QString &name, const QString &text)
{
    writer.writeStartElement(QStringLiteral("FIELD"));
    writer.writeAttribute(QStringLiteral("name"), name);
    writer.writeCharacters(text);
    writer.writeEndElement();
}

void writePage(QXmlStreamWriter &writer, int page, Random &random)
{
    writer.writeStartElement(QStringLiteral("PAGE"));
    writer.writeAttribute(QStringLiteral("id"), QString::number(page));
    writer.writeAttribute(QStringLiteral("title"), QStringLiteral("Page %1").arg(page));
    for (int i = 0; i < 8; ++i) {
        writer.writeStartElement(QStringLiteral("ELEMENT"));
        for (const char *side : {"left", "top", "width", "height"})
            writer.writeAttribute(QLatin1String(side), QString::number(random() % 1280));
        writer.writeTextElement(QStringLiteral("LABEL"),
                                QStringLiteral("Größe & place of part %1").arg(i));
        writer.writeEndElement();
    }
    writer.writeEndElement();
}

/// A definition of about 20 kB as an editor would write it; no two are alike.
QString definition(Random &random)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("WIZARD"));
    writer.writeAttribute(
        QStringLiteral("studio_version"),
        QStringLiteral("%1.%2.%3").arg(random() % 4).arg(random() % 4).arg(random() % 20));
    writer.writeStartElement(QStringLiteral("CUSTOMFIELDS"));
    writeField(writer, QStringLiteral("type"),
               random() % 4 ? QStringLiteral("video") : QStringLiteral("slides"));
    for (int i = 0; i < 20; ++i)
        writeField(writer, QStringLiteral("colour%1").arg(i), QString::number(random(), 16));
    writeField(writer, QStringLiteral("layout"), QStringLiteral("wide"));
    writer.writeEndElement();
    for (int page = 1; xml.size() < definitionSize; ++page)
        writePage(writer, page, random);
    writer.writeEndDocument();
    return xml;
}

QXSC::ThemeCollectionPtr makeThemes(int count)
{
    Random random(20060914);
    QList<QXSC::ThemeRecord> themes;
    for (int i = 0; i < count; ++i) {
        QXSC::ThemeRecord theme;
        theme.name = QStringLiteral("Theme %1").arg(i);
        theme.wizardXml = definition(random);
        themes << theme;
    }
    return ZelTest::themeList(themes);
}

/// Goes through every definition and looks at nothing. Answers how many are well-formed.
int plainPass(const QXSC::ThemeCollection &themes)
{
    int wellFormed = 0;
    for (const QXSC::ThemeRecordPtr &theme : themes) {
        QXmlStreamReader reader(theme->wizardXml);
        while (!reader.atEnd())
            reader.readNext();
        wellFormed += reader.hasError() ? 0 : 1;
    }
    return wellFormed;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int count = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5'000;
    const QXSC::ThemeCollectionPtr all = makeThemes(count);
    ZelTest::RecordingClient client;
    client.themeLists[QStringLiteral("getFullThemeList_Array")] = all;
    ZelWebServiceControls::ThemeList list;
    list.Init(&client, appVersion, flags); // warms up

    std::vector<double> loads, singles, plains;
    int wellFormed = 0;
    for (int run = 0; run < runs; ++run) {
        loads.push_back(
            milliseconds([&] { list.LoadThemes(QStringLiteral("getFullThemeList_Array")); }));
        plains.push_back(milliseconds([&] { wellFormed = plainPass(*all); }));
        const ZelWebServiceControls::ThemeRules rules(appVersion, flags);
        singles.push_back(milliseconds([&] {
            for (const QXSC::ThemeRecordPtr &theme : *all)
                rules.judge(theme->wizardXml);
        }));
    }

    const double plain = medianOf(plains);
    const double load = medianOf(loads);
    const auto hidden = static_cast<int>(list.hiddenThemes().size());
    std::printf("%d themes with definitions of %.1f kB (%d well-formed), %d of them shown; median "
                "of %d runs, %d cores\n\n",
                count, static_cast<double>(all->item(1)->wizardXml.toUtf8().size()) / 1000,
                wellFormed, count - hidden, runs, QThread::idealThreadCount());
    const auto row = [plain](const char *name, double time) {
        std::printf("%-40s %10.1f ms %8.2f of the plain pass\n", name, time, time / plain);
    };
    row("LoadThemes", load);
    row("deciding on one core alone", medianOf(singles));
    row("plain pass of QXmlStreamReader", plain);
    std::printf("\nLoadThemes beside the plain pass: %.2f, goal %.2f: %s\n", load / plain, goal,
                load / plain <= goal ? "goal met" : "goal missed");
    return 0;
}
