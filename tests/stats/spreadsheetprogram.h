// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

/// LibreOffice without windows and with a profile of its own: opens files, computes their formulas
/// anew and tells what its cells hold.
class SpreadsheetProgram
{
public:
    struct Cell
    {
        QString text;
        bool isText = false;
    };

    using Rows = QList<QList<Cell>>;

    SpreadsheetProgram()
    {
        QDir(m_folder.path()).mkpath(QStringLiteral("profile/user"));
        QFile settings(m_folder.filePath(QStringLiteral("profile/user/registrymodifications.xcu")));
        if (!settings.open(QIODevice::WriteOnly))
            qFatal("the profile cannot be written");
        settings.write(recalculating());
    }

    /// Opens files; `sheet` then tells what they hold.
    void open(const QStringList &fileNames, const QString &inputFilter = QString())
    {
        QStringList arguments{QStringLiteral("-env:UserInstallation=file://") +
                                  m_folder.filePath(QStringLiteral("profile")),
                              QStringLiteral("--headless"), QStringLiteral("--norestore")};
        if (!inputFilter.isEmpty())
            arguments.append(QStringLiteral("--infilter=") + inputFilter);
        // A flat document tells the kind and the full value of every cell.
        arguments.append({QStringLiteral("--convert-to"), QStringLiteral("fods"),
                          QStringLiteral("--outdir"), outFolder()});
        QProcess program;
        program.start(QStringLiteral("soffice"), arguments + fileNames);
        QVERIFY2(program.waitForFinished(240000), qPrintable(program.errorString()));
        QVERIFY2(program.exitCode() == 0, program.readAllStandardError().constData());
    }

    /// The rows of a sheet of an opened file, without what is empty behind the last one.
    Rows sheet(const QString &baseName, const QString &sheetName) const
    {
        QFile file(outFolder() + u'/' + baseName + QStringLiteral(".fods"));
        if (!file.open(QIODevice::ReadOnly)) {
            qCritical("%s is missing", qPrintable(file.fileName()));
            return {};
        }
        QXmlStreamReader xml(&file);
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isStartElement() && xml.qualifiedName() == QLatin1String("table:table") &&
                attribute(xml, "table:name") == sheetName)
                return rowsOf(xml);
        }
        qCritical("%s has no sheet %s", qPrintable(file.fileName()), qPrintable(sheetName));
        return {};
    }

    QString filePath(const QString &name) const { return m_folder.filePath(name); }

    /// Comma-separated values as RFC 4180 has them, with either line end.
    static Rows parsed(const QString &text)
    {
        Rows rows;
        QList<Cell> row;
        Cell cell;
        bool quoted = false;
        for (qsizetype at = 0; at < text.size(); ++at) {
            const QChar c = text[at];
            if (quoted && c == u'"' && at + 1 < text.size() && text[at + 1] == u'"') {
                cell.text += c;
                ++at;
            } else if (c == u'"') {
                quoted = !quoted;
                cell.isText = true;
            } else if (!quoted && (c == u',' || c == u'\n')) {
                row.append(std::exchange(cell, Cell()));
                if (c == u'\n')
                    rows.append(std::exchange(row, {}));
            } else if (quoted || c != u'\r') {
                cell.text += c;
            }
        }
        if (!row.isEmpty() || !cell.text.isEmpty())
            rows.append(row << cell);
        return rows;
    }

private:
    static QString attribute(const QXmlStreamReader &xml, const char *name)
    {
        return xml.attributes().value(QLatin1String(name)).toString();
    }

    static int repeats(const QXmlStreamReader &xml, const char *name)
    {
        const QString count = attribute(xml, name);
        return count.isEmpty() ? 1 : count.toInt();
    }

    static Rows rowsOf(QXmlStreamReader &xml)
    {
        Rows rows;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isEndElement() && xml.qualifiedName() == QLatin1String("table:table"))
                break;
            if (!xml.isStartElement() || xml.qualifiedName() != QLatin1String("table:table-row"))
                continue;
            const int count = repeats(xml, "table:number-rows-repeated");
            const QList<Cell> row = cellsOf(xml);
            for (int i = 0; i < count && (i == 0 || !row.isEmpty()); ++i)
                rows.append(row);
        }
        while (!rows.isEmpty() && rows.last().isEmpty())
            rows.removeLast();
        return rows;
    }

    static QList<Cell> cellsOf(QXmlStreamReader &xml)
    {
        QList<Cell> row;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isEndElement() && xml.qualifiedName() == QLatin1String("table:table-row"))
                break;
            if (!xml.isStartElement() || xml.qualifiedName() != QLatin1String("table:table-cell"))
                continue;
            const int count = repeats(xml, "table:number-columns-repeated");
            const QString type = attribute(xml, "office:value-type");
            const QString value = attribute(xml, "office:value");
            const Cell cell =
                type == QLatin1String("string") ? Cell{paragraphs(xml), true} : Cell{value, false};
            for (int i = 0; i < count && i < 100; ++i)
                row.append(cell);
        }
        while (!row.isEmpty() && row.last().text.isEmpty())
            row.removeLast();
        return row;
    }

    /// The text of a cell: paragraphs are its lines.
    static QString paragraphs(QXmlStreamReader &xml)
    {
        QStringList lines;
        bool inside = false;
        while (!xml.atEnd()) {
            xml.readNext();
            const QStringView name = xml.qualifiedName();
            if (xml.isEndElement() && name == QLatin1String("table:table-cell"))
                break;
            if (name == QLatin1String("text:p")) {
                inside = xml.isStartElement();
                if (inside)
                    lines.append(QString());
            }
            if (xml.isStartElement() && name == QLatin1String("text:s"))
                lines.last() += QString(repeats(xml, "text:c"), u' ');
            else if (xml.isStartElement() && name == QLatin1String("text:tab"))
                lines.last() += u'\t';
            else if (xml.isCharacters() && inside)
                lines.last() += xml.text();
        }
        return lines.join(u'\n');
    }

    QString outFolder() const { return m_folder.filePath(QStringLiteral("out")); }

    static QByteArray recalculating()
    {
        QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<oor:items xmlns:oor=\"http://openoffice.org/2001/registry\">\n";
        for (const char *const mode : {"OOXMLRecalcMode", "ODFRecalcMode"}) {
            text += "<item oor:path=\"/org.openoffice.Office.Calc/Formula/Load\"><prop oor:name=\"";
            text += mode;
            text += "\" oor:op=\"fuse\"><value>0</value></prop></item>\n";
        }
        return text + "</oor:items>\n";
    }

    QTemporaryDir m_folder;
};
