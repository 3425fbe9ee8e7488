// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/projectrecord.h"
#include "measuring.h"

#include <QAbstractTableModel>
#include <QLocale>

#include <algorithm>
#include <memory>
#include <random>

/// What the contenders of bench_projectlist share: the records, and how they are shown.
namespace ProjectListBench {

using Records = QXSC::ProjectCollectionPtr;

constexpr int columnCount = 6;

/// Names that share beginnings, dates over twenty years in no order, every tenth project without.
inline Records makeRecords(int count)
{
    static const char *const subjects[] = {"Quarterly results",    "product launch",
                                           "Öffentliche Anhörung", "Safety training",
                                           "annual meeting",       "Éducation continue"};
    std::mt19937 random(20060914);
    const QDateTime first(QDate(2001, 1, 1), QTime(8, 0));
    const auto date = [&] { return first.addSecs(static_cast<qint64>(random() % 630'000'000U)); };
    auto records = std::make_shared<QXSC::ProjectCollection>();
    for (int i = 0; i < count; ++i) {
        QXSC::ProjectRecord record;
        record.guid = QStringLiteral("{%1}").arg(i, 8, 16, QLatin1Char('0'));
        record.name = QStringLiteral("%1 %2")
                          .arg(QString::fromUtf8(subjects[random() % 6]))
                          .arg(random() % 50'000);
        record.description =
            QStringLiteral("Recorded session with slides, part %1").arg(i % 12 + 1);
        record.createdBy = QStringLiteral("author%1").arg(random() % 40);
        record.hasCreated = i % 10 != 0;
        record.created = date();
        record.hasModified = true;
        record.modified = date();
        record.hasEventDate = i % 2 == 0;
        record.eventDate = date();
        records->add(std::make_shared<const QXSC::ProjectRecord>(record));
    }
    return records;
}

/// The cell as data; an invalid value where the record has no date.
inline QVariant value(const QXSC::ProjectRecord &record, int column)
{
    switch (column) {
    case 0:
        return record.name;
    case 1:
        return record.description;
    case 2:
        return record.hasCreated ? QVariant(record.created) : QVariant();
    case 3:
        return record.hasModified ? QVariant(record.modified) : QVariant();
    case 4:
        return record.createdBy;
    default:
        return record.hasEventDate ? QVariant(record.eventDate) : QVariant();
    }
}

/// The plain table model that a sort and filter proxy stands on.
class ProjectModel : public QAbstractTableModel
{
public:
    void setRecords(const Records &records)
    {
        beginResetModel();
        m_records = records;
        endResetModel();
    }

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() || !m_records ? 0 : static_cast<int>(m_records->count());
    }

    int columnCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : ProjectListBench::columnCount;
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        return value(*m_records->item(index.row() + 1), index.column());
    }

private:
    Records m_records;
};

} // namespace ProjectListBench
