// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listrowprovider.h"

namespace Zel {

ListRowProvider::~ListRowProvider() = default;

QVariant ListRowProvider::tag(qsizetype) const
{
    return {};
}

int ListRowProvider::smallIcon(qsizetype) const
{
    return 0;
}

int ListRowProvider::largeIcon(qsizetype) const
{
    return 0;
}

bool ListRowProvider::isChecked(qsizetype) const
{
    return false;
}

bool ListRowProvider::isGhosted(qsizetype) const
{
    return false;
}

QColor ListRowProvider::colour(qsizetype, int) const
{
    return {};
}

bool ListRowProvider::sortValues(int, std::span<qint64>) const
{
    return false;
}

} // namespace Zel
