// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The reader of every workbook that is not our own.

#include "datavisualization/visualizationtexts.h"
#include "datavisualization/workbookbuilder.h"
#include "datavisualization/workbookreader.h"
#include "datavisualization/xmlguard.h"

#include <QXmlStreamReader>

namespace ZelDataVisualization {

namespace {

constexpr int MostDepth = 64;
/// The reader takes the text in pieces and so needs little memory of its own.
constexpr qsizetype PieceLength = 1024 * 1024;

QString tr(const char *text)
{
    return VisualizationTexts::tr(text);
}

class StrictReader
{
public:
    explicit StrictReader(const QString &text)
        : m_text(text)
    {
    }

    WorkbookAnswer read()
    {
        for (;;) {
            if (!take(m_xml.readNext()))
                return {std::nullopt, m_problem};
            const bool wantsMore = m_xml.error() == QXmlStreamReader::PrematureEndOfDocumentError;
            if (wantsMore && m_given < m_text.size())
                giveNextPiece();
            else if (m_xml.hasError())
                return {std::nullopt, malformed(m_xml.errorString())};
            else if (m_xml.atEnd())
                break;
        }
        return {m_builder.take(), QString()};
    }

private:
    /// What an element is by its depth, the root's being 1.
    enum class Place
    {
        Elsewhere,
        Root,
        Styles,
        Style,
        Ground,
        Sheet,
        Table,
        Row,
        Cell,
        Data
    };

    void giveNextPiece();
    QString malformed(const QString &why) const;
    bool refuse(const QString &problem);
    bool take(QXmlStreamReader::TokenType token);
    bool open();
    bool close();
    Place placeOf(QStringView name) const;
    bool openRoot();
    bool openRow();
    bool openCell();
    bool closeCell();
    std::optional<Cell> stored();
    QStringView attribute(QStringView name) const;
    bool number(QStringView name, quint32 &value) const;

    const QString &m_text;
    qsizetype m_given = 0;
    QXmlStreamReader m_xml;
    WorkbookBuilder m_builder;
    QString m_problem;
    std::vector<Place> m_places; ///< of the open elements
    QXmlStreamAttributes m_attributes;
    QString m_styleId;
    QString m_styleParent;
    QString m_ground;
    quint32 m_span = 0;  ///< rows that the row stands for beside itself
    quint32 m_merge = 0; ///< columns that the cell covers beside its own
    quint16 m_style = 0;
    QString m_formula;
    QString m_type;
    QString m_data;
    bool m_hasData = false;
    bool m_inData = false; ///< or in an element inside it
};

void StrictReader::giveNextPiece()
{
    qsizetype length = std::min(PieceLength, m_text.size() - m_given);
    // Both halves of a character go together.
    if (m_given + length < m_text.size() && m_text[m_given + length - 1].isHighSurrogate())
        ++length;
    m_xml.addData(m_text.mid(m_given, length));
    m_given += length;
}

QString StrictReader::malformed(const QString &why) const
{
    return tr("The workbook is damaged at line %1: %2").arg(m_xml.lineNumber()).arg(why);
}

bool StrictReader::refuse(const QString &problem)
{
    m_problem = problem;
    return false;
}

/// Answers whether the document can still be read.
bool StrictReader::take(QXmlStreamReader::TokenType token)
{
    switch (token) {
    case QXmlStreamReader::DTD:
    case QXmlStreamReader::EntityReference:
        return refuse(tr("The workbook declares a document type, which no workbook needs."));
    case QXmlStreamReader::StartElement:
        return open();
    case QXmlStreamReader::EndElement:
        return close();
    case QXmlStreamReader::Characters:
        if (m_inData)
            m_data += m_xml.text();
        return true;
    default:
        return true;
    }
}

StrictReader::Place StrictReader::placeOf(QStringView name) const
{
    if (m_places.empty())
        return Place::Root;
    switch (m_places.back()) {
    case Place::Root:
        if (name == u"Styles")
            return Place::Styles;
        return name == u"Worksheet" ? Place::Sheet : Place::Elsewhere;
    case Place::Styles:
        return name == u"Style" ? Place::Style : Place::Elsewhere;
    case Place::Style:
        return name == u"Interior" ? Place::Ground : Place::Elsewhere;
    case Place::Sheet:
        return name == u"Table" ? Place::Table : Place::Elsewhere;
    case Place::Table:
        return name == u"Row" ? Place::Row : Place::Elsewhere;
    case Place::Row:
        return name == u"Cell" ? Place::Cell : Place::Elsewhere;
    case Place::Cell:
        return name == u"Data" ? Place::Data : Place::Elsewhere;
    default:
        return Place::Elsewhere;
    }
}

bool StrictReader::open()
{
    if (m_places.size() >= MostDepth)
        return refuse(tr("The workbook has elements too deep inside each other."));
    const Place place = placeOf(m_xml.name());
    m_places.push_back(place);
    if (place == Place::Elsewhere)
        return true;
    m_attributes = m_xml.attributes();
    switch (place) {
    case Place::Root:
        return openRoot();
    case Place::Style:
        m_styleId = attribute(u"ID").toString();
        m_styleParent = attribute(u"Parent").toString();
        m_ground.clear();
        return true;
    case Place::Ground:
        m_ground = attribute(u"Color").toString();
        return true;
    case Place::Sheet:
        m_builder.openSheet(attribute(u"Name").toString());
        return true;
    case Place::Row:
        return openRow();
    case Place::Cell:
        return openCell();
    case Place::Data:
        m_type = attribute(u"Type").toString();
        m_data.clear();
        m_hasData = m_inData = true;
        return true;
    default:
        return true;
    }
}

bool StrictReader::openRoot()
{
    if (m_xml.name() == u"Workbook")
        return true;
    return refuse(tr("The text is no XML Spreadsheet workbook; its root element is \"%1\".")
                      .arg(m_xml.name().left(100)));
}

QStringView StrictReader::attribute(QStringView name) const
{
    for (const QXmlStreamAttribute &one : m_attributes) {
        if (one.name() == name)
            return one.value();
    }
    return {};
}

/// Reads a number from 1 that an attribute may give; 0 when it is not there.
bool StrictReader::number(QStringView name, quint32 &value) const
{
    const QStringView text = attribute(name);
    bool isNumber = text.isEmpty();
    value = isNumber ? 0 : text.toUInt(&isNumber);
    return isNumber;
}

bool StrictReader::openRow()
{
    quint32 index = 0;
    if (!number(u"Index", index) || !number(u"Span", m_span) || m_span > Workbook::MostRows ||
        !m_builder.openRow(index))
        return refuse(malformed(tr("A row has an impossible place.")));
    return true;
}

bool StrictReader::openCell()
{
    quint32 index = 0;
    if (!number(u"Index", index) || !number(u"MergeAcross", m_merge) ||
        !m_builder.openCell(index) || !m_builder.hasRoom())
        return refuse(malformed(tr("A cell has an impossible place.")));
    m_style = m_builder.style(attribute(u"StyleID"));
    m_formula = attribute(u"Formula").toString();
    m_hasData = false;
    return true;
}

/// What stands in the cell, a formula's value too; nothing when it is not what its type says.
std::optional<Cell> StrictReader::stored()
{
    if (!m_hasData)
        return m_builder.make(CellKind::Blank, m_style, 0);
    if (m_type == u"Number")
        return m_builder.number(m_style, QStringView(m_data).trimmed());
    if (m_type == u"Boolean")
        return m_builder.make(CellKind::Boolean, m_style, m_data.trimmed() == u"1" ? 1 : 0);
    Cell cell = m_builder.text(m_style, m_data);
    if (m_type == u"Error")
        cell = m_builder.make(CellKind::Error, m_style, cell.value);
    return cell;
}

bool StrictReader::closeCell()
{
    const std::optional<Cell> cell = stored();
    if (!cell)
        return refuse(malformed(tr("A number is none: \"%1\".").arg(m_data.left(100))));
    m_builder.add(m_formula.isEmpty() ? *cell : m_builder.formula(m_style, m_formula, *cell));
    m_hasData = false;
    if (!m_builder.skipColumns(m_merge))
        return refuse(malformed(tr("A cell has an impossible place.")));
    return true;
}

bool StrictReader::close()
{
    const Place place = m_places.back();
    m_places.pop_back();
    if (place == Place::Cell)
        return closeCell();
    if (place == Place::Data)
        m_inData = false;
    else if (place == Place::Row)
        m_builder.skipRows(m_span);
    else if (place == Place::Style)
        m_builder.addStyle(m_styleId, m_ground, m_styleParent);
    return true;
}

} // namespace

WorkbookAnswer readStrictWorkbook(const QString &text)
{
    if (text.size() > MostStrictCharacters)
        return {std::nullopt, tr("The workbook is too large to be shown.")};
    if (isHostileXml(text))
        return {std::nullopt, tr("The workbook is not one that a spreadsheet program writes.")};
    return StrictReader(text).read();
}

} // namespace ZelDataVisualization
