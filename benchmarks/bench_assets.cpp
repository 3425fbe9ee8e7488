// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_assets [assets]
// How soon a folder of assets can be used and has all its thumbnails, which a server on this
// machine gives, beside Qt's own file list on the same pictures and beside just decoding them.
#include "assets/assetmanager.h"
#include "measuring.h"
#include "picturefolder.h"
#include "pictureservice.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"
#include "testsupport/recordingclient.h"
#include "webcontrols/webimagesource.h"

#include <QAbstractFileIconProvider>
#include <QApplication>
#include <QDir>
#include <QFileSystemModel>
#include <QImageReader>
#include <QListView>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
using namespace Bench;

namespace {

constexpr int runs = 3;
constexpr QSize place(96, 96); // what the list shows thumbnails in

/// Milliseconds until the list can be used and until all pictures are there; bytes an asset.
struct Figures
{
    double usable = 0;
    double complete = 0;
    double memory = 0;
};

/// Sleeps between the events, as a program does: the processors are for those who decode.
template <typename IsDone>
void handleEventsUntil(const IsDone &isDone)
{
    QTimer look; // for what happens in other threads without an event here
    look.start(5);
    while (!isDone())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

QImage decoded(const QString &path)
{
    QImageReader reader(path);
    const QImage whole = reader.read();
    return whole.scaled(place, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QXSC::AssetCollectionPtr assetsAt(const QString &address, int count)
{
    QList<QXSC::AssetRecord> assets;
    for (int i = 0; i < count; ++i) {
        QXSC::AssetRecord asset;
        asset.guid = QString::number(i);
        asset.assetName = PictureFolder::name(i);
        asset.assetType = QStringLiteral("Image");
        asset.thumbnailUrl = address + QLatin1Char('/') + asset.assetName;
        assets << asset;
    }
    return ZelTest::assetList(assets);
}

Figures measureOurs(const QString &address, int count)
{
    ZelTest::RecordingClient client;
    client.assetFolders =
        ZelTest::assetFolderList({{0, 0, false, QStringLiteral("All"), QStringLiteral("RWD")}});
    client.folderAssets[0] = assetsAt(address, count);
    ZelWebServiceControls::AssetManager manager;
    manager.resize(1100, 700);
    manager.show();
    manager.Init(&client);
    QApplication::processEvents();
    auto *tree = manager.findChild<Zel::TreeView *>(QStringLiteral("assetFolderView"));
    auto *list = manager.findChild<Zel::ListView *>(QStringLiteral("assetList"));
    tree->selectNode(QStringLiteral("l0"));

    Figures figures;
    const double before = residentBytes();
    figures.usable = milliseconds([&] {
        emit tree->nodeClicked(QStringLiteral("l0"));
        list->viewport()->repaint();
    });
    figures.complete = figures.usable + milliseconds([&] {
                           handleEventsUntil([] {
                               return ZelWebControls::WebImageSource::shared()->pending() == 0;
                           });
                           list->viewport()->repaint();
                       });
    figures.memory = (residentBytes() - before) / count;
    return figures;
}

/// Gives every file its picture as icon, as programs do that show thumbnails with QFileSystemModel.
class ThumbnailProvider : public QAbstractFileIconProvider
{
public:
    QIcon icon(const QFileInfo &file) const override
    {
        if (!file.isFile())
            return {};
        const QIcon icon(QPixmap::fromImage(decoded(file.filePath())));
        ++made;
        return icon;
    }

    mutable std::atomic<int> made = 0;
};

Figures measureFileModel(const QString &folder, int count)
{
    ThumbnailProvider provider;
    QFileSystemModel model;
    model.setIconProvider(&provider);
    QListView view;
    view.setViewMode(QListView::IconMode);
    view.setIconSize(place);
    view.resize(800, 700);
    view.setModel(&model);
    view.show();
    QApplication::processEvents();

    Figures figures;
    const double before = residentBytes();
    const QModelIndex root = model.setRootPath(folder);
    view.setRootIndex(root);
    figures.usable = milliseconds([&] {
        handleEventsUntil([&] { return model.rowCount(root) == count; });
        view.viewport()->repaint();
    });
    figures.complete = figures.usable + milliseconds([&] {
                           handleEventsUntil([&] { return provider.made >= count; });
                           view.viewport()->repaint();
                       });
    figures.memory = (residentBytes() - before) / count;
    return figures;
}

/// What nobody can beat: every file decoded and scaled, with all processors, shown nowhere.
Figures measureDecoding(const QString &folder, int count)
{
    std::vector<QImage> images(static_cast<size_t>(count));
    Figures figures;
    const double before = residentBytes();
    figures.complete = milliseconds([&] {
        QThreadPool pool;
        for (int i = 0; i < count; ++i)
            pool.start([&images, &folder, i] {
                images[static_cast<size_t>(i)] =
                    decoded(QDir(folder).filePath(PictureFolder::name(i)));
            });
        pool.waitForDone();
    });
    figures.usable = figures.complete;
    figures.memory = (residentBytes() - before) / count;
    return figures;
}

/// Medians; of memory the most, because later runs use what earlier ones have left.
Figures summary(const std::vector<Figures> &all)
{
    const auto values = [&all](double Figures::*field) {
        std::vector<double> column;
        for (const Figures &figures : all)
            column.push_back(figures.*field);
        return column;
    };
    const std::vector<double> memory = values(&Figures::memory);
    return {medianOf(values(&Figures::usable)), medianOf(values(&Figures::complete)),
            *std::max_element(memory.begin(), memory.end())};
}

void printRow(const char *name, const Figures &figures)
{
    std::printf("%-40s %12.0f %14.0f %14.1f\n", name, figures.usable, figures.complete,
                figures.memory / 1024);
}

int measure(int count)
{
    const QTemporaryDir folder;
    PictureFolder::fill(folder.path(), count);
    const PictureService service(folder.path());

    std::vector<Figures> ours;
    std::vector<Figures> fileModel;
    std::vector<Figures> decoding;
    for (int run = 0; run < runs; ++run) {
        // Each run has addresses of its own, so that nothing is remembered from the one before.
        ours.push_back(measureOurs(service.address() + QStringLiteral("/run%1").arg(run), count));
        fileModel.push_back(measureFileModel(folder.path(), count));
        decoding.push_back(measureDecoding(folder.path(), count));
    }
    std::printf("%d assets with thumbnails of 256 pixels, median of %d runs\n\n", count, runs);
    std::printf("%-40s %12s %14s %14s\n", "", "usable, ms", "complete, ms", "KiB an asset");
    printRow("asset manager, over HTTP", summary(ours));
    printRow("QListView on QFileSystemModel, files", summary(fileModel));
    printRow("decoding alone, files", summary(decoding));
    std::printf("\n");
    printGoal("until all thumbnails are there", summary(ours).complete, summary(decoding).complete,
              "decoding alone", 1.30);
    printGoal("until the list can be used", summary(ours).usable, summary(fileModel).complete,
              "QListView's until complete", 1.00);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc == 3 && qstrcmp(argv[1], PictureService::serveOption) == 0)
        return PictureService::serve(QString::fromLocal8Bit(argv[2]));
    const QApplication app(argc, argv);
    return measure(argc > 1 ? std::max(1, std::atoi(argv[1])) : 5000);
}
