// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/propertybag.h"

#include "platform/core/propertyvalue.h"
#include "platform/core/runtimeerror.h"
#include "platform/core/variantconversion.h"

#include <algorithm>
#include <limits>

namespace Zel {

namespace {

constexpr qsizetype mostProblems = 100;

QString wholeNumber(qint64 least, qint64 most)
{
    return PropertyBag::tr("a whole number from %1 to %2").arg(least).arg(most);
}

template <typename Integer>
QString wholeNumberOf()
{
    using Limits = std::numeric_limits<Integer>;
    return wholeNumber(Limits::min(), Limits::max());
}

} // namespace

QVariant PropertyBag::read(const QString &name, const QVariant &defaultValue) const
{
    const auto found = m_indexOfName.constFind(name);
    return found == m_indexOfName.cend() ? defaultValue : m_entries.at(*found).value;
}

template <typename T, typename Convert>
T PropertyBag::readAs(const QString &name, const T &defaultValue, const QString &expected,
                      Convert convert) const
{
    const QVariant value = read(name);
    if (!value.isValid())
        return defaultValue;
    try {
        // What a bag means must not depend on the locale of the person who opens it.
        return convert(value, QLocale::c());
    } catch (const RuntimeError &) {
        addProblem(tr("“%1” holds “%2”, which is not %3; “%4” is used instead.")
                       .arg(name, PropertyValue::shown(value), expected,
                            PropertyValue::shown(QVariant::fromValue(defaultValue))));
        return defaultValue;
    }
}

bool PropertyBag::readBool(const QString &name, bool defaultValue) const
{
    return readAs(name, defaultValue, tr("True or False"), booleanFrom);
}

QString PropertyBag::readString(const QString &name, const QString &defaultValue) const
{
    return readAs(name, defaultValue, tr("a text"), textFrom);
}

quint32 PropertyBag::readColor(const QString &name, quint32 defaultValue) const
{
    return readAs(name, defaultValue, tr("a colour"), colorFrom);
}

qint16 PropertyBag::readInt16(const QString &name, qint16 defaultValue) const
{
    return readAs(name, defaultValue, wholeNumberOf<qint16>(), int16From);
}

qint32 PropertyBag::readInt32(const QString &name, qint32 defaultValue) const
{
    return readAs(name, defaultValue, wholeNumberOf<qint32>(), int32From);
}

double PropertyBag::readDouble(const QString &name, double defaultValue) const
{
    return readAs(name, defaultValue, tr("a number"), doubleFrom);
}

void PropertyBag::write(const QString &name, const QVariant &value, const QVariant &defaultValue)
{
    if (name.isEmpty())
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    const QVariant kept = PropertyValue::kept(value);
    if (PropertyValue::equal(kept, defaultValue)) {
        remove(name);
        return;
    }
    const auto found = m_indexOfName.constFind(name);
    if (found != m_indexOfName.cend()) {
        m_entries[*found].value = kept;
        return;
    }
    m_indexOfName.insert(name, m_entries.size());
    m_entries.append({name, kept});
}

QStringList PropertyBag::names() const
{
    QStringList all;
    all.reserve(m_entries.size());
    for (const Entry &entry : m_entries)
        all << entry.name;
    return all;
}

void PropertyBag::remove(const QString &name)
{
    const auto found = m_indexOfName.constFind(name);
    if (found == m_indexOfName.cend())
        return;
    m_entries.removeAt(*found);
    m_indexOfName.clear();
    for (qsizetype i = 0; i < m_entries.size(); ++i)
        m_indexOfName.insert(m_entries.at(i).name, i);
}

void PropertyBag::clear()
{
    *this = PropertyBag();
}

void PropertyBag::addProblem(const QString &sentence) const
{
    if (m_problems.size() < mostProblems && !m_problems.contains(sentence))
        m_problems << sentence;
}

QString PropertyBag::toText() const
{
    return isEmpty() ? QString() : toXml();
}

bool operator==(const PropertyBag &a, const PropertyBag &b)
{
    if (a.m_entries.size() != b.m_entries.size())
        return false;
    return std::all_of(a.m_entries.cbegin(), a.m_entries.cend(), [&b](const auto &entry) {
        return b.contains(entry.name) && PropertyValue::equal(entry.value, b.read(entry.name));
    });
}

} // namespace Zel
