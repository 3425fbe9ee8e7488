// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "assets/assetmanager.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"
#include "testsupport/errornumber.h"
#include "testsupport/filedialogdriver.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/recordingclient.h"

#include "../platform/widgets/listtesting.h"

#include <QAbstractItemModelTester>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>

/// A folder that hangs below another; below the root when `parentId` is 0.
inline QXSC::AssetFolderRecord folder(qint16 id, qint16 parentId, const char *name,
                                      const char *permissions = "RWD")
{
    return {id, parentId, parentId != 0, QString::fromUtf8(name), QString::fromUtf8(permissions)};
}

inline QXSC::AssetFolderRecord rootFolder(const char *permissions = "RWD")
{
    return {0, 0, false, QStringLiteral("the root"), QString::fromUtf8(permissions)};
}

inline QXSC::AssetRecord asset(const char *name, const char *type = "Image")
{
    QXSC::AssetRecord record;
    record.guid = QStringLiteral("guid-") + QString::fromUtf8(name);
    record.assetName = QString::fromUtf8(name);
    record.assetDetail = QStringLiteral("about ") + record.assetName;
    record.assetDate = QDateTime(QDate(2026, 3, 4), QTime(15, 6, 7));
    record.assetType = QString::fromUtf8(type);
    return record;
}

/// The picture of a kind of assets.
inline QImage typeIcon(const char *type, int size)
{
    return QIcon(QStringLiteral(":/zel/assets/icons/%1.svg").arg(QLatin1String(type)))
        .pixmap(size)
        .toImage();
}

/// An asset manager on a form, with the folders All Folders > (Art > Deep), Bare (id 1, 2, 3), and
/// a trail of calls, events and errors.
class AssetManagerFixture
{
public:
    AssetManagerFixture()
        : manager(new ZelWebServiceControls::AssetManager(&form))
        , m_modelTester(list().view()->model(),
                        QAbstractItemModelTester::FailureReportingMode::QtTest)
    {
        using ZelWebServiceControls::AssetManager;
        client.assetFolders = ZelTest::assetFolderList(
            {rootFolder(), folder(1, 0, "Art"), folder(2, 1, "Deep"), folder(3, 0, "Bare")});
        client.atCall = [this](const QString &call) {
            trail << call;
            if (atCall)
                atCall(call);
        };
        QObject::connect(manager, &AssetManager::AssetSelected,
                         [this] { trail << QStringLiteral("AssetSelected"); });
        QObject::connect(manager, &AssetManager::FolderSelected,
                         [this] { trail << QStringLiteral("FolderSelected"); });
        QObject::connect(manager, &AssetManager::runtimeError,
                         [this](const Zel::RuntimeError &error) {
                             trail << QStringLiteral("error %1").arg(error.number());
                             lastError = error.description();
                         });
        form.resize(1100, 700);
        manager->resize(form.size());
        form.show();
        form.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&form));
    }

    ~AssetManagerFixture()
    {
        // The trail must not be written to while the members go.
        client.atCall = {};
        delete manager;
    }

    Q_DISABLE_COPY_MOVE(AssetManagerFixture)

    void init(const QString &formats = QString(),
              const ZelWebServiceControls::FolderNamesPtr &restricted = {})
    {
        manager->Init(&client, formats, restricted);
        trail.clear();
    }

    /// Builds the tree and clicks a folder that holds these assets.
    void open(qint16 id, const QList<QXSC::AssetRecord> &assets = {})
    {
        client.folderAssets[id] = ZelTest::assetList(assets);
        if (!tree().contains(keyOf(id)))
            init();
        clickFolder(id);
        trail.clear();
    }

    static QString keyOf(qint16 id) { return QStringLiteral("l%1").arg(id); }

    void clickFolder(qint16 id)
    {
        QTest::mouseClick(tree().viewport(), Qt::LeftButton, {},
                          tree().nodeRect(keyOf(id)).center());
    }

    void press(const char *name) { QTest::mouseClick(button(name), Qt::LeftButton); }

    void pressTab(int index)
    {
        auto *tabs = child<QTabBar>("newAssetTabStrip");
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(index).center());
    }

    template <typename Widget>
    Widget *child(const char *name) const
    {
        return manager->findChild<Widget *>(QLatin1String(name));
    }

    QPushButton *button(const char *name) const { return child<QPushButton>(name); }

    QLineEdit *box(const char *name) const { return child<QLineEdit>(name); }

    Zel::TreeView &tree() const { return *child<Zel::TreeView>("assetFolderView"); }

    Zel::ListView &list() const { return *child<Zel::ListView>("assetList"); }

    QStringList batch() const
    {
        QStringList paths;
        const auto *entries = child<QListWidget>("batchList");
        for (int i = 0; i < entries->count(); ++i)
            paths << entries->item(i)->text();
        return paths;
    }

    /// The four buttons for folders and assets: those enabled.
    QString enabled() const
    {
        QStringList names;
        for (const char *name : {"newFolder", "deleteFolder", "newAsset", "deleteAsset"}) {
            if (button(name)->isEnabled())
                names << QString::fromLatin1(name);
        }
        return names.join(u' ');
    }

    /// The tree as "key text [tag]" with two blanks per level.
    QStringList shownTree() const
    {
        QStringList lines;
        for (const QString &key : tree().topKeys())
            addLines(key, 0, lines);
        return lines;
    }

    /// A picture file of this name in a folder of its own.
    QString picture(const QString &name)
    {
        const QString path = m_files.filePath(name);
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(Qt::red);
        image.save(path, "PNG");
        return path;
    }

    QString file(const QString &name, const QByteArray &content)
    {
        QFile made(m_files.filePath(name));
        made.open(QFile::WriteOnly);
        made.write(content);
        return made.fileName();
    }

    QStringList takeTrail() { return std::exchange(trail, {}); }

    ZelTest::RecordingClient client;
    ZelTest::MessageBoxDriver boxes;
    ZelTest::FileDialogDriver files;
    QWidget form;
    QPointer<ZelWebServiceControls::AssetManager> manager;
    QStringList trail;
    QString lastError;
    std::function<void(const QString &)> atCall;

private:
    void addLines(const QString &key, int level, QStringList &lines) const
    {
        lines << QStringLiteral("%1%2 %3 [%4]")
                     .arg(QString(2 * level, u' '), key, tree().text(key),
                          tree().tag(key).toString());
        for (const QString &childKey : tree().childKeys(key))
            addLines(childKey, level + 1, lines);
    }

    QTemporaryDir m_files;
    QAbstractItemModelTester m_modelTester;
};
