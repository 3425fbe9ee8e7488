// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/datepattern.h"

namespace Zel {

/// Takes a pattern apart into the fields of a DatePattern.
class DatePatternParser
{
public:
    DatePatternParser(QStringView pattern, bool tellsHalvesApart);

    QList<DatePattern::Field> fields() const { return m_fields; }

private:
    void parse(QStringView pattern);
    qsizetype parseQuoted(QStringView pattern, qsizetype at);
    void addLetters(QChar letter, int count);
    void addLiteral(QStringView text);
    void addField(DatePattern::Kind kind, int width = 0);
    void leaveOut();
    void useDayClock();
    void finish();

    QList<DatePattern::Field> m_fields;
    bool m_tellsHalvesApart;
    bool m_leftOut = false;
};

} // namespace Zel
