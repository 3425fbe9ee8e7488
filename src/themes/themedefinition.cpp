// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "themes/themedefinition.h"

#include "common/common.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace ZelWebServiceControls {

namespace {

/// Whether a text is longer than the limit in UTF-8, counted no further than needed.
bool isTooLarge(QStringView text)
{
    constexpr qsizetype MostBytesOfUnit = 3;
    if (text.size() <= MostDefinitionBytes / MostBytesOfUnit)
        return false;
    if (text.size() > MostDefinitionBytes)
        return true;
    qsizetype bytes = 0;
    for (const QChar unit : text) {
        const char16_t code = unit.unicode();
        const bool twoBytes = code < 0x800 || unit.isSurrogate(); // a pair of surrogates has four
        bytes += code < 0x80 ? 1 : twoBytes ? 2 : MostBytesOfUnit;
    }
    return bytes > MostDefinitionBytes;
}

/// Goes through one document.
class DefinitionReader
{
public:
    DefinitionReader(const QString &xml, const QStringList &fieldNames)
        : m_xml(xml)
        , m_fieldNames(fieldNames)
    {
    }

    std::optional<ThemeDefinition> read()
    {
        // To the very end: what is malformed only there is malformed.
        while (!m_xml.atEnd()) {
            if (!take(m_xml.readNext()))
                return std::nullopt;
        }
        return m_xml.hasError() ? std::nullopt : std::optional(std::move(m_definition));
    }

private:
    /// Depths of the elements that say something; 1 is the root.
    enum Depth
    {
        Root = 1,
        Group = 2,
        Field = 3
    };

    /// Answers whether the document can still be read.
    bool take(QXmlStreamReader::TokenType token)
    {
        switch (token) {
        case QXmlStreamReader::DTD:
            return m_xml.entityDeclarations().isEmpty();
        case QXmlStreamReader::EntityReference:
        case QXmlStreamReader::Invalid:
            return false;
        case QXmlStreamReader::StartElement:
            return open();
        case QXmlStreamReader::EndElement:
            close();
            return true;
        case QXmlStreamReader::Characters:
            if (m_inField)
                m_text += m_xml.text();
            return true;
        default:
            return true;
        }
    }

    bool open()
    {
        if (++m_depth > MostDefinitionDepth)
            return false;
        if (m_depth == Root)
            openRoot();
        else if (m_depth == Group && m_isTheme)
            m_inGroup = isElement(u"CUSTOMFIELDS");
        else if (m_depth == Field && m_inGroup && isElement(u"FIELD"))
            openField();
        return true;
    }

    void openRoot()
    {
        m_isTheme = isElement(u"WIZARD");
        if (!m_isTheme)
            return;
        const QXmlStreamAttributes attributes = m_xml.attributes();
        m_definition.studioVersion =
            Common::GetAttributeText(&attributes, QStringLiteral("studio_version"));
        m_isTheme = !m_fieldNames.isEmpty();
    }

    void openField()
    {
        const QXmlStreamAttributes attributes = m_xml.attributes();
        const auto name = std::find_if(attributes.begin(), attributes.end(), [](const auto &one) {
            return one.qualifiedName() == u"name";
        });
        if (name == attributes.end())
            return;
        const auto wanted = std::find(m_fieldNames.begin(), m_fieldNames.end(), name->value());
        if (wanted == m_fieldNames.end() || m_definition.fields.contains(*wanted))
            return;
        m_inField = true;
        m_fieldName = *wanted;
        m_text.clear();
    }

    void close()
    {
        if (m_depth == Field && m_inField) {
            m_definition.fields.insert(m_fieldName, m_text);
            m_inField = false;
        } else if (m_depth == Group) {
            m_inGroup = false;
        }
        --m_depth;
    }

    bool isElement(QStringView name) const
    {
        return m_xml.name() == name && m_xml.namespaceUri().isEmpty();
    }

    QXmlStreamReader m_xml;
    const QStringList &m_fieldNames;
    ThemeDefinition m_definition;
    QString m_fieldName;
    QString m_text;
    int m_depth = 0;
    bool m_isTheme = false; ///< and fields are wanted of it
    bool m_inGroup = false;
    bool m_inField = false;
};

} // namespace

std::optional<ThemeDefinition> readThemeDefinition(const QString &xml,
                                                   const QStringList &fieldNames)
{
    if (isTooLarge(xml))
        return std::nullopt;
    return DefinitionReader(xml, fieldNames).read();
}

} // namespace ZelWebServiceControls
