// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace Studio {

/// A raised sheet with rounded corners that groups what belongs together. One that takes the
/// keyboard shows a ring while it has it.
class Card : public QWidget
{
    Q_OBJECT

public:
    explicit Card(QWidget *parent = nullptr);

    /// The colour of the sheet under the present palette.
    static QColor ground(const QPalette &palette);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace Studio
