// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QCoreApplication>
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QStringList>
#include <QVariant>

namespace Zel {

/// The store in which a host keeps the persisted properties of a control: values by name.
///
/// A control reads and writes each property with the same default. Reading a name the bag does not
/// hold answers the default; writing a value equal to the default stores nothing, so that a bag
/// holds only what somebody changed. Names compare exactly.
///
/// A bag holds booleans, whole numbers, colours (quint32), floating-point numbers, texts and local
/// date-times. Integers narrower than 32 bits and enumerations are kept as 32-bit integers, a
/// float as a double, a date or time of day as a date-time.
///
/// Hosts save a bag as XML or JSON. Reading either never throws: whatever is not well-formed is
/// left out and told by `problems`, everything else is read. Both formats keep texts code unit for
/// code unit. The entries are typed:
///
/// | type          | value                                                                    |
/// |---------------|--------------------------------------------------------------------------|
/// | "boolean"     | True or False; in JSON true or false                                     |
/// | "integer"     | decimal; in JSON a number                                                |
/// | "color"       | hexadecimal as &H8000000F&; decimal is read too                          |
/// | "number"      | the shortest decimal form with "." that reads back exactly; in JSON a number |
/// | "text"        | as it is; an entry without a type is a text                              |
/// | "escapedText" | a text with characters XML cannot hold: those as \uhhhh, "\" as "\\"     |
/// | "date"        | ISO 8601 without a zone, as 2007-01-09T15:04:05, with milliseconds if any |
///
/// XML: `<properties version="1"><property name="ShowLoginURL" type="boolean" value="False"/>...`;
/// JSON: `{"version": 1, "properties": [{"name": "ShowLoginURL", "type": "boolean", "value":
/// false}, ...]}`. A name that needs escaping stands in "escapedName" instead of "name".
class ZEL_EXPORT PropertyBag
{
    Q_DECLARE_TR_FUNCTIONS(Zel::PropertyBag)

public:
    /// The longest text `fromXml` and `fromText` read, in UTF-16 code units.
    static constexpr qsizetype MostCharacters = 1024 * 1024;

    /// The stored value, or the default.
    QVariant read(const QString &name, const QVariant &defaultValue = QVariant()) const;

    /// The stored value converted (variantconversion.h, numbers and dates in texts as the C locale
    /// has them whatever the user's). A value that does not convert counts as absent, and is told
    /// by `problems`.
    bool readBool(const QString &name, bool defaultValue) const;
    QString readString(const QString &name, const QString &defaultValue) const;
    quint32 readColor(const QString &name, quint32 defaultValue) const;
    qint16 readInt16(const QString &name, qint16 defaultValue) const;
    qint32 readInt32(const QString &name, qint32 defaultValue) const;
    double readDouble(const QString &name, double defaultValue) const;

    /// Stores a value, or, when it equals the default, removes what was stored before. Without a
    /// default every value is stored. A rewritten name keeps its place in `names`. Errors: 5 for an
    /// empty name, 13 for a type that a bag does not hold, 6 for a number that is none or infinite.
    void write(const QString &name, const QVariant &value,
               const QVariant &defaultValue = QVariant());

    bool contains(const QString &name) const { return m_indexOfName.contains(name); }

    /// In the order of writing.
    QStringList names() const;

    bool isEmpty() const { return m_entries.isEmpty(); }

    void remove(const QString &name);
    /// Removes all values and problems.
    void clear();

    /// Sentences for people about what was left out or did not convert, in the order of their
    /// finding, each once, at most 100.
    QStringList problems() const { return m_problems; }

    /// For readers of further formats.
    void addProblem(const QString &sentence) const;

    QString toXml() const;
    static PropertyBag fromXml(QStringView text);

    QJsonObject toJson() const;
    static PropertyBag fromJson(const QJsonObject &object);

    /// XML, or nothing for an empty bag.
    QString toText() const;
    /// Reads XML or JSON, whichever it is. Blank text is an empty bag.
    static PropertyBag fromText(QStringView text);

    /// Whether both hold the same values under the same names, in whatever order.
    friend ZEL_EXPORT bool operator==(const PropertyBag &a, const PropertyBag &b);

private:
    struct Entry
    {
        QString name;
        QVariant value;
    };

    template <typename T, typename Convert>
    T readAs(const QString &name, const T &defaultValue, const QString &expected,
             Convert convert) const;

    QList<Entry> m_entries;
    QHash<QString, qsizetype> m_indexOfName;
    mutable QStringList m_problems;
};

} // namespace Zel
