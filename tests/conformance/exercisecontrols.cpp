// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// exercise_controls [--without-controls]
// Makes each control, binds it to a client without a service, uses it as a person might and
// destroys it. With --without-controls the same is done with widgets of Qt alone: what that leaves
// behind is Qt's. Ends with 1 when a control reported an error or brought up a message.

#include "assets/assetpicker.h"
#include "controls.h"
#include "platform/widgets/control.h"
#include "platform/widgets/latebound.h"
#include "records/componentdialog.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/recordingclient.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

/// A record with fields of every type, which fit on the form.
QXSC::DataRecordPtr recordOfEveryType()
{
    QList<QXSC::DataRecordEntry> entries;
    for (const char *type : {"TEXT", "TEXTAREA", "CHECKBOX", "TEXTASSET", "CUSTOM"}) {
        QXSC::DataRecordEntry entry;
        entry.type = QString::fromLatin1(type);
        entry.label = QStringLiteral("Field ") + entry.type;
        entry.value.text = QStringLiteral("as it was");
        entries << entry;
    }
    return ZelTest::dataRecord(entries);
}

void script(ZelTest::RecordingClient &client)
{
    client.accounts =
        ZelTest::accountList({{QStringLiteral("Aurora"), 1}, {QStringLiteral("Borealis"), 2}});
    QList<QXSC::ProjectRecord> projects;
    for (int i = 0; i < 20; ++i) {
        QXSC::ProjectRecord record;
        record.guid = QString::number(i);
        record.name = QStringLiteral("Project %1").arg(i);
        record.hasCreated = true;
        record.created = QDateTime(QDate(2024, 1, 1 + i), QTime(8, 0));
        record.published = i % 2;
        projects << record;
    }
    client.projects = ZelTest::projectList(projects);
    client.assetFolders =
        ZelTest::assetFolderList({{0, 0, false, QString(), QStringLiteral("R")},
                                  {1, 0, false, QStringLiteral("Stage"), QStringLiteral("R")}});
    QXSC::AssetRecord asset;
    asset.assetName = QStringLiteral("Curtain");
    client.folderAssets[0] = ZelTest::assetList({asset});
    QXSC::ThemeRecord theme;
    theme.name = QStringLiteral("Curtain");
    theme.wizardXml =
        QStringLiteral("<WIZARD><CUSTOMFIELDS><FIELD name='Stage'/></CUSTOMFIELDS></WIZARD>");
    theme.templates = ZelTest::themeTemplates({{QStringLiteral("k"), QStringLiteral("v"), true}});
    for (const char *scope : {"Account", "Full", "Global", "User"})
        client.themeLists[QStringLiteral("get%1ThemeList_Array").arg(QLatin1String(scope))] =
            ZelTest::themeList({theme, theme});
    client.templates[{QStringLiteral("k"), QStringLiteral("v")}] =
        std::make_shared<QXSC::TemplateRecord>();
    client.dataRecords[QStringLiteral("theme")] = recordOfEveryType();
    client.participants = ZelTest::recordList<QXSC::ParticipantRecord>({{}, {}});
    client.registrants = ZelTest::recordList<QXSC::RegistrantRecord>({{}, {}});
    client.pageViews = ZelTest::recordList<QXSC::PageViewRecord>({{}, {}});
    client.questions = ZelTest::recordList<QXSC::QuestionRecord>({{}, {}});
}

/// A dialog for component pages without a page.
class EmptyDialog : public ZelWebServiceControls::ComponentDialog
{
public:
    void ShowModalDialog(QXSC::ServiceClient *, const QString &, const QString &, const QString &,
                         const QString &) override
    {
    }

    qint16 returnCode() const override { return 2; }

    QString GetValue() override { return QString(); }

    QString getAssetDependencies() override { return QString(); }
};

/// Closes every dialog that comes up, as a person who looked at it.
void closeDialogs(QTimer &timer)
{
    QObject::connect(&timer, &QTimer::timeout, [] {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
            dialog->reject();
    });
    timer.start(10);
}

/// Hands the client to a control, by `setQXS` or by Init with a text for every text and defaults
/// for whatever else that takes. Returns whether it takes one at all.
bool bind(QWidget *control, QXSC::ServiceClient *client)
{
    const QMetaObject *metaObject = control->metaObject();
    if (metaObject->indexOfMethod("setQXS(QXSC::ServiceClient*)") >= 0) {
        Zel::LateBound(control).call(QStringLiteral("setQXS"), {QVariant::fromValue(client)});
        return true;
    }
    for (int i = Zel::Control::staticMetaObject.methodCount(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (method.name() != "Init" || method.attributes() & QMetaMethod::Cloned)
            continue;
        QVariantList values;
        for (int n = 0; n < method.parameterCount(); ++n) {
            const QMetaType type = method.parameterMetaType(n);
            if (type == QMetaType::fromType<QXSC::ServiceClient *>())
                values << QVariant::fromValue(client);
            else if (type == QMetaType::fromType<QString>())
                values << QStringLiteral("Stage");
            else
                values << QVariant(type);
        }
        Zel::LateBound(control).call(QStringLiteral("Init"), values);
        return true;
    }
    return false;
}

void use(QWidget *widget)
{
    if (auto *header = qobject_cast<QHeaderView *>(widget)) {
        for (int section = 0; section < header->count(); ++section) {
            const QPoint at(header->sectionViewportPosition(section) + 20, header->height() / 2);
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, at);
        }
    } else if (auto *view = qobject_cast<QAbstractItemView *>(widget)) {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, QPoint(30, 10));
        QTest::keyClick(view, Qt::Key_Down);
        QTest::keyClicks(view, QStringLiteral("Pro"));
        QTest::keyClick(view, Qt::Key_Return);
    } else if (qobject_cast<QComboBox *>(widget)) {
        QTest::keyClick(widget, Qt::Key_Down);
    } else if (qobject_cast<QLineEdit *>(widget)) {
        QTest::keyClicks(widget, QStringLiteral("abc"));
    } else if (qobject_cast<QTabBar *>(widget)) {
        QTest::keyClick(widget, Qt::Key_Right);
    } else if (qobject_cast<QAbstractButton *>(widget)) {
        QTest::mouseClick(widget, Qt::LeftButton);
    }
}

/// Goes through everything a person can reach, twice: a click may bring up more.
void useEverything(QWidget &form)
{
    for (int round = 0; round < 2; ++round) {
        QList<QPointer<QWidget>> widgets;
        for (QWidget *widget : form.findChildren<QWidget *>())
            widgets << widget;
        for (const QPointer<QWidget> &widget : std::as_const(widgets)) {
            if (widget && widget->isVisible() && widget->isEnabled())
                use(widget);
        }
    }
    form.resize(form.width() / 2, form.height() / 2);
    form.setPalette(QPalette(Qt::darkGray));
    QCoreApplication::processEvents();
    form.grab();
}

void showOn(QWidget &form, QWidget *widget)
{
    (new QVBoxLayout(&form))->addWidget(widget);
    form.resize(1000, 600);
    form.show();
    form.activateWindow();
    QCoreApplication::processEvents();
}

bool exercise(const QString &progId)
{
    bool good = true;
    ZelTest::RecordingClient client;
    script(client);
    QWidget form;
    QWidget *control = Zel::ControlRegistry::create(progId, &form);
    if (auto *own = qobject_cast<Zel::Control *>(control))
        QObject::connect(own, &Zel::Control::runtimeError, [&good] { good = false; });
    showOn(form, control);
    const bool isBound = bind(control, &client);
    if (qobject_cast<ZelWebServiceControls::DataRecordManager *>(control))
        Zel::LateBound(control).call(QStringLiteral("LoadThemeDataRecord"),
                                     {QStringLiteral("theme")});
    useEverything(form);
    // The dialog of a page takes the client and asks nothing of it here.
    const bool asks = isBound && !qobject_cast<ZelWebServiceControls::CustomWidget *>(control);
    return good && asks == !client.calls().isEmpty();
}

void exerciseQtAlone()
{
    QWidget form;
    auto *widgets = new QWidget(&form);
    auto *column = new QVBoxLayout(widgets);
    auto *tree = new QTreeWidget(widgets);
    new QTreeWidgetItem(tree, {QStringLiteral("Project")});
    auto *choice = new QComboBox(widgets);
    choice->addItems({QStringLiteral("a"), QStringLiteral("b")});
    for (QWidget *widget : std::initializer_list<QWidget *>{
             tree, choice, new QLineEdit(widgets), new QPushButton(QStringLiteral("Go"), widgets)})
        column->addWidget(widget);
    showOn(form, widgets);
    useEverything(form);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (QApplication::arguments().contains(QStringLiteral("--without-controls"))) {
        exerciseQtAlone();
        return 0;
    }
    introduceControls();
    const ZelTest::MessageBoxDriver boxes;
    ZelWebServiceControls::setComponentDialogMaker([] { return new EmptyDialog; });
    QTimer closing;
    closeDialogs(closing);
    bool good = true;
    for (const QString &progId : Zel::ControlRegistry::progIds())
        good = exercise(progId) && good;
    ZelWebServiceControls::setComponentDialogMaker({});
    delete &Zel::sharedForm<ZelWebServiceControls::AssetPicker>(); // no event loop quits here
    return good && boxes.shown().isEmpty() ? 0 : 1;
}
