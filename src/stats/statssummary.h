// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QObject>

class QGroupBox;
class QLineEdit;

namespace ZelWebServiceControls {

class StatsSource;

/// The summary of a deployment's traffic: eleven figures, each in a read-only text box with its
/// label. It belongs to its frame and goes with it.
class StatsSummary : public QObject
{
public:
    /// Makes the boxes in `frame`.
    StatsSummary(QGroupBox *frame, const StatsSource &source);

    /// Asks the service for one figure after the other and shows each at once. An error propagates;
    /// the figures asked for before it stay. Ends quietly when it is destroyed meanwhile.
    void fill();

private:
    const StatsSource &m_source;
    QHash<QString, QLineEdit *> m_boxes;
};

} // namespace ZelWebServiceControls
