// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/core/runtimeerror.h"
#include "platform/widgets/treeview.h"
#include "testsupport/testcase.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Zel;

namespace {

template <typename Work>
int errorOf(const Work &work)
{
    try {
        work();
    } catch (const RuntimeError &error) {
        return error.number();
    }
    return 0;
}

QStringList keysOf(const QSignalSpy &spy)
{
    QStringList keys;
    for (const QVariantList &arguments : spy)
        keys.append(arguments.first().toString());
    return keys;
}

QIcon filled(Qt::GlobalColor colour)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(colour);
    return QIcon(pixmap);
}

} // namespace

class TestTreeView : public ZelTest::TestCase
{
    Q_OBJECT

    std::unique_ptr<TreeView> m_tree;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    std::unique_ptr<QSignalSpy> m_clicks;

    void click(const QString &key)
    {
        QTest::mouseClick(m_tree->viewport(), Qt::LeftButton, {}, m_tree->nodeRect(key).center());
    }

    void key(Qt::Key key) { QTest::keyClick(m_tree.get(), key); }

    QColor shownImage(const QString &key) const
    {
        QModelIndexList found =
            m_tree->model()->match(m_tree->model()->index(0, 0), TreeView::NodeKeyRole, key, 1,
                                   Qt::MatchExactly | Qt::MatchRecursive);
        if (found.isEmpty())
            return {};
        const QIcon icon = found.first().data(Qt::DecorationRole).value<QIcon>();
        return icon.isNull() ? QColor() : icon.pixmap(16).toImage().pixelColor(8, 8);
    }

private slots:

    void init()
    {
        TestCase::init();
        m_tree = std::make_unique<TreeView>();
        m_tester = std::make_unique<QAbstractItemModelTester>(
            m_tree->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        // l0 > (l1 > l3, l2)
        m_tree->addNode({}, QStringLiteral("l0"), QStringLiteral("All Folders"), 1);
        m_tree->addNode(QStringLiteral("l0"), QStringLiteral("l1"), QStringLiteral("Pictures"), 1);
        m_tree->addNode(QStringLiteral("l0"), QStringLiteral("l2"), QStringLiteral("Sounds"), 1);
        m_tree->addNode(QStringLiteral("l1"), QStringLiteral("l3"), QStringLiteral("Portraits"), 1);
        for (const char *key : {"l0", "l1", "l2", "l3"})
            m_tree->setExpanded(QString::fromLatin1(key), true);
        m_tree->resize(300, 300);
        m_tree->show();
        m_tree->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_tree.get()));
        m_clicks = std::make_unique<QSignalSpy>(m_tree.get(), &TreeView::nodeClicked);
    }

    void cleanup()
    {
        m_clicks.reset();
        m_tester.reset();
        m_tree.reset();
    }

    void nodesHangUnderTheirParents()
    {
        QCOMPARE(m_tree->nodeCount(), 4);
        QCOMPARE(m_tree->topKeys(), QStringList({"l0"}));
        QCOMPARE(m_tree->childKeys(QStringLiteral("l0")), QStringList({"l1", "l2"}));
        QCOMPARE(m_tree->childCount(QStringLiteral("l1")), 1);
        QCOMPARE(m_tree->childCount(QStringLiteral("l3")), 0);
        QCOMPARE(m_tree->parentKey(QStringLiteral("l3")), QStringLiteral("l1"));
        QCOMPARE(m_tree->parentKey(QStringLiteral("l0")), QString());
        QCOMPARE(m_tree->text(QStringLiteral("l2")), QStringLiteral("Sounds"));
        QCOMPARE(m_tree->lastAddedNode(), QStringLiteral("l3"));
        QVERIFY(!m_tree->contains(QStringLiteral("L3")));
    }

    void tagsAndImagesAreReadableThroughTheModel()
    {
        m_tree->setTag(QStringLiteral("l1"), QStringLiteral("RWD"));
        m_tree->setExpandedImage(QStringLiteral("l1"), 2);
        QCOMPARE(m_tree->tag(QStringLiteral("l1")), QVariant(QStringLiteral("RWD")));
        QCOMPARE(m_tree->expandedImage(QStringLiteral("l1")), 2);
        QCOMPARE(m_tree->image(QStringLiteral("l1")), 1);
        const QModelIndex root = m_tree->model()->index(0, 0);
        const QModelIndex node = m_tree->model()->index(0, 0, root);
        QCOMPARE(node.data(TreeView::NodeKeyRole).toString(), QStringLiteral("l1"));
        QCOMPARE(node.data(TreeView::NodeTagRole).toString(), QStringLiteral("RWD"));
        QCOMPARE(node.data(TreeView::NodeImageRole).toInt(), 1);
        QCOMPARE(node.data(TreeView::NodeExpandedImageRole).toInt(), 2);
        QVERIFY(!m_tree->tag(QStringLiteral("l2")).isValid());
    }

    void theImageFollowsTheExpansion()
    {
        m_tree->setImages({filled(Qt::red), filled(Qt::green)});
        QCOMPARE(shownImage(QStringLiteral("l1")), QColor(Qt::red));
        m_tree->setExpandedImage(QStringLiteral("l1"), 2);
        QCOMPARE(shownImage(QStringLiteral("l1")), QColor(Qt::green));
        m_tree->setExpanded(QStringLiteral("l1"), false);
        QVERIFY(!m_tree->isExpanded(QStringLiteral("l1")));
        QCOMPARE(shownImage(QStringLiteral("l1")), QColor(Qt::red));
        click(QStringLiteral("l1"));
        key(Qt::Key_Right);
        QCOMPARE(shownImage(QStringLiteral("l1")), QColor(Qt::green));
        m_tree->setImage(QStringLiteral("l2"), 0);
        QVERIFY(!shownImage(QStringLiteral("l2")).isValid());
    }

    void anExpansionBeforeTheFirstChildCounts()
    {
        m_tree->addNode(QStringLiteral("l3"), QStringLiteral("l4"), QStringLiteral("Old"));
        QVERIFY(m_tree->isExpanded(QStringLiteral("l3")));
        QVERIFY(m_tree->nodeRect(QStringLiteral("l4")).isValid());
    }

    void errors()
    {
        const QString l1 = QStringLiteral("l1");
        const QString absent = QStringLiteral("l9");
        QCOMPARE(errorOf([&] { m_tree->addNode({}, l1, QStringLiteral("again")); }), 35602);
        QCOMPARE(errorOf([&] { m_tree->addNode(absent, QStringLiteral("l5"), {}); }), 35601);
        QCOMPARE(errorOf([&] { m_tree->addNode({}, {}, QStringLiteral("no key")); }), 5);
        QCOMPARE(errorOf([&] { (void)m_tree->text(absent); }), 35601);
        QCOMPARE(errorOf([&] { (void)m_tree->tag(absent); }), 35601);
        QCOMPARE(errorOf([&] { m_tree->setTag(absent, 1); }), 35601);
        QCOMPARE(errorOf([&] { m_tree->setExpanded(absent, true); }), 35601);
        QCOMPARE(errorOf([&] { m_tree->selectNode(absent); }), 35601);
        QCOMPARE(errorOf([&] { m_tree->removeNode(absent); }), 35601);
        QCOMPARE(m_tree->nodeCount(), 4);
        QCOMPARE(m_tree->lastAddedNode(), QStringLiteral("l3"));
    }

    void removingANodeRemovesWhatIsBelow()
    {
        m_tree->removeNode(QStringLiteral("l1"));
        QCOMPARE(m_tree->nodeCount(), 2);
        QVERIFY(!m_tree->contains(QStringLiteral("l3")));
        QCOMPARE(m_tree->lastAddedNode(), QString());
        // The keys are free again.
        m_tree->addNode(QStringLiteral("l2"), QStringLiteral("l3"), QStringLiteral("new"));
        m_tree->clear();
        QCOMPARE(m_tree->nodeCount(), 0);
        QCOMPARE(m_tree->lastAddedNode(), QString());
        QCOMPARE(m_tree->selectedNode(), QString());
        m_tree->addNode({}, QStringLiteral("l0"), QStringLiteral("again"));
    }

    void aClickClicksItsNodeOnce()
    {
        click(QStringLiteral("l2"));
        QCOMPARE(keysOf(*m_clicks), QStringList({"l2"}));
        QCOMPARE(m_tree->selectedNode(), QStringLiteral("l2"));
        // Anywhere on the line.
        const QRect line = m_tree->nodeRect(QStringLiteral("l1"));
        QTest::mouseClick(m_tree->viewport(), Qt::LeftButton, {},
                          QPoint(m_tree->viewport()->width() - 5, line.center().y()));
        QCOMPARE(keysOf(*m_clicks), QStringList({"l2", "l1"}));
    }

    void selectingByCodeRaisesNoClick()
    {
        QSignalSpy changed(m_tree.get(), &TreeView::selectionChangedTo);
        m_tree->selectNode(QStringLiteral("l3"));
        QCOMPARE(m_tree->selectedNode(), QStringLiteral("l3"));
        m_tree->selectNode({});
        QCOMPARE(m_tree->selectedNode(), QString());
        QCOMPARE(keysOf(changed), QStringList({"l3", ""}));
        QCOMPARE(m_clicks->size(), 0);
    }

    void theExpandMarkIsNoClick_data()
    {
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::newRow("left to right") << Qt::LeftToRight;
        QTest::newRow("right to left") << Qt::RightToLeft;
    }

    void theExpandMarkIsNoClick()
    {
        QFETCH(Qt::LayoutDirection, direction);
        m_tree->setLayoutDirection(direction);
        m_tree->selectNode(QStringLiteral("l2"));
        const QRect node = m_tree->nodeRect(QStringLiteral("l1"));
        const int half = m_tree->indentation() / 2;
        const int x = direction == Qt::LeftToRight ? node.left() - half : node.right() + half;
        const QPoint mark(x, node.center().y());
        QTest::mouseClick(m_tree->viewport(), Qt::LeftButton, {}, mark);
        QVERIFY(!m_tree->isExpanded(QStringLiteral("l1")));
        QCOMPARE(m_clicks->size(), 0);
        QCOMPARE(m_tree->selectedNode(), QStringLiteral("l2"));
    }

    void emptyGroundLeavesAllAsItIs()
    {
        click(QStringLiteral("l2"));
        m_clicks->clear();
        const QPoint ground(20, m_tree->viewport()->height() - 10);
        QTest::mouseClick(m_tree->viewport(), Qt::LeftButton, {}, ground);
        QTest::mouseDClick(m_tree->viewport(), Qt::LeftButton, {}, ground);
        QCOMPARE(m_clicks->size(), 0);
        QCOMPARE(m_tree->selectedNode(), QStringLiteral("l2"));
    }

    void keysThatMoveClickOnce()
    {
        click(QStringLiteral("l0"));
        m_clicks->clear();
        key(Qt::Key_Down);
        key(Qt::Key_Down);
        QCOMPARE(keysOf(*m_clicks), QStringList({"l1", "l3"}));
        key(Qt::Key_Left);
        QCOMPARE(keysOf(*m_clicks), QStringList({"l1", "l3", "l1"}));
        // Collapsing and expanding moves nothing.
        key(Qt::Key_Left);
        key(Qt::Key_Right);
        QCOMPARE(m_clicks->size(), 3);
        key(Qt::Key_End);
        key(Qt::Key_End);
        QCOMPARE(keysOf(*m_clicks), QStringList({"l1", "l3", "l1", "l2"}));
        key(Qt::Key_P);
        QCOMPARE(m_clicks->last().first().toString(), QStringLiteral("l1"));
    }

    void theFirstArrowKeySelectsTheCurrentNode()
    {
        m_tree->setFocus();
        QCOMPARE(m_tree->selectedNode(), QString());
        key(Qt::Key_Down);
        QCOMPARE(keysOf(*m_clicks), QStringList({"l0"}));
    }

    void enterAndDoubleClick()
    {
        QSignalSpy doubleClicks(m_tree.get(), &TreeView::nodeDoubleClicked);
        click(QStringLiteral("l2"));
        QTest::mouseDClick(m_tree->viewport(), Qt::LeftButton, {},
                           m_tree->nodeRect(QStringLiteral("l2")).center());
        key(Qt::Key_Return);
        QCOMPARE(keysOf(doubleClicks), QStringList({"l2", "l2"}));
        QCOMPARE(m_clicks->size(), 1);
    }

    void aSlotMayClearTheTree()
    {
        connect(m_tree.get(), &TreeView::nodeClicked, m_tree.get(), &TreeView::clear);
        click(QStringLiteral("l2"));
        QCOMPARE(m_tree->nodeCount(), 0);
    }

    void aSlotMayDestroyTheTree()
    {
        m_tester.reset();
        connect(m_tree.get(), &TreeView::nodeClicked, this, [this] { m_tree.reset(); });
        click(QStringLiteral("l2"));
        QVERIFY(!m_tree);
    }
};

ZEL_TEST_MAIN(TestTreeView)
#include "tst_treeview.moc"
