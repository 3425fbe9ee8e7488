// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/statsrecord.h"
#include "platform/core/collection.h"
#include "platform/widgets/listrowprovider.h"

#include <memory>

namespace ZelWebServiceControls {

/// Lines of a list that are read from a collection of records when they are seen or sorted; each
/// line's tag is its record.
template <typename Record>
class RecordRows : public Zel::ListRowProvider
{
public:
    using RecordPtr = std::shared_ptr<const Record>;
    using Records = std::shared_ptr<const Zel::Collection<RecordPtr>>;

    /// Error 91 when one of the records is none.
    explicit RecordRows(Records records)
        : m_records(std::move(records))
    {
        for (const RecordPtr &record : *m_records) {
            if (!record)
                throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
        }
    }

    qsizetype rowCount() const override { return m_records->count(); }

    QVariant tag(qsizetype row) const override
    {
        return QVariant::fromValue(m_records->item(row + 1));
    }

protected:
    const Record &record(qsizetype row) const { return *m_records->item(row + 1); }

    /// Writes the value of each record in order.
    template <typename ValueOf>
    bool writeValues(std::span<qint64> out, ValueOf valueOf) const
    {
        auto value = out.begin();
        for (const RecordPtr &each : *m_records)
            *value++ = valueOf(*each);
        return true;
    }

private:
    Records m_records;
};

/// The texts of a person, in the order of the columns of every list that shows persons.
enum class UserText
{
    UserID,
    FirstName,
    LastName,
    Email
};

/// Empty for a person the service knows nothing of.
QString userText(const QXSC::StatsUserPtr &user, UserText which);

} // namespace ZelWebServiceControls
