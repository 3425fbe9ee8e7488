// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/projectrecord.h"
#include "platform/widgets/listrowprovider.h"

namespace ZelWebServiceControls {

/// The lines of a project list, read from the records when they are seen or sorted.
class ProjectRows : public Zel::ListRowProvider
{
public:
    /// The columns in their fixed order.
    enum Column
    {
        Name,
        Description,
        Created,
        Modified,
        CreatedBy,
        EventDate,
        ColumnCount
    };

    /// The image that marks a published project in the small images.
    static constexpr int PublishedImage = 1;

    ProjectRows(QXSC::ProjectCollectionPtr projects, bool markPublished);

    qsizetype rowCount() const override;
    QString text(qsizetype row, int column) const override;
    QVariant tag(qsizetype row) const override;
    int smallIcon(qsizetype row) const override;
    bool sortValues(int column, std::span<qint64> out) const override;

private:
    QXSC::ProjectCollectionPtr m_projects;
    bool m_markPublished;
};

} // namespace ZelWebServiceControls
