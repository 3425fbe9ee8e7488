// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "webcontrols/graphicinterface.h"

#include <QAccessibleWidget>
#include <QSet>
#include <QWidget>

namespace ZelWebControls {

namespace {

QSet<QString> &announced()
{
    static QSet<QString> names;
    return names;
}

QAccessibleInterface *makeInterface(const QString &className, QObject *object)
{
    if (!object || !object->isWidgetType() || !announced().contains(className))
        return nullptr;
    return new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::Graphic);
}

} // namespace

void announceAsGraphic(const QMetaObject &widgetClass)
{
    if (announced().isEmpty())
        QAccessible::installFactory(makeInterface);
    announced().insert(QString::fromLatin1(widgetClass.className()));
}

} // namespace ZelWebControls
