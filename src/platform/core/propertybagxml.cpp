// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/propertybag.h"
#include "platform/core/propertybagentry.h"
#include "platform/core/propertyescape.h"
#include "platform/core/propertyvalue.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace Zel {

namespace {

/// A bag has two levels; more may be there for versions to come, but not without end.
constexpr int deepestLevel = 16;
constexpr int formatVersion = 1;

class XmlReader
{
public:
    XmlReader(const QString &text, PropertyBag &bag)
        : m_xml(text)
        , m_bag(bag)
    {
        m_xml.setNamespaceProcessing(false);
    }

    void read()
    {
        while (!m_xml.atEnd() && m_goesOn) {
            m_xml.readNext();
            if (m_xml.isStartElement())
                enter();
            else if (m_xml.isEndElement())
                --m_level;
        }
        if (m_xml.hasError())
            stop(PropertyBag::tr("The text is not well-formed XML from line %1 on (%2); what "
                                 "stands before is read.")
                     .arg(m_xml.lineNumber())
                     .arg(m_xml.errorString()));
    }

private:
    void stop(const QString &problem)
    {
        m_bag.addProblem(problem);
        m_goesOn = false;
    }

    QString place() const { return PropertyBag::tr("line %1").arg(m_xml.lineNumber()); }

    void enter()
    {
        ++m_level;
        if (m_level == 1)
            enterRoot();
        else if (m_level == 2 && m_xml.qualifiedName() == QLatin1String("property"))
            readEntry();
        else if (m_level == 2)
            m_bag.addProblem(
                PropertyBag::tr("The element “%1” at %2 is left out: it is no property.")
                    .arg(PropertyValue::shown(m_xml.qualifiedName().toString()), place()));
        else if (m_level > deepestLevel)
            stop(
                PropertyBag::tr("The elements are nested too deeply from %1 on; what stands before "
                                "is read.")
                    .arg(place()));
    }

    void enterRoot()
    {
        if (m_xml.qualifiedName() != QLatin1String("properties"))
            stop(PropertyBag::tr("The XML text holds no properties."));
        else if (m_xml.attributes().value(QLatin1String("version")).toInt() > formatVersion)
            m_bag.addProblem(PropertyBag::tr("The properties were saved by a newer version; what "
                                             "this one understands is read."));
    }

    std::optional<QString> attribute(QLatin1String name) const
    {
        const QXmlStreamAttributes attributes = m_xml.attributes();
        if (!attributes.hasAttribute(name))
            return std::nullopt;
        return attributes.value(name).toString();
    }

    void readEntry()
    {
        PropertyBagEntry entry;
        entry.place = place();
        entry.name = attribute(QLatin1String("name"));
        entry.escapedName = attribute(QLatin1String("escapedName"));
        entry.type = attribute(QLatin1String("type")).value_or(QStringLiteral("text"));
        if (const std::optional<QString> value = attribute(QLatin1String("value"))) {
            entry.hasValue = true;
            entry.shownValue = *value;
            entry.value = PropertyValue::fromText(entry.type, *value);
        }
        entry.addTo(m_bag);
    }

    QXmlStreamReader m_xml;
    PropertyBag &m_bag;
    int m_level = 0;
    bool m_goesOn = true;
};

void writeEntry(QXmlStreamWriter &xml, const QString &name, const QVariant &value)
{
    xml.writeEmptyElement(QStringLiteral("property"));
    if (PropertyValue::needsEscape(name))
        xml.writeAttribute(QStringLiteral("escapedName"), PropertyValue::escaped(name));
    else
        xml.writeAttribute(QStringLiteral("name"), name);
    xml.writeAttribute(QStringLiteral("type"), PropertyValue::typeName(value));
    xml.writeAttribute(QStringLiteral("value"), PropertyValue::toText(value));
}

} // namespace

QString PropertyBag::toXml() const
{
    QString text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("properties"));
    xml.writeAttribute(QStringLiteral("version"), QString::number(formatVersion));
    for (const Entry &entry : m_entries)
        writeEntry(xml, entry.name, entry.value);
    xml.writeEndDocument();
    return text;
}

PropertyBag PropertyBag::fromXml(QStringView text)
{
    PropertyBag bag;
    if (text.size() > MostCharacters)
        bag.addProblem(tr("The text is too long to be read: it has more than %1 characters.")
                           .arg(MostCharacters));
    // Looked for before the parser sees it, since the parser itself expands what one declares.
    else if (text.contains(QLatin1String("<!DOCTYPE")))
        bag.addProblem(tr("The XML text has a document type declaration, which is not read."));
    else
        XmlReader(text.toString(), bag).read();
    return bag;
}

} // namespace Zel
