// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceerror.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"
#include "studio/assetspage.h"
#include "studio/errorcenter.h"
#include "studio/settings.h"
#include "tests/studio/studiotesting.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/recordingclient.h"

#include <QDragEnterEvent>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QTemporaryDir>

namespace AssetTesting {

inline QXSC::AssetFolderRecord folder(qint16 id, qint16 parentId, const char *name,
                                      const char *permissions = "RWD")
{
    return {id, parentId, parentId != 0, QString::fromUtf8(name), QString::fromUtf8(permissions)};
}

inline QXSC::AssetRecord asset(const char *name, int day = 1)
{
    QXSC::AssetRecord record;
    record.guid = QStringLiteral("guid-") + QString::fromUtf8(name);
    record.assetName = QString::fromUtf8(name);
    record.assetDate = QDateTime(QDate(2026, 3, day), QTime(15, 6, 7));
    record.assetType = QStringLiteral("Image");
    return record;
}

inline QXSC::ServiceError gone()
{
    return QXSC::ServiceError(QXSC::ServiceError::Kind::Unreachable,
                              QStringLiteral("Nothing answers at http://here."));
}

inline QXSC::ServiceError refused()
{
    return QXSC::ServiceError(QXSC::ServiceError::Kind::Refused,
                              QStringLiteral("You may not do this."));
}

/// Writes a small picture and returns its path.
inline QString picture(const QDir &folder, const QString &name)
{
    QImage image(8, 6, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    const QString path = folder.filePath(name);
    folder.mkpath(QFileInfo(path).path());
    return image.save(path, "PNG") ? path : QString();
}

inline QString file(const QDir &folder, const QString &name, const QByteArray &content = "text")
{
    const QString path = folder.filePath(name);
    folder.mkpath(QFileInfo(path).path());
    QFile out(path);
    return out.open(QIODevice::WriteOnly) && out.write(content) == content.size() ? path
                                                                                  : QString();
}

} // namespace AssetTesting

/// The assets page in a window of its own, over a recording client with the folders All Folders >
/// (Pictures > Logos), Papers (no W and D), Drafts (empty).
class AssetsPageFixture
{
public:
    AssetsPageFixture()
        : page(client, client, errors, settings, &window)
        , tree(StudioTesting::child<Zel::TreeView>(page, "assetFolderView"))
        , list(StudioTesting::child<Zel::ListView>(page, "assetList"))
        , batch(StudioTesting::child<QListWidget>(page, "batchList"))
    {
        using AssetTesting::asset;
        using AssetTesting::folder;
        client.assetFolders =
            ZelTest::assetFolderList({{0, 0, false, QStringLiteral("root"), QStringLiteral("RWD")},
                                      folder(1, 0, "Pictures"),
                                      folder(2, 1, "Logos"),
                                      folder(3, 0, "Papers", "R"),
                                      folder(4, 0, "Drafts")});
        client.folderAssets.insert(
            1, ZelTest::assetList({asset("Dunes", 3), asset("Alps", 12), asset("Coast", 7)}));
        client.folderAssets.insert(3, ZelTest::assetList({asset("Rules")}));
        client.assetAddresses = {{QStringLiteral("guid-Dunes"), QStringLiteral("http://here/a/1")},
                                 {QStringLiteral("guid-Alps"), QStringLiteral("http://here/a/2")}};
        window.resize(1200, 700);
        page.resize(1200, 700);
        StudioTesting::show(window);
    }

    void open()
    {
        errors.attempt([this] { page.open(); });
        client.takeCalls();
    }

    /// Opens and clicks a folder.
    void openAt(const char *key)
    {
        open();
        clickFolder(key);
        client.takeCalls();
    }

    void clickFolder(const char *key) const
    {
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                          tree->nodeRect(QString::fromLatin1(key)).center());
    }

    void clickAsset(qsizetype row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers,
                          list->cellRect(row).center());
    }

    void rightClick(QWidget *viewport, const QPoint &place) const
    {
        QTest::mouseClick(viewport, Qt::RightButton, {}, place);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, viewport->mapToGlobal(place));
        QApplication::sendEvent(viewport, &event);
    }

    /// Chooses from the context menu that is open, as a person does.
    void choose(const char *action) const
    {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY2(menu, action);
        auto *chosen = menu->findChild<QAction *>(QLatin1String(action));
        QVERIFY2(chosen && chosen->isEnabled(), action);
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(chosen).center());
        activate();
    }

    void activate() const
    {
        page.window()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(page.window()));
    }

    QPushButton *button(const char *name) const
    {
        return StudioTesting::child<QPushButton>(page, name);
    }

    QString text(const char *label) const
    {
        return StudioTesting::child<QLabel>(page, label)->text();
    }

    bool isShown(const char *name) const { return StudioTesting::child(page, name)->isVisible(); }

    /// Drags over the list; the hint stays until the drop or a leave.
    bool dragOver(const QList<QUrl> &urls)
    {
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(list->viewport(), &enter);
        return enter.isAccepted();
    }

    void dropUrls(const QList<QUrl> &urls)
    {
        QVERIFY(dragOver(urls));
        QDropEvent drop(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(list->viewport(), &drop);
    }

    static QList<QUrl> urlsOf(const QStringList &paths)
    {
        QList<QUrl> urls;
        for (const QString &path : paths)
            urls << QUrl::fromLocalFile(path);
        return urls;
    }

    /// Drops files and waits until they have been read.
    void drop(const QStringList &paths)
    {
        dropUrls(urlsOf(paths));
        QTRY_VERIFY(!isShown("uploadStrip"));
    }

    /// The paths on the batch list; "+" before one that is marked as uploaded.
    QStringList batchEntries() const
    {
        QStringList entries;
        for (int row = 0; row < batch->count(); ++row) {
            const bool isUp = !(batch->item(row)->flags() & Qt::ItemIsEnabled);
            entries << (isUp ? QStringLiteral("+") : QString()) + batch->item(row)->text();
        }
        return entries;
    }

    /// Makes so many entries on the batch list, as of files read before.
    static QStringList paths(int count)
    {
        QStringList all;
        for (int i = 0; i < count; ++i)
            all << QStringLiteral("/pictures/%1.png").arg(i);
        return all;
    }

    qsizetype uploads() const
    {
        return client.calls().filter(QStringLiteral("CreateAsset(")).size();
    }

    Studio::Settings settings;
    Studio::ErrorCenter errors;
    ZelTest::RecordingClient client;
    QTemporaryDir files;
    QMimeData data;
    QWidget window;
    Studio::AssetsPage page;
    Zel::TreeView *tree;
    Zel::ListView *list;
    QListWidget *batch;
};
