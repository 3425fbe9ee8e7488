// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace ZelWebServiceControls {

/// A thin bar in the colour of selections, beside a field that a person changed. It takes no room
/// and no mouse.
class FieldMark : public QWidget
{
public:
    explicit FieldMark(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace ZelWebServiceControls
