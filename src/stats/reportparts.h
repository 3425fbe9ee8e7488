// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/flexgrid.h"

#include <QCoreApplication>
#include <QFrame>

class QComboBox;
class QPushButton;
class QVBoxLayout;
class QHBoxLayout;

namespace ZelWebServiceControls {

/// Builds what the reports of polls and of surveys consist of, from top to bottom.
class ReportParts
{
    Q_DECLARE_TR_FUNCTIONS(ReportParts)

public:
    explicit ReportParts(QFrame *frame);

    /// A label and the drop-down it belongs to.
    QComboBox *choice(const QString &labelName, const QString &caption, const QString &name);
    /// The figures.
    Zel::FlexGrid *grid(const QString &name, const QString &accessibleName);
    /// A button that does nothing, kept because hosts know it by name.
    QPushButton *plainButton(const QString &name, const QString &caption);
    /// "Data Visualization", disabled.
    QPushButton *visualizeButton(const QString &name);

    /// A text without tabs and line ends, which would part the cells of a row.
    static QString oneLine(const QString &text);

private:
    QPushButton *button(const QString &name, const QString &caption);

    QFrame *m_frame;
    QVBoxLayout *m_column;
    QHBoxLayout *m_buttons = nullptr;
};

} // namespace ZelWebServiceControls
