// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/figures.h"

#include "datavisualization/visualizationtexts.h"
#include "platform/core/numbertext.h"

#include <QLocale>

#include <cmath>

namespace ZelDataVisualization {

namespace {

QString tr(const char *text)
{
    return VisualizationTexts::tr(text);
}

class NoFigures : public Figures
{
public:
    explicit NoFigures(const QString &sentence)
        : m_sentence(sentence)
    {
    }

    qsizetype count() const override { return 0; }

    QString title() const override { return QString(); }

    QString emptyText() const override { return m_sentence; }

    QString label(qsizetype) const override { return QString(); }

    std::optional<double> value(qsizetype) const override { return std::nullopt; }

    QString valueText(qsizetype) const override { return QString(); }

    bool isShare() const override { return false; }

    QStringList headers() const override { return {}; }

    QString text(qsizetype, int) const override { return QString(); }

private:
    QString m_sentence;
};

} // namespace

Figures::~Figures() = default;

QString Figures::spoken(qsizetype index) const
{
    const QString text = tr("%1: %2").arg(label(index), valueText(index));
    return isCorrect(index) ? tr("%1, correct").arg(text) : text;
}

FiguresPtr noFigures(const QString &sentence)
{
    return std::make_shared<NoFigures>(sentence);
}

QString percentText(double percent, int digits)
{
    // Halves go to the even neighbour, as everywhere.
    const double scale = std::pow(10, digits);
    const double rounded = std::nearbyint(percent * scale) / scale;
    return tr("%1 %").arg(QLocale().toString(rounded, 'f', digits));
}

QString countText(double count)
{
    constexpr double MostExact = 9e15;
    if (std::trunc(count) == count && std::abs(count) < MostExact)
        return QLocale().toString(static_cast<qlonglong>(count));
    return Zel::numberText(count);
}

} // namespace ZelDataVisualization
