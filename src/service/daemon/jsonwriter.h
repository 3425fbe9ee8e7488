// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>
#include <QStringView>

#include <optional>

namespace Zel::Service {

/// Writes JSON piece by piece into one byte array: long lists as rows of values, which costs a
/// small part of building a document. The caller gives the brackets; commas are set here.
class ZEL_EXPORT JsonWriter
{
public:
    JsonWriter &beginObject() { return begin('{'); }

    JsonWriter &endObject() { return end('}'); }

    JsonWriter &beginArray() { return begin('['); }

    JsonWriter &endArray() { return end(']'); }

    JsonWriter &key(QByteArrayView name);
    /// Half a surrogate pair is written as its escape, so the answer stays valid UTF-8.
    JsonWriter &text(QStringView value);
    JsonWriter &integer(qint64 value);
    JsonWriter &integer(const std::optional<qint64> &value);
    JsonWriter &boolean(bool value);
    JsonWriter &null();

    const QByteArray &json() const { return m_json; }

private:
    JsonWriter &begin(char bracket);
    JsonWriter &end(char bracket);
    void separate();
    void appendString(QStringView value);

    QByteArray m_json;
    bool m_needsComma = false;
};

} // namespace Zel::Service
