// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/themerecord.h"
#include "platform/widgets/listrowprovider.h"

#include <QList>

namespace ZelWebServiceControls {

/// The lines of a theme list, read from the records when they are seen.
class ThemeRows : public Zel::ListRowProvider
{
public:
    /// The columns in their fixed order.
    enum Column
    {
        Name,
        Description
    };

    explicit ThemeRows(QList<QXSC::ThemeRecordPtr> themes);

    qsizetype rowCount() const override;
    QString text(qsizetype row, int column) const override;
    QVariant tag(qsizetype row) const override;

private:
    QList<QXSC::ThemeRecordPtr> m_themes;
};

} // namespace ZelWebServiceControls
