// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/graphaccessible.h"

#include "datavisualization/graphview.h"

#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

namespace ZelDataVisualization {

namespace {

/// A bar on the screen.
class AccessibleBar : public QAccessibleInterface
{
public:
    AccessibleBar(GraphView *view, int index)
        : m_view(view)
        , m_index(index)
    {
    }

    bool isValid() const override
    {
        return m_view && size_t(m_index) < m_view->content().bars.size();
    }

    QObject *object() const override { return nullptr; }

    QAccessibleInterface *parent() const override
    {
        return m_view ? QAccessible::queryAccessibleInterface(m_view) : nullptr;
    }

    QAccessibleInterface *child(int) const override { return nullptr; }

    QAccessibleInterface *childAt(int, int) const override { return nullptr; }

    int childCount() const override { return 0; }

    int indexOfChild(const QAccessibleInterface *) const override { return -1; }

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid())
            return QString();
        const GraphBar &bar = m_view->content().bars[size_t(m_index)];
        if (kind == QAccessible::Name)
            return bar.spoken; // some readers say nothing else
        return kind == QAccessible::Value ? bar.valueText : QString();
    }

    void setText(QAccessible::Text, const QString &) override {}

    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QRect rect = m_view->rectOfBar(m_index);
        return QRect(m_view->viewport()->mapToGlobal(rect.topLeft()), rect.size());
    }

    QAccessible::Role role() const override { return QAccessible::ListItem; }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.focusable = true;
        state.readOnly = true;
        state.invalid = !isValid();
        if (!isValid())
            return state;
        state.focused = m_view->hasFocus() && m_view->extent().barOf(m_view->current()) == m_index;
        state.invisible = !m_view->isVisible();
        return state;
    }

    int index() const { return m_index; }

private:
    QPointer<GraphView> m_view;
    int m_index;
};

class AccessibleGraph : public QAccessibleWidget
{
public:
    explicit AccessibleGraph(GraphView *view)
        : QAccessibleWidget(view, QAccessible::Chart)
    {
    }

    ~AccessibleGraph() override
    {
        for (const QAccessible::Id id : std::as_const(m_bars))
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return static_cast<int>(view().content().bars.size()); }

    QAccessibleInterface *child(int index) const override
    {
        if (index < 0 || index >= childCount())
            return nullptr;
        const auto known = m_bars.constFind(index);
        if (known != m_bars.constEnd())
            return QAccessible::accessibleInterface(*known);
        auto *bar = new AccessibleBar(&view(), index);
        m_bars.insert(index, QAccessible::registerAccessibleInterface(bar));
        return bar;
    }

    int indexOfChild(const QAccessibleInterface *child) const override
    {
        const auto *bar = dynamic_cast<const AccessibleBar *>(child);
        return bar && bar->parent() == this ? bar->index() : -1;
    }

    QAccessibleInterface *childAt(int x, int y) const override
    {
        const QPoint at = view().viewport()->mapFromGlobal(QPoint(x, y));
        return child(static_cast<int>(view().barAt(at)));
    }

    QAccessibleInterface *focusChild() const override
    {
        if (!view().hasFocus() || view().current() < 0)
            return nullptr;
        return child(static_cast<int>(view().extent().barOf(view().current())));
    }

private:
    GraphView &view() const { return *static_cast<GraphView *>(object()); }

    mutable QHash<int, QAccessible::Id> m_bars;
};

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    auto *view = qobject_cast<GraphView *>(object);
    return view ? new AccessibleGraph(view) : nullptr;
}

} // namespace

void announceGraphs()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

void announceBar(GraphView &view, qsizetype bar)
{
    QAccessibleEvent event(&view, QAccessible::Focus);
    event.setChild(static_cast<int>(bar));
    QAccessible::updateAccessibility(&event);
}

} // namespace ZelDataVisualization
