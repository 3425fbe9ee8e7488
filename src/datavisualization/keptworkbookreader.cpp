// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The reader of our own workbooks: a scanner that knows what stands where.

#include "datavisualization/visualizationtexts.h"
#include "datavisualization/workbookbuilder.h"
#include "datavisualization/workbookreader.h"

#include <QXmlStreamReader>

#include <cstring>

namespace ZelDataVisualization {

namespace {

/// Goes over a text from literal to literal.
class Scanner
{
public:
    explicit Scanner(QStringView text)
        : m_begin(text.utf16())
        , m_at(m_begin)
        , m_end(m_begin + text.size())
    {
    }

    bool atEnd() const { return m_at == m_end; }

    qsizetype position() const { return m_at - m_begin; }

    template <size_t N>
    bool isAt(const char16_t (&literal)[N]) const
    {
        constexpr size_t length = N - 1;
        return size_t(m_end - m_at) >= length &&
               std::memcmp(m_at, literal, length * sizeof(char16_t)) == 0;
    }

    template <size_t N>
    bool take(const char16_t (&literal)[N])
    {
        if (!isAt(literal))
            return false;
        m_at += N - 1;
        return true;
    }

    void skipBlanks()
    {
        while (m_at != m_end &&
               (*m_at == u' ' || *m_at == u'\r' || *m_at == u'\n' || *m_at == u'\t'))
            ++m_at;
    }

    /// What stands before the next such literal, which is taken too.
    template <size_t N>
    std::optional<QStringView> until(const char16_t (&literal)[N])
    {
        constexpr size_t length = N - 1;
        const char16_t *at = m_at;
        while (size_t(m_end - at) >= length) {
            if (*at == literal[0] && std::memcmp(at, literal, length * sizeof(char16_t)) == 0) {
                const QStringView text(m_at, at);
                m_at = at + length;
                return text;
            }
            ++at;
        }
        return std::nullopt;
    }

    /// The value of an attribute, from its opening quote to behind its closing one.
    std::optional<QStringView> quoted()
    {
        if (take(u"'"))
            return until(u"'");
        if (take(u"\""))
            return until(u"\"");
        return std::nullopt;
    }

private:
    const char16_t *m_begin;
    const char16_t *m_at;
    const char16_t *m_end;
};

struct CellAttributes
{
    quint16 style = 0;
    quint32 index = 0;
    std::optional<QStringView> formula;
    bool isEmpty = false; ///< the element ends with its tag
};

class KeptReader
{
public:
    explicit KeptReader(const QString &text)
        : m_scanner(text)
    {
    }

    WorkbookAnswer read()
    {
        if (!readHead() || !readSheets() || !readTail())
            return {std::nullopt, problem()};
        return {m_builder.take(), QString()};
    }

private:
    bool readHead();
    bool readStyles(QStringView head);
    bool readSheets();
    bool readSheet();
    bool readRow();
    bool readCell();
    bool readAttributes(CellAttributes &attributes);
    bool addData(const CellAttributes &attributes);
    bool readTail();
    std::optional<QStringView> attribute(QStringView wanted);
    bool expect(bool found, const char *what);

    QString problem() const
    {
        return VisualizationTexts::tr("The workbook is damaged: %1 is expected at character %2.")
            .arg(QLatin1String(m_expected))
            .arg(m_scanner.position() + 1);
    }

    Scanner m_scanner;
    WorkbookBuilder m_builder;
    const char *m_expected = "";
};

bool KeptReader::expect(bool found, const char *what)
{
    if (!found)
        m_expected = what;
    return found;
}

/// Everything before the first sheet is well-formed and has the styles.
bool KeptReader::readHead()
{
    const std::optional<QStringView> head = m_scanner.until(u"</Styles>");
    if (!expect(head.has_value(), "</Styles>"))
        return false;
    m_scanner.skipBlanks();
    return expect(readStyles(*head), "<Styles>");
}

bool KeptReader::readStyles(QStringView head)
{
    constexpr qsizetype MostCharacters = 1024 * 1024;
    if (head.size() > MostCharacters)
        return false;
    QXmlStreamReader xml(head.toString() + QStringLiteral("</Styles></Workbook>"));
    QString id;
    QString ground;
    QString parent;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isDTD())
            return false;
        if (xml.isStartElement() && xml.name() == u"Style") {
            ground.clear();
            id = parent = QString();
            for (const QXmlStreamAttribute &one : xml.attributes()) {
                if (one.name() == u"ID")
                    id = one.value().toString();
                else if (one.name() == u"Parent")
                    parent = one.value().toString();
            }
        } else if (xml.isStartElement() && xml.name() == u"Interior") {
            for (const QXmlStreamAttribute &one : xml.attributes()) {
                if (one.name() == u"Color")
                    ground = one.value().toString();
            }
        } else if (xml.isEndElement() && xml.name() == u"Style") {
            m_builder.addStyle(id, ground, parent);
        }
    }
    return !xml.hasError();
}

bool KeptReader::readSheets()
{
    while (m_scanner.take(u"<Worksheet")) {
        if (!readSheet())
            return false;
        m_scanner.skipBlanks();
    }
    return true;
}

/// Reads attributes to the end of the tag, ">" or "/>", and answers the value of one of them.
std::optional<QStringView> KeptReader::attribute(QStringView wanted)
{
    std::optional<QStringView> value;
    for (;;) {
        m_scanner.skipBlanks();
        if (m_scanner.isAt(u">") || m_scanner.isAt(u"/>"))
            return value;
        const std::optional<QStringView> name = m_scanner.until(u"=");
        const std::optional<QStringView> text = name ? m_scanner.quoted() : std::nullopt;
        if (!text || name->contains(u'<') || name->contains(u'>'))
            return std::nullopt;
        if (*name == wanted)
            value = text;
    }
}

bool KeptReader::readSheet()
{
    const std::optional<QStringView> name = attribute(u"ss:Name");
    if (!expect(name && m_scanner.take(u">"), "ss:Name"))
        return false;
    m_builder.openSheet(name->toString());
    m_scanner.skipBlanks();
    if (!expect(m_scanner.take(u"<Table>"), "<Table>"))
        return false;
    m_scanner.skipBlanks();
    while (m_scanner.take(u"<Column")) {
        if (!expect(m_scanner.until(u"/>").has_value(), "/>"))
            return false;
        m_scanner.skipBlanks();
    }
    while (m_scanner.take(u"<Row")) {
        if (!readRow())
            return false;
        m_scanner.skipBlanks();
    }
    if (!expect(m_scanner.take(u"</Table>"), "</Table>"))
        return false;
    m_scanner.skipBlanks();
    return expect(m_scanner.take(u"</Worksheet>"), "</Worksheet>");
}

bool KeptReader::readRow()
{
    if (!m_scanner.take(u">")) {
        attribute(u"ss:Height");
        if (!expect(m_scanner.take(u">"), ">"))
            return false;
    }
    if (!expect(m_builder.openRow(0), "</Table>"))
        return false;
    m_scanner.skipBlanks();
    while (m_scanner.take(u"<Cell")) {
        if (!readCell())
            return false;
        m_scanner.skipBlanks();
    }
    return expect(m_scanner.take(u"</Row>"), "</Row>");
}

bool KeptReader::readAttributes(CellAttributes &attributes)
{
    while (m_scanner.take(u" ")) {
        if (m_scanner.take(u"ss:StyleID=")) {
            const std::optional<QStringView> id = m_scanner.quoted();
            if (!id)
                return false;
            attributes.style = m_builder.style(*id);
        } else if (m_scanner.take(u"ss:Index=")) {
            const std::optional<QStringView> text = m_scanner.quoted();
            bool isNumber = false;
            attributes.index = text ? text->toUInt(&isNumber) : 0;
            if (!isNumber || attributes.index == 0)
                return false;
        } else if (m_scanner.take(u"ss:Formula='")) {
            attributes.formula = m_scanner.until(u"'></Cell>");
            return attributes.formula.has_value();
        } else {
            return false;
        }
    }
    attributes.isEmpty = m_scanner.take(u"/>");
    return attributes.isEmpty || m_scanner.take(u">");
}

bool KeptReader::readCell()
{
    CellAttributes attributes;
    if (!expect(readAttributes(attributes) && m_builder.openCell(attributes.index) &&
                    m_builder.hasRoom(),
                "a cell of our own"))
        return false;
    if (attributes.formula)
        m_builder.add(m_builder.formula(attributes.style, *attributes.formula, Cell()));
    else if (attributes.isEmpty || m_scanner.take(u"</Cell>"))
        m_builder.add(m_builder.make(CellKind::Blank, attributes.style, 0));
    else
        return addData(attributes);
    return true;
}

bool KeptReader::addData(const CellAttributes &attributes)
{
    if (!expect(m_scanner.take(u"<Data ss:Type="), "<Data ss:Type="))
        return false;
    const std::optional<QStringView> type = m_scanner.quoted();
    if (!expect(type && m_scanner.take(u">"), ">"))
        return false;
    const std::optional<QStringView> text = m_scanner.until(u"</Data></Cell>");
    if (!expect(text.has_value(), "</Data></Cell>"))
        return false;
    const bool isNumber = *type == u"Number";
    const std::optional<Cell> number =
        isNumber ? m_builder.number(attributes.style, *text) : std::nullopt;
    m_builder.add(number ? *number : m_builder.text(attributes.style, *text));
    return true;
}

bool KeptReader::readTail()
{
    m_scanner.skipBlanks();
    if (!expect(m_scanner.take(u"</Workbook>"), "</Workbook>"))
        return false;
    m_scanner.skipBlanks();
    return expect(m_scanner.atEnd(), "the end");
}

} // namespace

WorkbookAnswer readKeptWorkbook(const QString &text)
{
    if (text.size() > MostKeptCharacters)
        return {std::nullopt, VisualizationTexts::tr("The workbook is too large to be shown.")};
    return KeptReader(text).read();
}

} // namespace ZelDataVisualization
