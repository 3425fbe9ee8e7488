// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/navigationrail.h"

#include "studio/appearance.h"
#include "studio/tintedicon.h"

#include <QApplication>
#include <QButtonGroup>
#include <QEvent>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace Studio {

namespace {

constexpr int RailWidth = 92;
constexpr int IconSize = 24;

} // namespace

NavigationRail::NavigationRail(QWidget *parent)
    : QFrame(parent)
    , m_group(new QButtonGroup(this))
    , m_pages(new QVBoxLayout)
{
    setObjectName(QStringLiteral("navigationRail"));
    setAccessibleName(tr("Pages"));
    setFixedWidth(RailWidth);
    setAutoFillBackground(true);
    m_group->setExclusive(true);
    m_pages->setSpacing(4);
    m_account = makeButton(tr("Account"), QStringLiteral("person"));
    m_account->setObjectName(QStringLiteral("accountButton"));
    m_account->setPopupMode(QToolButton::InstantPopup);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(6, 10, 6, 10);
    column->addLayout(m_pages);
    column->addStretch(1);
    column->addWidget(m_account);
    applyColors();
    connect(m_group, &QButtonGroup::idClicked, this, &NavigationRail::pageChosen);
}

QToolButton *NavigationRail::makeButton(const QString &title, const QString &icon)
{
    auto *button = new QToolButton(this);
    button->setText(title);
    button->setIcon(tintedIcon(icon));
    button->setIconSize(QSize(IconSize, IconSize));
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return button;
}

void NavigationRail::addPage(const QString &title, const QString &icon)
{
    const int number = static_cast<int>(m_group->buttons().size());
    QToolButton *button = makeButton(title, icon);
    button->setObjectName(QStringLiteral("railPage_%1").arg(number));
    button->setCheckable(true);
    button->setToolTip(tr("%1 (Alt+%2)").arg(title).arg(number + 1));
    button->setShortcut(QKeySequence(QStringLiteral("Alt+%1").arg(number + 1)));
    m_group->addButton(button, number);
    m_pages->addWidget(button);
}

void NavigationRail::setAccountName(const QString &name)
{
    // Two lines at the most: the first word, and what of the rest fits.
    const int room = RailWidth - 18;
    QStringList lines{name.section(QLatin1Char(' '), 0, 0), name.section(QLatin1Char(' '), 1)};
    lines.removeAll(QString());
    for (QString &line : lines)
        line = m_account->fontMetrics().elidedText(line, Qt::ElideRight, room);
    m_account->setText(lines.join(QLatin1Char('\n')));
    m_account->setAccessibleName(tr("Account %1").arg(name));
}

void NavigationRail::setCurrent(int page)
{
    if (auto *button = m_group->button(page))
        button->setChecked(true);
}

void NavigationRail::setCount(int page, int count, const QString &meaning)
{
    QAbstractButton *button = m_group->button(page);
    QLabel *&label = m_counts[page];
    if (!label) {
        label = new QLabel(this);
        label->setObjectName(QStringLiteral("railCount_%1").arg(page));
        label->setAttribute(Qt::WA_TransparentForMouseEvents);
        label->setAlignment(Qt::AlignCenter);
        label->setAutoFillBackground(false);
        QFont font = label->font();
        font.setPointSizeF(font.pointSizeF() * 0.85);
        font.setWeight(QFont::DemiBold);
        label->setFont(font);
    }
    label->setText(count > 99 ? QStringLiteral("99+") : QString::number(count));
    label->setVisible(count > 0);
    button->setAccessibleDescription(count > 0 ? meaning : QString());
    placeCounts();
    applyColors();
}

void NavigationRail::placeCounts()
{
    for (auto it = m_counts.cbegin(); it != m_counts.cend(); ++it) {
        const QAbstractButton *button = m_group->button(it.key());
        QLabel *label = it.value();
        const int height = label->fontMetrics().height() + 2;
        label->resize(qMax(height, label->fontMetrics().horizontalAdvance(label->text()) + 10),
                      height);
        // At the upper right of the icon.
        label->move(button->geometry().center().x() + IconSize / 2 - 6, button->y() + 2);
        label->raise();
    }
}

void NavigationRail::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    placeCounts();
}

void NavigationRail::applyColors()
{
    for (QLabel *label : std::as_const(m_counts)) {
        const QPalette base = QApplication::palette();
        label->setStyleSheet(QStringLiteral("background: %1; color: %2; border-radius: %3px;")
                                 .arg(base.color(QPalette::Highlight).name(),
                                      base.color(QPalette::HighlightedText).name())
                                 .arg((label->fontMetrics().height() + 2) / 2));
    }
    const QPalette base = QApplication::palette();
    setOwnColor(this, QPalette::Window,
                mixed(base.color(QPalette::Window), base.color(QPalette::WindowText),
                      isDark(base) ? 0.05 : 0.06));
}

void NavigationRail::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

} // namespace Studio
