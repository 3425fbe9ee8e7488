// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/assetstour.h"

#include "assets/assetpicker.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"
#include "studio/mainwindow.h"
#include "studio/studioapp.h"
#include "studio/tour/listacts.h"
#include "studio/tour/touractor.h"
#include "studio/tour/tourpictures.h"

#include <QApplication>
#include <QFile>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <csignal>
#include <exception>

namespace Studio {

namespace {

constexpr int CreatedColumn = 2;

const QString folderName = QStringLiteral("Festival");

/// The assets page and what the tour has in hand on it.
struct Walk
{
    TourActor &actor;
    StudioApp &studio;
    Zel::TreeView &tree;
    Zel::ListView &list;
};

QPushButton *standardButton(QMessageBox::StandardButton button)
{
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    TourActor::expect(box, QStringLiteral("a message box"));
    return qobject_cast<QPushButton *>(box->button(button));
}

void browse(const Walk &walk)
{
    clickNode(walk.actor, walk.tree, QStringLiteral("Pictures"));
    walk.actor.expect(walk.list.count() > 3, QStringLiteral("the assets of a folder"));
    walk.actor.shoot(QStringLiteral("Assets as thumbnails"));

    clickLine(walk.actor, walk.list, 1);
    askForMenu(walk.list, 1);
    walk.actor.shoot(QStringLiteral("What can be done with an asset"));
    QApplication::activePopupWidget()->close();

    walk.actor.click(QStringLiteral("listMode"));
    clickHeader(walk.actor, walk.list, CreatedColumn);
    walk.actor.shoot(QStringLiteral("Assets as a table, newest first"));
    walk.actor.click(QStringLiteral("thumbnailMode"));
}

void makeFolder(const Walk &walk)
{
    walk.actor.withDialog([&] { walk.actor.click(QStringLiteral("newFolder")); },
                          [&] {
                              walk.actor.type(QStringLiteral("folderNameTxt"), folderName);
                              walk.actor.shoot(QStringLiteral("A new folder"));
                              walk.actor.click(QStringLiteral("okCmd"));
                          });
    walk.actor.expect(walk.list.count() == 0, QStringLiteral("the new folder to be empty"));
    walk.actor.shoot(QStringLiteral("An empty folder"));
}

void dropFiles(const Walk &walk, const QStringList &paths)
{
    walk.actor.drop(*walk.list.viewport(), paths,
                    [&] { walk.actor.shoot(QStringLiteral("Files over the page")); });
    auto &batch = walk.actor.find<QListWidget>(QStringLiteral("batchList"));
    walk.actor.find(QStringLiteral("errorBar"));
    walk.actor.expect(batch.count() == paths.size() - 1,
                      QStringLiteral("all but one of the files on the list"));
    walk.actor.shoot(QStringLiteral("Files dropped"));
    walk.actor.click(QStringLiteral("errorClose"));
}

/// Takes a picture in the middle of the third file.
class UploadWatcher : public QObject
{
public:
    explicit UploadWatcher(const Walk &walk)
    {
        connect(&walk.studio.client(), &QXSC::ServiceClient::CreateAssetFileProgress, this,
                [this, &walk](qint32 percent) {
                    m_files += percent == 100 ? 1 : 0;
                    if (m_files != 2 || percent < 50 || percent == 100 || m_hasShot)
                        return;
                    m_hasShot = true;
                    try {
                        walk.actor.shootNow(QStringLiteral("Uploading"));
                    } catch (...) {
                        m_failure = std::current_exception();
                    }
                });
    }

    void check() const
    {
        if (m_failure)
            std::rethrow_exception(m_failure);
        TourActor::expect(m_hasShot, QStringLiteral("progress within the third file"));
    }

private:
    int m_files = 0;
    bool m_hasShot = false;
    std::exception_ptr m_failure;
};

/// Ends the service between the second file of the batch and the third.
void loseTheService(const Walk &walk)
{
    auto &batch = walk.actor.find<QListWidget>(QStringLiteral("batchList"));
    QTimer killer;
    killer.callOnTimeout([&] {
        if (batch.item(1)->flags() & Qt::ItemIsEnabled)
            return; // not up yet
        killer.stop();
        EmbeddedService &service = *walk.studio.embeddedService();
        ::kill(static_cast<pid_t>(service.processId()), SIGKILL);
        while (!service.hasEnded())
            QThread::msleep(1);
    });
    killer.start(0);
    walk.actor.click(QStringLiteral("batchNewAssetSave"));
    walk.actor.find(QStringLiteral("errorBar"));
    walk.actor.find(QStringLiteral("uploadRest"));
    walk.actor.shoot(QStringLiteral("An upload that was interrupted"));
}

void upload(const Walk &walk, qsizetype count)
{
    loseTheService(walk);
    const UploadWatcher watcher(walk);
    walk.actor.click(QStringLiteral("uploadRest"));
    watcher.check();
    walk.actor.expect(walk.list.count() == count, QStringLiteral("the uploaded assets"));
    walk.actor.shoot(QStringLiteral("Uploaded"));
}

void pick(const Walk &walk)
{
    using ZelWebServiceControls::AssetPicker;
    auto &picker = Zel::sharedForm<AssetPicker>();
    auto restricted = std::make_shared<ZelWebServiceControls::FolderNames>();
    restricted->add(QStringLiteral("QXStudio"));
    picker.Init(&walk.studio.client(), QString(), restricted);
    walk.actor.withDialog([&] { picker.showModal(&walk.studio.window()); },
                          [&] {
                              auto &tree = *picker.findChild<Zel::TreeView *>();
                              auto &list = *picker.findChild<Zel::ListView *>();
                              clickNode(walk.actor, tree, folderName);
                              clickLine(walk.actor, list, 1);
                              walk.actor.shoot(QStringLiteral("Picking an asset"));
                              walk.actor.click(QStringLiteral("OKButton"));
                          });
    walk.actor.expect(picker.returnValue() == 1 && !picker.value().isEmpty(),
                      QStringLiteral("a picked asset"));
}

void confirm(const Walk &walk, const QString &caption)
{
    if (!caption.isEmpty())
        walk.actor.shoot(caption);
    QPushButton *yes = standardButton(QMessageBox::Yes);
    walk.actor.clickAt(*yes, yes->rect().center());
}

void deleteAll(const Walk &walk)
{
    clickLine(walk.actor, walk.list, 0);
    walk.actor.press(Qt::Key_A, Qt::ControlModifier);
    walk.actor.withDialog([&] { walk.actor.press(Qt::Key_Delete); },
                          [&] { confirm(walk, QStringLiteral("Deleting assets")); });
    walk.actor.expect(walk.list.count() == 0, QStringLiteral("the folder to be empty again"));
    clickNode(walk.actor, walk.tree, folderName);
    walk.actor.withDialog([&] { walk.actor.press(Qt::Key_Delete); }, [&] { confirm(walk, {}); });
    walk.actor.shoot(QStringLiteral("After deleting"));
}

} // namespace

void tourAssets(TourActor &actor, StudioApp &studio)
{
    actor.click(QStringLiteral("railPage_1"));
    const Walk walk{actor, studio, actor.find<Zel::TreeView>(QStringLiteral("assetFolderView")),
                    actor.find<Zel::ListView>(QStringLiteral("assetList"))};
    browse(walk);
    makeFolder(walk);

    const QTemporaryDir files;
    QStringList paths = drawTourPictures(files.path());
    const qsizetype pictures = paths.size();
    QFile text(files.filePath(QStringLiteral("Running order.txt")));
    actor.expect(text.open(QIODevice::WriteOnly) && text.write("19:00 Doors\n") > 0,
                 QStringLiteral("to write a text"));
    text.close();
    paths << text.fileName();
    dropFiles(walk, paths);
    upload(walk, pictures);
    pick(walk);
    deleteAll(walk);
}

} // namespace Studio
