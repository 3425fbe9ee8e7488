// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/themerecord.h"
#include "platform/core/export.h"
#include "platform/widgets/listrowprovider.h"

#include <QList>
#include <QPalette>

#include <functional>

namespace ZelWebServiceControls {

/// The colour of a template that every project of the theme has: RGB(160, 160, 160) where the
/// ground is light. Where it is dark, the colour of disabled text, shifted to the contrast that
/// this grey has on white.
ZEL_EXPORT QColor requiredTemplateColour(const QPalette &palette);

/// The lines of a list of templates: all checked at first, those required muted.
class TemplateRows : public Zel::ListRowProvider
{
public:
    /// The columns in their fixed order.
    enum Column
    {
        Template,
        Description
    };

    /// @param palette asked for the palette of the list whenever a line is painted
    explicit TemplateRows(std::function<QPalette()> palette);

    /// The list is to be told (`ListView::rowsAppended`).
    void add(const QXSC::TemplateRecordPtr &record, bool required);

    qsizetype rowCount() const override;
    QString text(qsizetype row, int column) const override;
    QVariant tag(qsizetype row) const override;
    bool isChecked(qsizetype row) const override;
    bool isGhosted(qsizetype row) const override;
    QColor colour(qsizetype row, int column) const override;

private:
    struct Row
    {
        QXSC::TemplateRecordPtr record;
        bool required;
    };

    QList<Row> m_rows;
    std::function<QPalette()> m_palette;
};

} // namespace ZelWebServiceControls
