// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace ZelWebServiceControls {

/// Which record of a flat list belongs to which respondent and question, in order of arrival.
///
/// Records are numbers: record n is entry n of a list that lies elsewhere. Eight bytes a record,
/// whatever it holds; a respondent's records form a chain in which each names the next one.
class ResponseChains
{
public:
    /// The question of a record that answers none of the known ones.
    static constexpr quint32 NoQuestion = ~quint32(0);

    /// The number of a respondent, from 0 in order of first appearance; makes an absent one.
    quint32 respondent(const QString &guid);
    /// The number of a respondent that is there.
    std::optional<quint32> find(const QString &guid) const;

    quint32 respondentCount() const { return quint32(m_guids.size()); }

    const QString &guid(quint32 respondent) const { return m_guids[respondent]; }

    /// The guids of all respondents, in characters.
    qsizetype guidLength() const { return m_guidLength; }

    /// The number the next record gets.
    quint32 recordCount() const { return quint32(m_next.size()); }

    void reserveRecords(qsizetype count);
    /// Appends a record. One with `NoQuestion` is in no chain.
    void append(quint32 respondent, quint32 question);

    /// Calls `visit(record, question)` for each record of a respondent, oldest first.
    template <typename Visit>
    void forEach(quint32 respondent, Visit visit) const
    {
        const quint32 last = m_last[respondent];
        if (last == None)
            return;
        quint32 record = last;
        do {
            record = m_next[record];
            visit(record, m_question[record]);
        } while (record != last);
    }

    /// A respondent's records for one question, oldest first.
    std::vector<quint32> records(quint32 respondent, quint32 question) const;

private:
    static constexpr quint32 None = ~quint32(0);

    std::vector<QString> m_guids;
    std::vector<quint32> m_last; ///< each respondent's newest record; it names the oldest as next
    std::vector<quint32> m_next;
    std::vector<quint32> m_question;
    QHash<QString, quint32> m_respondents;
    qsizetype m_guidLength = 0;
};

/// Looks texts up that come again and again: two texts that share their storage are known to be
/// equal without reading them. Good as long as the texts it has seen live.
class RepeatedTexts
{
public:
    /// What `find()` answers for a text in a context, remembered.
    template <typename Find>
    quint32 valueOf(const QString &text, quint32 context, Find find)
    {
        const QChar *const data = text.constData();
        Slot &slot = m_slots[(reinterpret_cast<quintptr>(data) >> 4) % m_slots.size()];
        if (slot.data != data || slot.size != text.size() || slot.context != context || !data)
            slot = {data, text.size(), context, find()};
        return slot.value;
    }

private:
    struct Slot
    {
        const QChar *data = nullptr;
        qsizetype size = 0;
        quint32 context = 0;
        quint32 value = 0;
    };

    std::array<Slot, 4093> m_slots{};
};

} // namespace ZelWebServiceControls
