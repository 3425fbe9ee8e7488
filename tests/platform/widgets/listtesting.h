// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/runtimeerror.h"
#include "platform/widgets/listlines.h"
#include "platform/widgets/listview.h"

#include <QHeaderView>
#include <QSet>
#include <QTest>
#include <QTreeView>

/// What the tests of ListView share.
namespace ListTesting {

/// Rows of any number without storage that remember which of their texts were asked for.
class WatchedRows : public Zel::ListRowProvider
{
public:
    explicit WatchedRows(qsizetype count)
        : m_count(count)
    {
    }

    qsizetype rowCount() const override { return m_count; }

    QString text(qsizetype row, int column) const override
    {
        asked.insert(row);
        return QStringLiteral("line %1 cell %2").arg(row).arg(column);
    }

    QVariant tag(qsizetype row) const override { return row * 10; }

    mutable QSet<qsizetype> asked;

private:
    qsizetype m_count;
};

/// A list of one text column with these lines.
inline std::shared_ptr<Zel::ListLines> lines(const QStringList &texts)
{
    auto rows = std::make_shared<Zel::ListLines>();
    for (const QString &text : texts)
        rows->add(text, {}, text);
    return rows;
}

/// The texts of a column from top to bottom, as the view's model has them.
inline QStringList shownTexts(const Zel::ListView &list, int column = 0)
{
    QStringList texts;
    const QAbstractItemModel *model = list.view()->model();
    for (int position = 0; position < model->rowCount(); ++position)
        texts.append(model->index(position, column).data().toString());
    return texts;
}

inline QHeaderView *header(const Zel::ListView &list)
{
    return list.findChild<QHeaderView *>();
}

inline void show(Zel::ListView &list, const QSize &size = {600, 300})
{
    list.resize(size);
    list.show();
    list.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&list));
}

inline void click(const Zel::ListView &list, qsizetype row, int column = 0,
                  Qt::KeyboardModifiers modifiers = {}, Qt::MouseButton button = Qt::LeftButton)
{
    const QRect cell = list.cellRect(row, column);
    QVERIFY(list.viewport()->rect().contains(cell.center()));
    QTest::mouseClick(list.viewport(), button, modifiers, cell.center());
}

/// Both clicks of a double click, with the releases.
inline void doubleClick(const Zel::ListView &list, qsizetype row, int column = 0)
{
    const QPoint at = list.cellRect(row, column).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, at);
    QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, at);
}

inline void clickGround(const Zel::ListView &list)
{
    const QPoint at = list.viewport()->rect().bottomLeft() + QPoint(20, -5);
    QVERIFY(!list.view()->indexAt(at).isValid());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at);
}

inline void clickHeader(const Zel::ListView &list, int column)
{
    const QHeaderView *head = header(list);
    const QPoint at(head->sectionViewportPosition(column) + head->sectionSize(column) / 2,
                    head->height() / 2);
    QTest::mouseClick(head->viewport(), Qt::LeftButton, {}, at);
}

} // namespace ListTesting
