// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/runtimeerror.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

namespace Zel {

/// An ordered, 1-based list of values, each of which may carry a text key.
///
/// Keys compare exactly, code unit by code unit. Errors: an index outside 1 to `count()` is error 9,
/// an absent key error 5, a key used twice error 457. An empty key means "no key". Adding and keyed
/// lookup are constant time; removing is linear.
template <typename T = QVariant>
class Collection
{
public:
    using value_type = T;

    Collection() = default;

    Collection(std::initializer_list<T> values) : m_items(values), m_keys(m_items.size()) { }

    qsizetype count() const { return m_items.size(); }

    void reserve(qsizetype size)
    {
        m_items.reserve(size);
        m_keys.reserve(size);
    }

    void add(const T &value, const QString &key = QString())
    {
        if (!key.isEmpty()) {
            if (m_indexOfKey.contains(key))
                throw RuntimeError(RuntimeError::KeyInUse);
            m_indexOfKey.insert(key, m_items.size());
        }
        m_items.append(value);
        m_keys.append(key);
    }

    /// The value at a 1-based index.
    const T &item(qsizetype index) const { return m_items.at(checked(index)); }

    const T &item(const QString &key) const { return m_items.at(position(key)); }

    bool contains(const QString &key) const { return m_indexOfKey.contains(key); }

    /// The key of the value at a 1-based index, empty when it has none.
    QString key(qsizetype index) const { return m_keys.at(checked(index)); }

    void remove(qsizetype index)
    {
        const qsizetype at = checked(index);
        m_items.removeAt(at);
        m_keys.removeAt(at);
        m_indexOfKey.clear();
        for (qsizetype i = 0; i < m_keys.size(); ++i) {
            if (!m_keys.at(i).isEmpty())
                m_indexOfKey.insert(m_keys.at(i), i);
        }
    }

    void remove(const QString &key) { remove(position(key) + 1); }

    auto begin() const { return m_items.cbegin(); }

    auto end() const { return m_items.cend(); }

private:
    qsizetype checked(qsizetype index) const
    {
        if (index < 1 || index > m_items.size())
            throw RuntimeError(RuntimeError::SubscriptOutOfRange);
        return index - 1;
    }

    qsizetype position(const QString &key) const
    {
        const auto found = m_indexOfKey.constFind(key);
        if (found == m_indexOfKey.cend())
            throw RuntimeError(RuntimeError::InvalidProcedureCall);
        return *found;
    }

    QList<T> m_items;
    QList<QString> m_keys;
    QHash<QString, qsizetype> m_indexOfKey;
};

} // namespace Zel
