// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/assetspage.h"

#include "assets/assetmanager.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/taborder.h"
#include "platform/widgets/treeview.h"
#include "studio/appearance.h"
#include "studio/assetcommands.h"
#include "studio/assetcontrols.h"
#include "studio/assetreasons.h"
#include "studio/assetuploads.h"
#include "studio/columnwidths.h"
#include "studio/drophint.h"
#include "studio/errorcenter.h"
#include "studio/listkeeper.h"
#include "studio/pageheader.h"
#include "studio/settings.h"
#include "studio/textlabel.h"

#include <QApplication>
#include <QDropEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMimeData>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace Studio {

using ZelWebServiceControls::AssetManager;

namespace {

constexpr int CreatedColumn = 2;
constexpr qsizetype QuotedName = 60;

bool hasFiles(const QMimeData &data)
{
    return data.hasUrls() && !data.urls().isEmpty();
}

} // namespace

AssetsPage::AssetsPage(QXSC::ServiceClient &client, QXSC::StudioService &service,
                       ErrorCenter &errors, Settings &settings, QWidget *parent)
    : Page(parent)
    , m_client(client)
    , m_errors(errors)
    , m_settings(settings)
    , m_manager(new AssetManager(this))
    , m_controls(std::make_unique<AssetControls>(*m_manager))
    , m_reasons(new AssetReasons(*m_controls, this))
    , m_uploads(new AssetUploads(*m_manager, *m_controls, *m_reasons, errors, this))
    , m_commands(new AssetCommands(*m_controls, *m_reasons, service, errors, this))
{
    setObjectName(QStringLiteral("assetsPage"));
    setAcceptDrops(true);
    build();
    prepareControls();
    connectParts();
    connectList();
    applyColors();
    leave();
}

AssetsPage::~AssetsPage()
{
    // The controls go one by one, and may still have something to tell.
    delete m_commands;
    delete m_uploads;
    delete m_reasons;
    for (QObject *child : findChildren<QObject *>())
        child->disconnect(this);
}

QString AssetsPage::title() const
{
    return tr("Assets");
}

QString AssetsPage::icon() const
{
    return QStringLiteral("assets");
}

void AssetsPage::build()
{
    m_manager->setObjectName(QStringLiteral("assets"));
    m_manager->setAccessibleName(title());
    m_manager->layout()->setContentsMargins(0, 0, 0, 0);
    m_manager->layout()->setSpacing(12);
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("assetCount"));
    m_hint = new DropHint(this);
    m_noFolders = new QLabel(tr("The service names no folders for you"), m_controls->tree);
    m_noFolders->setObjectName(QStringLiteral("noFolders"));
    m_noFolders->setWordWrap(true);
    m_noFolders->setAlignment(Qt::AlignCenter);
    auto *room = new QVBoxLayout(m_controls->tree->viewport());
    room->addWidget(m_noFolders);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 16, 20, 12);
    column->setSpacing(12);
    column->addWidget(makeHeader());
    column->addWidget(m_manager, 1);
    column->addWidget(m_uploads->strip());
    column->addWidget(m_count);
    Zel::setTabChain({m_refresh, m_manager, m_uploads->strip()});
}

QWidget *AssetsPage::makeHeader()
{
    auto *header = new QWidget(this);
    m_refresh = makeTool(header, "refreshAssets", QStringLiteral("refresh"), tr("Refresh"),
                         tr("List the folder again (F5)"));
    m_refresh->setShortcut(QKeySequence(Qt::Key_F5));
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(makeHeading(header, title()));
    row->addStretch(1);
    row->addWidget(m_refresh);
    return header;
}

void AssetsPage::prepareControls()
{
    // The page is frame enough.
    for (QGroupBox *frame : {m_controls->listFrame, m_controls->newAssetFrame}) {
        frame->setFlat(true);
        frame->layout()->setContentsMargins(0, 4, 0, 0);
    }
    m_folders = new QLabel(tr("Folders"), m_manager);
    m_folders->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_folders->setContentsMargins(0, 1, 0, 0);
    qobject_cast<QVBoxLayout *>(m_manager->layout()->itemAt(0)->layout())
        ->insertWidget(0, m_folders);
    alignFolders();
    m_controls->list->setSortByValue(true);
    // A file dropped on a box would leave its address there as a text.
    for (QLineEdit *box :
         {m_controls->singleName, m_controls->singleDescription, m_controls->singleUrl})
        box->setAcceptDrops(false);
    if (m_settings.showsAssetTable())
        m_controls->listMode->click();
}

void AssetsPage::alignFolders()
{
    // A group box works its margins out anew when its font changes, and hardly ever else.
    for (QGroupBox *frame : {m_controls->listFrame, m_controls->newAssetFrame}) {
        QEvent again(QEvent::FontChange);
        QApplication::sendEvent(frame, &again);
    }
    // The tree stands beside the list, its caption beside the list's.
    QLayout *list = m_controls->listFrame->layout();
    QLayout *folders = m_manager->layout()->itemAt(0)->layout();
    const QMargins frame = m_controls->listFrame->contentsMargins();
    folders->setSpacing(list->spacing());
    folders->setContentsMargins(0, 0, 0, frame.bottom());
    m_folders->setFixedHeight(
        qMax(0, frame.top() + list->contentsMargins().top() - folders->spacing()));
}

void AssetsPage::connectParts()
{
    connect(m_manager, &AssetManager::runtimeError, this, &AssetsPage::controlFailed);
    connect(m_manager, &AssetManager::FolderSelected, this, &AssetsPage::folderListed);
    connect(m_refresh, &QToolButton::clicked, this, &AssetsPage::refresh);
    connect(m_commands, &AssetCommands::refreshAsked, this, &AssetsPage::refresh);
    connect(m_controls->thumbnailMode, &QPushButton::clicked, this,
            [this] { m_settings.setShowsAssetTable(false); });
    connect(m_controls->listMode, &QPushButton::clicked, this,
            [this] { m_settings.setShowsAssetTable(true); });
    connect(m_controls->tree, &Zel::TreeView::selectionChangedTo, this, &AssetsPage::showEmptyText);
}

void AssetsPage::connectList()
{
    const QAbstractItemModel *model = m_controls->list->model();
    connect(m_controls->list, &Zel::ListView::selectionChanged, this, &AssetsPage::showCount);
    for (const auto change : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(model, change, this, &AssetsPage::showCount);
    connect(model, &QAbstractItemModel::modelReset, this, &AssetsPage::showCount);
}

void AssetsPage::open()
{
    alignFolders();
    if (m_fittedWidths.isEmpty())
        fit();
    if (!m_isLoaded)
        load(QString());
}

void AssetsPage::leave()
{
    remember();
    m_uploads->forget();
    m_controls->list->setSorted(false);
    m_controls->list->setEmptyText(tr("The folders could not be loaded"));
    m_noFolders->hide();
    m_count->clear();
    m_listed.clear();
    m_isLoaded = false;
}

void AssetsPage::remember()
{
    m_uploads->stop();
    if (m_fittedWidths.isEmpty())
        return;
    const QList<double> widths = columnWidths(*m_controls->list, m_settings.assetColumnWidths());
    if (widths != m_fittedWidths)
        m_settings.setAssetColumnWidths(widths);
}

void AssetsPage::fit()
{
    // The room for the columns is known once the page is on screen.
    layout()->activate();
    fitColumns(*m_controls->list, m_settings.assetColumnWidths(), {CreatedColumn});
    m_fittedWidths = columnWidths(*m_controls->list, m_settings.assetColumnWidths());
}

QString AssetsPage::folderToShow(const QString &wanted) const
{
    const Zel::TreeView &tree = *m_controls->tree;
    if (tree.contains(wanted))
        return wanted;
    for (const QString &top : tree.topKeys()) {
        if (tree.tag(top).toString().contains(QLatin1Char('R')))
            return top;
    }
    return {};
}

void AssetsPage::load(const QString &folder)
{
    m_isLoaded = false;
    m_listed.clear();
    m_controls->list->clear();
    m_controls->list->setEmptyText(tr("The folders could not be loaded"));
    m_noFolders->hide();
    m_manager->Init(&m_client);
    m_noFolders->setVisible(m_controls->tree->nodeCount() == 0);
    showEmptyText();
    const QString shown = folderToShow(folder);
    if (!shown.isEmpty())
        m_uploads->queue().showFolder(shown);
    m_isLoaded = true;
}

void AssetsPage::refresh()
{
    const QString folder = m_controls->tree->selectedNode();
    const bool wantsFolders =
        folder.isEmpty() || m_controls->tree->hasFocus() || m_listed != folder;
    m_errors.attempt([this, folder, wantsFolders] {
        const ListKeeper keeper(*m_controls->list);
        if (wantsFolders)
            load(folder);
        else
            m_uploads->queue().list();
    });
}

void AssetsPage::folderListed()
{
    m_listed = m_controls->tree->selectedNode();
    m_isLoaded = true;
    showEmptyText();
    showCount();
}

void AssetsPage::controlFailed(const Zel::RuntimeError &error)
{
    if (!m_controls->progressFrame->isHidden()) {
        singleFailed(error);
        return;
    }
    const QString folder = m_controls->tree->selectedNode();
    if (!folder.isEmpty() && folder != m_listed) {
        m_controls->list->clear();
        showEmptyText();
        m_errors.report(error, [this, folder] { m_uploads->queue().showFolder(folder); });
        return;
    }
    m_errors.report(error, [this, folder] { load(folder); });
}

void AssetsPage::singleFailed(const Zel::RuntimeError &error)
{
    UploadQueue &queue = m_uploads->queue();
    queue.endProgress();
    // What is up already must not go up twice: then only the listing is tried again.
    if (queue.takeSingleUploaded())
        m_errors.report(error, [&queue] { queue.finish(); });
    else
        m_errors.report(error, [this] { m_controls->singleSave->click(); });
}

void AssetsPage::showEmptyText()
{
    const QString folder = m_controls->tree->selectedNode();
    QString text;
    if (m_controls->tree->nodeCount() == 0)
        text = tr("No assets");
    else if (const QString refusal = m_reasons->againstListing(); !refusal.isEmpty())
        text = refusal;
    else if (folder != m_listed)
        text = tr("The assets of this folder could not be listed");
    else if (m_reasons->againstAdding().isEmpty())
        text = tr("This folder is empty. Drop pictures here, or choose New Asset.");
    else
        text = tr("This folder is empty");
    m_controls->list->setEmptyText(text);
}

void AssetsPage::showCount()
{
    const QLocale locale;
    const QString all = locale.toString(m_controls->list->count());
    const int selected = m_controls->list->selectedCount();
    if (selected > 0)
        m_count->setText(tr("%1 of %2 assets selected").arg(locale.toString(selected), all));
    else if (m_listed.isEmpty())
        m_count->clear();
    else
        m_count->setText(m_controls->list->count() == 1 ? tr("1 asset") : tr("%1 assets").arg(all));
}

void AssetsPage::applyColors()
{
    for (QLabel *label : {m_count, m_noFolders})
        setOwnColor(label, QPalette::WindowText, mutedText(QApplication::palette()));
}

void AssetsPage::focusInEvent(QFocusEvent *)
{
    // A focus proxy would make the page a stop of the Tab key as well.
    m_controls->tree->setFocus(Qt::OtherFocusReason);
}

void AssetsPage::changeEvent(QEvent *event)
{
    Page::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
    // The frame follows after this page.
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange)
        QMetaObject::invokeMethod(this, &AssetsPage::alignFolders, Qt::QueuedConnection);
}

void AssetsPage::dragEnterEvent(QDragEnterEvent *event)
{
    if (!hasFiles(*event->mimeData()))
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    const QString folder = m_controls->tree->selectedNode();
    const QString name = folder.isEmpty() ? QString() : m_controls->tree->text(folder);
    m_hint->showOver(m_manager->geometry(),
                     tr("Drop pictures and folders here to upload them into \"%1\"")
                         .arg(shortened(name, QuotedName)),
                     m_uploads->againstDropping());
}

void AssetsPage::dragLeaveEvent(QDragLeaveEvent *)
{
    m_hint->hide();
}

void AssetsPage::dropEvent(QDropEvent *event)
{
    m_hint->hide();
    event->setDropAction(Qt::CopyAction);
    event->accept();
    m_uploads->drop(*event->mimeData());
}

} // namespace Studio
