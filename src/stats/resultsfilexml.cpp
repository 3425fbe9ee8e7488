// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// Results as XML Spreadsheet 2003.
#include "stats/resultsfilewriters.h"
#include "stats/workbooklayout.h"
#include "stats/workbooksink.h"
#include "stats/workbooktemplate.h"

#include "platform/core/numbertext.h"

#include <QIODevice>
#include <QXmlStreamWriter>

namespace ZelWebServiceControls {

namespace {

/// The template as other programs can read it: without the line breaks inside namespace values.
QByteArray repaired(QStringView text)
{
    return text.toString()
        .replace(QLatin1String("spreadshe\r\net"), QLatin1String("spreadsheet"))
        .replace(QLatin1String("spreads\r\nheet"), QLatin1String("spreadsheet"))
        .replace(QLatin1String("\r\n"), QLatin1String("\n"))
        .toUtf8();
}

class XmlSink final : public WorkbookSink
{
public:
    explicit XmlSink(QIODevice &device)
        : m_xml(&device)
    {
    }

    bool hasError() const { return m_xml.hasError(); }

    void beginSheet(const QString &name, const QList<int> &widths) override
    {
        m_xml.writeStartElement(QStringLiteral("Worksheet"));
        m_xml.writeAttribute(QStringLiteral("ss:Name"), name);
        m_xml.writeStartElement(QStringLiteral("Table"));
        for (const int width : widths) {
            m_xml.writeEmptyElement(QStringLiteral("Column"));
            m_xml.writeAttribute(QStringLiteral("ss:AutoFitWidth"), QStringLiteral("0"));
            m_xml.writeAttribute(QStringLiteral("ss:Width"), QString::number(width));
        }
        newLine();
    }

    void endSheet() override
    {
        m_xml.writeEndElement();
        m_xml.writeEndElement();
        newLine();
    }

    void beginRow(int height) override
    {
        m_xml.writeStartElement(QStringLiteral("Row"));
        if (height)
            m_xml.writeAttribute(QStringLiteral("ss:Height"), QString::number(height));
        m_next = 0;
    }

    void endRow() override
    {
        m_xml.writeEndElement();
        newLine();
    }

    void text(qsizetype column, const QString &text, CellLook look) override
    {
        beginCell(column, look);
        beginData(QStringLiteral("String"));
        writeLines(text);
        endCell();
    }

    void number(qsizetype column, double value, CellLook look) override
    {
        beginCell(column, look);
        writeNumber(value);
        endCell();
    }

    void formula(qsizetype column, const CellFormula &formula, double value, CellLook look) override
    {
        beginCell(column, look);
        m_xml.writeAttribute(QStringLiteral("ss:Formula"), formula.relativeText());
        writeNumber(value);
        endCell();
    }

    void blank(qsizetype column, CellLook look) override
    {
        beginCell(column, look);
        m_xml.writeEndElement();
    }

private:
    void newLine() { m_xml.writeCharacters(QStringLiteral("\n")); }

    void beginCell(qsizetype column, CellLook look)
    {
        m_xml.writeStartElement(QStringLiteral("Cell"));
        if (column != m_next)
            m_xml.writeAttribute(QStringLiteral("ss:Index"), QString::number(column + 1));
        if (look != CellLook::Plain) {
            m_xml.writeAttribute(QStringLiteral("ss:StyleID"), u's' + QString::number(int(look)));
        }
        m_next = column + 1;
    }

    void beginData(const QString &type)
    {
        m_xml.writeStartElement(QStringLiteral("Data"));
        m_xml.writeAttribute(QStringLiteral("ss:Type"), type);
    }

    void writeNumber(double value)
    {
        beginData(QStringLiteral("Number"));
        m_xml.writeCharacters(Zel::invariantNumberText(value));
    }

    void endCell()
    {
        m_xml.writeEndElement();
        m_xml.writeEndElement();
    }

    /// Line feeds as references: as characters readers may take them for blanks.
    void writeLines(const QString &text)
    {
        qsizetype from = 0;
        for (qsizetype at = text.indexOf(u'\n'); at >= 0; at = text.indexOf(u'\n', from)) {
            m_xml.writeCharacters(text.sliced(from, at - from));
            m_xml.writeEntityReference(QStringLiteral("#10"));
            from = at + 1;
        }
        m_xml.writeCharacters(text.sliced(from));
    }

    QXmlStreamWriter m_xml;
    qsizetype m_next = 0;
};

} // namespace

bool writeXmlResults(const ResultsModels &models, const WorkbookLayout &layout, QIODevice &device)
{
    const QByteArray head = repaired(workbookTemplateHead());
    const QByteArray tail = repaired(workbookTemplateTail());
    if (device.write(head) != head.size())
        return false;
    XmlSink sink(device);
    writeSheets(models, layout, sink);
    return !sink.hasError() && device.write(tail) == tail.size();
}

} // namespace ZelWebServiceControls
