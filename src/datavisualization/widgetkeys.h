// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

namespace ZelDataVisualization {

/// Lets the keys of a widget's actions go to that widget while it has the focus, whatever the host
/// does with the same keys: two shortcuts that are the same would otherwise both do nothing.
class WidgetKeys : public QObject
{
public:
    explicit WidgetKeys(QWidget *widget);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_widget;
};

} // namespace ZelDataVisualization
