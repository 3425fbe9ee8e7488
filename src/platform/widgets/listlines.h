// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/listrowprovider.h"

#include <QStringList>

#include <vector>

namespace Zel {

/// A provider that stores its lines, for lists too short to be worth a provider of their own. Fill
/// it, then hand it to `ListView::setRows`.
class ZEL_EXPORT ListLines : public ListRowProvider
{
public:
    ListLines();
    ~ListLines() override;

    /// Adds a line and answers its number. `subItems` are the cells of columns 1, 2, ...
    qsizetype add(const QString &text, const QStringList &subItems = {}, const QVariant &tag = {});
    void clear();

    qsizetype rowCount() const override;
    QString text(qsizetype row, int column) const override;
    QVariant tag(qsizetype row) const override;

private:
    struct Line
    {
        QString text;
        QStringList subItems;
        QVariant tag;
    };

    std::vector<Line> m_lines;
};

} // namespace Zel
