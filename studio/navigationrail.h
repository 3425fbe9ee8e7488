// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

class QButtonGroup;
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

    void setAccountName(const QString &name);

    /// The button at the foot, for the menu of the person and the account.
    QToolButton *accountButton() const { return m_account; }

signals:
    void pageChosen(int page);

protected:
    void changeEvent(QEvent *event) override;

private:
    QToolButton *makeButton(const QString &title, const QString &icon);
    void applyColors();

    QButtonGroup *m_group;
    QVBoxLayout *m_pages;
    QToolButton *m_account;
};

} // namespace Studio
