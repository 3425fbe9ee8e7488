// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHeaderView>

namespace Zel {

/// The header over a report view: its captions begin where the texts of the cells do, and the room
/// right of the last column is header too.
class ListHeader : public QHeaderView
{
    Q_OBJECT

public:
    explicit ListHeader(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
    void paintSection(QPainter *painter, const QRect &rect, int column) const override;
    QSize sectionSizeFromContents(int column) const override;

private:
    bool showsArrow(int column) const;
};

} // namespace Zel
