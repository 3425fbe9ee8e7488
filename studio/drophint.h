// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace Studio {

/// Lies over a page while files are dragged across it and says what dropping them would do, or why
/// it would do nothing.
class DropHint : public QWidget
{
    Q_OBJECT

public:
    explicit DropHint(QWidget *parent);

    /// @param refusal why nothing can be dropped; empty when it can
    void showOver(const QRect &place, const QString &text, const QString &refusal);

    QString text() const { return m_text; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
    bool m_isRefusal = false;
};

} // namespace Studio
