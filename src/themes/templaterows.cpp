// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "themes/templaterows.h"

#include "platform/widgets/systemcolor.h"

namespace ZelWebServiceControls {

namespace {

constexpr QColor Grey(160, 160, 160);

QColor blend(const QColor &a, const QColor &b, double share)
{
    const auto mix = [share](int from, int to) { return qRound(from + (to - from) * share); };
    return QColor(mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()));
}

/// The colour between two whose contrast on the ground is the wanted one; `near` has less of it.
QColor withContrast(const QColor &near, const QColor &far, const QColor &ground, double wanted)
{
    constexpr int Steps = 10; // finer than colours are
    double low = 0;
    double high = 1;
    for (int step = 0; step < Steps; ++step) {
        const double middle = (low + high) / 2;
        const double contrast = Zel::contrastRatio(blend(near, far, middle), ground);
        (contrast < wanted ? low : high) = middle;
    }
    return blend(near, far, high);
}

} // namespace

QColor requiredTemplateColour(const QPalette &palette)
{
    const QColor ground = palette.color(QPalette::Active, QPalette::Base);
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    if (ground.lightness() >= text.lightness())
        return Grey;
    const double wanted = Zel::contrastRatio(Grey, Qt::white);
    const QColor disabled = palette.color(QPalette::Disabled, QPalette::Text);
    if (Zel::contrastRatio(disabled, ground) < wanted)
        return withContrast(disabled, text, ground, wanted);
    return withContrast(ground, disabled, ground, wanted);
}

TemplateRows::TemplateRows(std::function<QPalette()> palette)
    : m_palette(std::move(palette))
{
}

void TemplateRows::add(const QXSC::TemplateRecordPtr &record, bool required)
{
    m_rows.append({record, required});
}

qsizetype TemplateRows::rowCount() const
{
    return m_rows.size();
}

QString TemplateRows::text(qsizetype row, int column) const
{
    const QXSC::TemplateRecord &record = *m_rows.at(row).record;
    return column == Template ? record.name : record.description;
}

QVariant TemplateRows::tag(qsizetype row) const
{
    return QVariant::fromValue(m_rows.at(row).record);
}

bool TemplateRows::isChecked(qsizetype) const
{
    return true;
}

bool TemplateRows::isGhosted(qsizetype row) const
{
    return m_rows.at(row).required;
}

QColor TemplateRows::colour(qsizetype row, int) const
{
    return m_rows.at(row).required ? requiredTemplateColour(m_palette()) : QColor();
}

} // namespace ZelWebServiceControls
