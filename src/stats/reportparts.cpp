// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/reportparts.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

namespace ZelWebServiceControls {

ReportParts::ReportParts(QFrame *frame)
    : m_frame(frame)
    , m_column(new QVBoxLayout(frame))
{
}

QComboBox *ReportParts::choice(const QString &labelName, const QString &caption,
                               const QString &name)
{
    auto *label = new QLabel(caption, m_frame);
    label->setObjectName(labelName);
    auto *combo = new QComboBox(m_frame);
    combo->setObjectName(name);
    combo->setAccessibleName(caption);
    // A long question does not make the whole control wide.
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(20);
    label->setBuddy(combo);
    auto *row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(combo, 1);
    m_column->addLayout(row);
    return combo;
}

Zel::FlexGrid *ReportParts::grid(const QString &name, const QString &accessibleName)
{
    auto *grid = new Zel::FlexGrid(m_frame);
    grid->setObjectName(name);
    grid->setAccessibleName(accessibleName);
    m_column->addWidget(grid, 1);
    m_buttons = new QHBoxLayout;
    m_column->addLayout(m_buttons);
    return grid;
}

QPushButton *ReportParts::plainButton(const QString &name, const QString &caption)
{
    return button(name, caption);
}

QPushButton *ReportParts::visualizeButton(const QString &name)
{
    m_buttons->addStretch();
    QPushButton *const made = button(name, tr("Data Visualization"));
    made->setEnabled(false);
    return made;
}

QString ReportParts::oneLine(const QString &text)
{
    QString line = text;
    for (QChar &c : line) {
        if (c == u'\t' || c == u'\n' || c == u'\r')
            c = u' ';
    }
    return line;
}

QPushButton *ReportParts::button(const QString &name, const QString &caption)
{
    auto *made = new QPushButton(caption, m_frame);
    made->setObjectName(name);
    made->setAutoDefault(false);
    m_buttons->addWidget(made);
    return made;
}

} // namespace ZelWebServiceControls
