// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace ZelWebServiceControls {

/// A label whose caption is drawn with "…" at its end where there is no room for all of it; a tool
/// tip shows the whole then. `text` is the caption as it was set. A plain QLabel to everybody
/// outside.
class CaptionLabel : public QLabel
{
public:
    explicit CaptionLabel(QWidget *parent);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// The first line of the caption, as much of it as there is room for.
    QString fitting() const;
    bool fits(const QString &line) const;
};

} // namespace ZelWebServiceControls
