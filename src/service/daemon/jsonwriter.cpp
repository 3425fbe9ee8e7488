// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/jsonwriter.h"

#include <QString>

namespace Zel::Service {

namespace {

void appendEscape(QByteArray &json, char16_t unit)
{
    json += "\\u";
    json += QByteArray::number(unit, 16).rightJustified(4, '0');
}

/// What stands for a character below U+0080; null for one that stands for itself.
const char *shortEscape(char16_t unit)
{
    switch (unit) {
    case u'"':
        return "\\\"";
    case u'\\':
        return "\\\\";
    case u'\b':
        return "\\b";
    case u'\f':
        return "\\f";
    case u'\n':
        return "\\n";
    case u'\r':
        return "\\r";
    case u'\t':
        return "\\t";
    default:
        return nullptr;
    }
}

void appendUtf8(QByteArray &json, char32_t code)
{
    const auto tail = [code](int shift) { return char(0x80 | ((code >> shift) & 0x3f)); };
    if (code < 0x800) {
        json += char(0xc0 | (code >> 6));
    } else if (code < 0x10000) {
        json += char(0xe0 | (code >> 12));
        json += tail(6);
    } else {
        json += char(0xf0 | (code >> 18));
        json += tail(12);
        json += tail(6);
    }
    json += tail(0);
}

} // namespace

JsonWriter &JsonWriter::begin(char bracket)
{
    separate();
    m_json += bracket;
    m_needsComma = false;
    return *this;
}

JsonWriter &JsonWriter::end(char bracket)
{
    m_json += bracket;
    m_needsComma = true;
    return *this;
}

void JsonWriter::separate()
{
    if (m_needsComma)
        m_json += ',';
    m_needsComma = true;
}

JsonWriter &JsonWriter::key(QByteArrayView name)
{
    separate();
    appendString(QString::fromLatin1(name));
    m_json += ':';
    m_needsComma = false;
    return *this;
}

JsonWriter &JsonWriter::text(QStringView value)
{
    separate();
    appendString(value);
    return *this;
}

void JsonWriter::appendString(QStringView value)
{
    m_json += '"';
    for (qsizetype at = 0; at < value.size(); ++at) {
        const char16_t unit = value.at(at).unicode();
        if (const char *escape = shortEscape(unit)) {
            m_json += escape;
        } else if (unit < 0x20 || unit == QChar::ByteOrderMark) {
            // Readers tend to drop a byte order mark at the beginning of a text.
            appendEscape(m_json, unit);
        } else if (unit < 0x80) {
            m_json += char(unit);
        } else if (!QChar::isSurrogate(unit)) {
            appendUtf8(m_json, unit);
        } else if (QChar::isHighSurrogate(unit) && at + 1 < value.size() &&
                   value.at(at + 1).isLowSurrogate()) {
            appendUtf8(m_json, QChar::surrogateToUcs4(unit, value.at(at + 1).unicode()));
            ++at;
        } else {
            appendEscape(m_json, unit);
        }
    }
    m_json += '"';
}

JsonWriter &JsonWriter::integer(qint64 value)
{
    separate();
    m_json += QByteArray::number(value);
    return *this;
}

JsonWriter &JsonWriter::integer(const std::optional<qint64> &value)
{
    return value ? integer(*value) : null();
}

JsonWriter &JsonWriter::boolean(bool value)
{
    separate();
    m_json += value ? "true" : "false";
    return *this;
}

JsonWriter &JsonWriter::null()
{
    separate();
    m_json += "null";
    return *this;
}

} // namespace Zel::Service
