// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/captionlabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace ZelWebServiceControls {

CaptionLabel::CaptionLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

QString CaptionLabel::fitting() const
{
    // A caption that came with line breaks or tabs is still one line.
    QString line = text();
    for (QChar &c : line) {
        if (c.isSpace() || c.category() == QChar::Other_Control)
            c = u' ';
    }
    return fits(line) ? line : fontMetrics().elidedText(line, Qt::ElideRight, width());
}

bool CaptionLabel::fits(const QString &line) const
{
    // A column that is as wide as its widest label may have lost part of a pixel.
    return QFontMetricsF(font(), this).horizontalAdvance(line) <= width() + 1;
}

bool CaptionLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    if (fits(text()))
        return false;
    // As markup, so that a long one is wrapped; what it says is escaped.
    const QString whole = QStringLiteral("<p>%1</p>").arg(text().left(2000).toHtmlEscaped());
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), whole, this);
    return true;
}

void CaptionLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const Qt::LayoutDirection direction =
        text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
    const int force =
        direction == Qt::LeftToRight ? Qt::TextForceLeftToRight : Qt::TextForceRightToLeft;
    const auto alignment = QStyle::visualAlignment(direction, Qt::AlignLeft | Qt::AlignVCenter);
    style()->drawItemText(&painter, rect(), int(alignment) | force | Qt::TextSingleLine, palette(),
                          isEnabled(), fitting(), foregroundRole());
}

} // namespace ZelWebServiceControls
