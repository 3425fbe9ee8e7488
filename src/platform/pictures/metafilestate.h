// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/pictures/metafilemapping.h"

#include <QBrush>
#include <QList>
#include <QPainterPath>
#include <QPen>
#include <QString>

#include <variant>

namespace Zel {

struct MetafilePen
{
    Qt::PenStyle style = Qt::SolidLine;
    double width = 0; ///< in the units of the records; 0 is the thinnest line there is
    bool isCosmetic = false;
    QColor color = Qt::black;
    Qt::PenCapStyle cap = Qt::RoundCap;
    Qt::PenJoinStyle join = Qt::RoundJoin;
    QList<qreal> dashes; ///< of a pen with a pattern of its own
};

struct MetafileFont
{
    double height = 0; ///< below zero the height of a letter "M", above of a line, 0 any
    double angle = 0;  ///< degrees, counter-clockwise
    int weight = 400;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    quint8 charset = 0;
    QString face;
};

struct MetafileRegion
{
    QPainterPath path; ///< in pixels of the screen
};

/// What a record made to be selected later; a palette only takes its place in the table.
using MetafileObject =
    std::variant<std::monostate, MetafilePen, QBrush, MetafileFont, MetafileRegion>;

/// Everything that a metafile saves and restores.
struct MetafileState
{
    enum Align
    {
        UpdatePosition = 1,
        Right = 2,
        Center = 6,
        Bottom = 8,
        Baseline = 24
    };

    MetafileMapping mapping;
    MetafilePen pen;
    QBrush brush = Qt::white;
    MetafileFont font;
    QColor textColor = Qt::black;
    QColor background = Qt::white;
    bool isOpaque = true; ///< gaps in texts, hatches and dashes show the background colour
    Qt::FillRule fillRule = Qt::OddEvenFill;
    int textAlign = 0;
    int rasterOperation = 13; ///< 13 draws over what is there
    double miterLimit = 10;
    bool arcsClockwise = false;
    QPointF position; ///< of the imagined pen, in the units of the records
    QList<QPainterPath> clips;
};

} // namespace Zel
