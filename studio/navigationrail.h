// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>
#include <QHash>

class QButtonGroup;
class QLabel;
class QToolButton;
class QVBoxLayout;

namespace Studio {

/// The column of pages at the left edge of the window: one button a page, the account at the foot.
class NavigationRail : public QFrame
{
    Q_OBJECT

public:
    explicit NavigationRail(QWidget *parent = nullptr);

    /// Adds a page's button; pages are numbered from 0 in this order.
    void addPage(const QString &title, const QString &icon);
    void setCurrent(int page);
    /// Shows a number at a page's button, and what it counts to assistive technology; 0 takes it
    /// away.
    void setCount(int page, int count, const QString &meaning);

    void setAccountName(const QString &name);

    /// The button at the foot, for the menu of the person and the account.
    QToolButton *accountButton() const { return m_account; }

signals:
    void pageChosen(int page);

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QToolButton *makeButton(const QString &title, const QString &icon);
    void applyColors();

    void placeCounts();

    QButtonGroup *m_group;
    QHash<int, QLabel *> m_counts;
    QVBoxLayout *m_pages;
    QToolButton *m_account;
};

} // namespace Studio
