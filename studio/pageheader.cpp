// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/pageheader.h"

#include "studio/tintedicon.h"

#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace Studio {

QLabel *makeHeading(QWidget *parent, const QString &title)
{
    auto *heading = new QLabel(title, parent);
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    font.setWeight(QFont::DemiBold);
    heading->setFont(font);
    return heading;
}

QToolButton *makeTool(QWidget *parent, const char *name, const QString &icon, const QString &text,
                      const QString &tip)
{
    auto *button = new QToolButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setIcon(tintedIcon(icon));
    button->setText(text);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setToolTip(tip);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

QPushButton *makeButton(QWidget *parent, const char *name, const QString &caption,
                        const QString &tip)
{
    auto *button = new QPushButton(caption, parent);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(tip);
    button->setAutoDefault(true);
    return button;
}

} // namespace Studio
