// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listview.h"

#include "platform/widgets/listiconview.h"
#include "platform/widgets/listinput.h"
#include "platform/widgets/listreportview.h"

#include <QEvent>
#include <QHeaderView>
#include <QMetaMethod>
#include <QStackedLayout>

namespace Zel {

ListView::ListView(QWidget *parent)
    : QWidget(parent)
    , m_model(new ListModel(this))
    , m_selection(new QItemSelectionModel(m_model, this))
    , m_report(new ListReportView(m_model, this))
    , m_stack(new QStackedLayout(this))
    , m_sortKeyMakers(defaultSortKeyMakers())
{
    m_stack->setContentsMargins(0, 0, 0, 0);
    adopt(m_report, m_report->input());
    connect(m_report, &ListReportView::typed, this, &ListView::typeAhead);
    connect(m_report->header(), &QHeaderView::sectionClicked, this, &ListView::headerClicked);
    // To a person in a hurry the second click of a double click is a click.
    connect(m_report->header(), &QHeaderView::sectionDoubleClicked, this, &ListView::headerClicked);
    connect(m_report->header(), &QHeaderView::sectionResized, this,
            [this](int column, int, int pixels) { headerResized(column, pixels); });
    connect(m_selection, &QItemSelectionModel::selectionChanged, this, [this] {
        if (!m_movingSelection)
            emit selectionChanged();
    });
    connect(m_model, &ListModel::checkChanged, this, &ListView::lineCheckChanged);
    // A host's tab order takes part only when this widget says that it takes the focus.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_report);
}

ListView::~ListView() = default;

void ListView::adopt(QAbstractItemView *view, ListInput *input)
{
    const std::unique_ptr<QItemSelectionModel> own(view->selectionModel());
    view->setSelectionModel(m_selection);
    m_stack->addWidget(view);
    connect(input, &ListInput::clicked, this,
            [this](const QModelIndex &line) { emit lineClicked(m_model->rowOf(line)); });
    connect(input, &ListInput::doubleClicked, this,
            [this](const QModelIndex &line) { emit lineDoubleClicked(m_model->rowOf(line)); });
    input->setKeyHandler([this](QKeyEvent *event) { return handleKey(event); });
    input->setMenuHandler([this](const QModelIndex &line, const QPoint &position) {
        if (!isSignalConnected(QMetaMethod::fromSignal(&ListView::contextMenuRequested)))
            return false;
        emit contextMenuRequested(line.isValid() ? m_model->rowOf(line) : -1, position);
        return true;
    });
}

void ListView::makeIconView()
{
    m_icon = new ListIconView(m_model, this);
    m_icon->setSelectionMode(m_report->selectionMode());
    m_icon->setEmptyText(m_emptyText);
    m_icon->setLargeIconSize(m_largeIconSize);
    adopt(m_icon, m_icon->input());
    connect(m_icon, &ListIconView::typed, this, &ListView::typeAhead);
    nameViews();
}

QAbstractItemView *ListView::view() const
{
    return qobject_cast<QAbstractItemView *>(m_stack->currentWidget());
}

QWidget *ListView::viewport() const
{
    return view()->viewport();
}

ListView::ViewMode ListView::viewMode() const
{
    return view() == m_report ? ViewMode::Report : ViewMode::Icon;
}

void ListView::setViewMode(ViewMode mode)
{
    if (mode == viewMode())
        return;
    if (mode == ViewMode::Icon && !m_icon)
        makeIconView();
    const bool hadFocus = view()->hasFocus();
    QAbstractItemView *next = m_report;
    if (mode == ViewMode::Icon)
        next = m_icon;
    m_stack->setCurrentWidget(next);
    setFocusProxy(next);
    if (hadFocus)
        next->setFocus();
    if (next->currentIndex().isValid())
        next->scrollTo(next->currentIndex());
}

void ListView::setAccessibleName(const QString &name)
{
    QWidget::setAccessibleName(name);
    nameViews();
}

void ListView::nameViews()
{
    m_report->setAccessibleName(accessibleName());
    if (m_icon)
        m_icon->setAccessibleName(accessibleName());
}

void ListView::setEmptyText(const QString &text)
{
    m_emptyText = text;
    m_report->setEmptyText(text);
    if (m_icon)
        m_icon->setEmptyText(text);
}

bool ListView::event(QEvent *event)
{
    const bool done = QWidget::event(event);
    switch (event->type()) {
    case QEvent::ScreenChangeInternal:
    case QEvent::StyleChange:
        applyColumnWidths();
        break;
    default:
        break;
    }
    return done;
}

void ListView::showEvent(QShowEvent *event)
{
    // The name may have been set through QWidget or a form file.
    nameViews();
    applyColumnWidths();
    QWidget::showEvent(event);
}

} // namespace Zel
