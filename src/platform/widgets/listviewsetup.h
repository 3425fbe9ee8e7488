// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QAbstractItemDelegate;
class QAbstractItemModel;
class QAbstractItemView;
class QString;

namespace Zel {

/// What the report view and the icon view of a list have in common.
void setUpListView(QAbstractItemView *view, QAbstractItemModel *model,
                   QAbstractItemDelegate *delegate);
/// Paints the text in the middle of the view, muted, while the view shows no line.
void paintEmptyText(QAbstractItemView *view, const QString &text);

} // namespace Zel
