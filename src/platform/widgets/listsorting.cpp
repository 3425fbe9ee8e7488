// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listsorting.h"

#include <QCollator>
#include <QHash>

#include <algorithm>
#include <array>
#include <numeric>

namespace Zel::ListSorting {

namespace {

struct Entry
{
    quint64 key;
    quint32 row;
};

constexpr int digitBits = 11;
constexpr size_t digitCount = size_t(1) << digitBits;
constexpr int passes = (64 + digitBits - 1) / digitBits;

size_t digit(quint64 key, int pass)
{
    return (key >> (pass * digitBits)) & (digitCount - 1);
}

/// Least digit first. A digit that all keys share needs no pass, which for dates of one century is
/// half of them.
void radixSort(std::vector<Entry> &entries)
{
    std::vector<std::array<quint32, digitCount>> counts(passes);
    for (const Entry &entry : entries) {
        for (int pass = 0; pass < passes; ++pass)
            ++counts[static_cast<size_t>(pass)][digit(entry.key, pass)];
    }
    std::vector<Entry> sorted(entries.size());
    for (int pass = 0; pass < passes; ++pass) {
        auto &starts = counts[static_cast<size_t>(pass)];
        if (starts[digit(entries.front().key, pass)] == entries.size())
            continue;
        std::exclusive_scan(starts.begin(), starts.end(), starts.begin(), quint32(0));
        for (const Entry &entry : entries)
            sorted[starts[digit(entry.key, pass)]++] = entry;
        entries.swap(sorted);
    }
}

/// Below this the tables of the radix sort cost more than comparing.
constexpr size_t fewEntries = 512;

template <typename Less>
ListOrder::Rows stableOrder(size_t count, Qt::SortOrder order, Less less)
{
    ListOrder::Rows rows(count);
    std::iota(rows.begin(), rows.end(), quint32(0));
    if (order == Qt::AscendingOrder)
        std::stable_sort(rows.begin(), rows.end(), less);
    else
        std::stable_sort(rows.begin(), rows.end(),
                         [&less](quint32 a, quint32 b) { return less(b, a); });
    return rows;
}

/// Moves the surrogates above the rest of the basic plane, where their code points are.
ushort codePointRank(QChar unit)
{
    const ushort code = unit.unicode();
    if (code < 0xD800)
        return code;
    return unit.isSurrogate() ? static_cast<ushort>(code + 0x2000)
                              : static_cast<ushort>(code - 0x800);
}

/// The different texts of many, and which of them each row has.
struct Distinct
{
    std::vector<QString> texts;
    std::vector<quint32> textOfRow;
};

Distinct distinctTexts(std::span<const QString> texts)
{
    Distinct result;
    result.textOfRow.reserve(texts.size());
    QHash<QString, quint32> known;
    for (const QString &text : texts) {
        const auto next = static_cast<quint32>(result.texts.size());
        const auto found = known.constFind(text);
        result.textOfRow.push_back(found == known.cend() ? next : *found);
        if (found != known.cend())
            continue;
        known.insert(text, next);
        result.texts.push_back(text);
    }
    return result;
}

/// The place of each key in their order; equal ones have the same.
template <typename Key, typename Compare>
std::vector<qint64> ranksOfKeys(const std::vector<Key> &keys, Compare compare)
{
    const ListOrder::Rows sorted =
        stableOrder(keys.size(), Qt::AscendingOrder,
                    [&](quint32 a, quint32 b) { return compare(keys[a], keys[b]) < 0; });
    std::vector<qint64> ranks(keys.size());
    qint64 rank = 0;
    for (size_t i = 1; i < sorted.size(); ++i) {
        rank += compare(keys[sorted[i - 1]], keys[sorted[i]]) != 0 ? 1 : 0;
        ranks[sorted[i]] = rank;
    }
    return ranks;
}

std::vector<qint64> ranksOf(const std::vector<QString> &texts, const QLocale &locale)
{
    if (locale.language() == QLocale::C) {
        // QCollator has no rules for the C locale and would tell "a" from "A".
        std::vector<QString> folded(texts.size());
        std::transform(texts.begin(), texts.end(), folded.begin(),
                       [](const QString &text) { return text.toCaseFolded(); });
        return ranksOfKeys(folded, compareCodePoints);
    }
    QCollator collator(locale);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(false);
    std::vector<QCollatorSortKey> keys;
    keys.reserve(texts.size());
    for (const QString &text : texts)
        keys.push_back(collator.sortKey(text));
    return ranksOfKeys(
        keys, [](const QCollatorSortKey &a, const QCollatorSortKey &b) { return a.compare(b); });
}

} // namespace

ListOrder::Rows byValue(std::span<const qint64> values, Qt::SortOrder order)
{
    if (values.size() < fewEntries)
        return stableOrder(values.size(), order,
                           [values](quint32 a, quint32 b) { return values[a] < values[b]; });
    // Flipping the sign bit makes signed order unsigned order; flipping all the others makes it
    // descending while equal keys stay in place.
    const quint64 mask = order == Qt::AscendingOrder ? quint64(1) << 63 : ~(quint64(1) << 63);
    std::vector<Entry> entries(values.size());
    for (size_t i = 0; i < values.size(); ++i)
        entries[i] = {static_cast<quint64>(values[i]) ^ mask, static_cast<quint32>(i)};
    radixSort(entries);
    ListOrder::Rows rows(entries.size());
    std::transform(entries.begin(), entries.end(), rows.begin(),
                   [](const Entry &entry) { return entry.row; });
    return rows;
}

int compareCodePoints(QStringView left, QStringView right)
{
    const auto ends = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
    if (ends.first == left.end() || ends.second == right.end())
        return left.size() < right.size() ? -1 : left.size() > right.size();
    return codePointRank(*ends.first) < codePointRank(*ends.second) ? -1 : 1;
}

ListOrder::Rows byKey(std::span<const QString> keys, Qt::SortOrder order)
{
    return stableOrder(keys.size(), order, [keys](quint32 a, quint32 b) {
        return compareCodePoints(keys[a], keys[b]) < 0;
    });
}

ListOrder::Rows byText(std::span<const QString> texts, Qt::SortOrder order, const QLocale &locale)
{
    // A collator's key costs far more than finding a text again, and long lists repeat themselves.
    const Distinct distinct = distinctTexts(texts);
    const std::vector<qint64> ranks = ranksOf(distinct.texts, locale);
    std::vector<qint64> values(texts.size());
    std::transform(distinct.textOfRow.begin(), distinct.textOfRow.end(), values.begin(),
                   [&ranks](quint32 text) { return ranks[text]; });
    return byValue(values, order);
}

} // namespace Zel::ListSorting
