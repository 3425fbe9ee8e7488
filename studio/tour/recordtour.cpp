// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/recordtour.h"

#include "platform/widgets/listview.h"
#include "platform/widgets/treeview.h"
#include "service/client/httpserviceclient.h"
#include "studio/mainwindow.h"
#include "studio/studioapp.h"
#include "studio/tour/listacts.h"
#include "studio/tour/touractor.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <cstdio>

namespace Studio {

namespace {

const QString themeName = QStringLiteral("Webcast, classic");

QWidget &fieldPart(TourActor &actor, const char *field, const char *part)
{
    QWidget &whole = actor.find(QLatin1String("widget_") + QLatin1String(field));
    auto *found = whole.findChild<QWidget *>(QLatin1String(part));
    TourActor::expect(found, QStringLiteral("the part of a field"));
    return *found;
}

void clickPart(TourActor &actor, const char *field, const char *part)
{
    QWidget &widget = fieldPart(actor, field, part);
    actor.clickAt(widget, widget.rect().center());
}

void typeInto(TourActor &actor, const char *field, const QString &text)
{
    QWidget &box = fieldPart(actor, field, "widgetValue");
    actor.clickAt(box, box.rect().center());
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&box, text);
    QTest::qWait(0);
}

void waitForStatus(TourActor &actor, const QString &status)
{
    const auto &label = actor.find<QLabel>(QStringLiteral("recordStatus"));
    actor.waitFor(status, [&] { return label.text().startsWith(status); });
}

void openRecord(TourActor &actor)
{
    actor.click(QStringLiteral("railPage_2"));
    clickLine(actor, actor.find<Zel::ListView>(QStringLiteral("ThemeListView")), themeName);
    actor.shoot(QStringLiteral("Choosing the theme whose record is edited"));
    actor.click(QStringLiteral("editRecord"));
    waitForStatus(actor, QStringLiteral("No changes"));
    actor.shoot(QStringLiteral("A record with every kind of field"));
}

void changeFields(TourActor &actor)
{
    typeInto(actor, "Title", QStringLiteral("Harvest briefing"));
    clickPart(actor, "Show_the_agenda", "widgetValue");
    waitForStatus(actor, QStringLiteral("2 fields changed"));
    actor.shoot(QStringLiteral("Changed fields are marked"));
}

void pickLogo(TourActor &actor)
{
    actor.withDialog([&] { clickPart(actor, "Logo", "Command1"); },
                     [&] {
                         const QWidget *picker = QApplication::activeModalWidget();
                         auto &tree = *picker->findChild<Zel::TreeView *>();
                         auto &list = *picker->findChild<Zel::ListView *>();
                         clickNode(actor, tree, QStringLiteral("Pictures"));
                         clickLine(actor, list, 1);
                         actor.shoot(QStringLiteral("Picking an asset into a field"));
                         actor.click(QStringLiteral("OKButton"));
                     });
    waitForStatus(actor, QStringLiteral("3 fields changed"));
    actor.shoot(QStringLiteral("The field holds the asset"));
}

/// The widget inside a web view that takes mouse and keys, once the page is there.
QWidget &loadedPage(TourActor &actor)
{
    QWidget &view = actor.find(QStringLiteral("WebBrowser1"));
    actor.waitFor(QStringLiteral("the component page"), [&] {
        return view.focusProxy() && !view.property("title").toString().isEmpty() &&
               !view.property("title").toString().startsWith(QLatin1String("http"));
    });
    QTest::qWait(900); // its scripts, and what it draws
    return *view.focusProxy();
}

void usePage(TourActor &actor, const char *field, const QString &caption,
             const std::function<void(QWidget &page)> &act)
{
    actor.withDialog([&] { clickPart(actor, field, "widgetButton"); },
                     [&] {
                         QWidget &page = loadedPage(actor);
                         actor.shoot(caption);
                         act(page);
                         QTest::qWait(300);
                         actor.shoot(caption + QStringLiteral(", in use"));
                         const QPointer<QWidget> dialog = QApplication::activeModalWidget();
                         QTest::keyClick(&page, Qt::Key_Return, Qt::ControlModifier);
                         actor.waitFor(QStringLiteral("the page to close"),
                                       [&] { return !dialog || !dialog->isVisible(); });
                     });
}

void usePages(TourActor &actor)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        std::fprintf(stderr,
                     "tour: component pages are left out; they are drawn by OpenGL and need "
                     "an X display (xvfb-run)\n");
        return;
    }
    usePage(actor, "Page_background", QStringLiteral("A page chooses a colour"), [](QWidget &page) {
        QTest::mouseClick(&page, Qt::LeftButton, {}, {page.width() / 4, page.height() / 2});
    });
    waitForStatus(actor, QStringLiteral("4 fields changed"));
    usePage(actor, "Slides", QStringLiteral("A page orders slides"), [](QWidget &page) {
        QTest::mouseClick(&page, Qt::LeftButton, {}, {page.width() / 2, 100}); // the first title
        QTest::qWait(200);
        QTest::keyClick(&page, Qt::Key_Down, Qt::AltModifier);
    });
    waitForStatus(actor, QStringLiteral("5 fields changed"));
    usePage(actor, "Agenda", QStringLiteral("A page edits a schedule"), [](QWidget &page) {
        QTest::mouseClick(&page, Qt::LeftButton, {}, {page.width() / 2, 100}); // the first title
        QTest::qWait(200);
        QTest::keyClicks(&page, QStringLiteral(", with coffee"));
    });
    waitForStatus(actor, QStringLiteral("6 fields changed"));
    actor.shoot(QStringLiteral("The record after its pages"));
}

/// Somebody else, with the same account at the same service.
class Colleague
{
public:
    explicit Colleague(StudioApp &studio)
        : m_theme(guidOf(studio.client()))
    {
        m_client.setDefaultServer(studio.embeddedService()->address());
        bool isIn = false;
        m_client.authenticate({}, QStringLiteral("tomas"), QStringLiteral("sample-tomas"),
                              QStringLiteral("Studio"), {}, false, true, isIn);
        QXSC::AccountCollectionPtr accounts;
        m_client.getAccounts(accounts);
        m_client.setActiveAccount(QString::number(accounts->item(1)->accountID), isIn);
        TourActor::expect(isIn, QStringLiteral("somebody else to sign in"));
    }

    ~Colleague() { m_client.signOut(); }

    QXSC::DataRecordPtr record() { return m_client.GetThemeDataRecord(m_theme); }

    void save(const QXSC::DataRecord &record)
    {
        TourActor::expect(m_client.saveThemeDataRecord(m_theme, record).isSaved,
                          QStringLiteral("somebody else to save the record"));
    }

private:
    static QString guidOf(QXSC::ServiceClient &client)
    {
        QXSC::ThemeCollectionPtr themes;
        client.callListMethod(QStringLiteral("Studio"), QStringLiteral("getFullThemeList_Array"),
                              themes);
        for (const QXSC::ThemeRecordPtr &theme : *themes) {
            if (theme->name == themeName)
                return theme->guid;
        }
        throw TourFailure(QStringLiteral("expected the theme of the record"));
    }

    QXSC::HttpServiceClient m_client;
    QString m_theme;
};

void saveElsewhere(Colleague &colleague)
{
    const QXSC::DataRecordPtr record = colleague.record();
    for (const QXSC::DataRecordEntryPtr &entry : *record->entries) {
        if (entry->label == QLatin1String("Title"))
            entry->value.text = QStringLiteral("Autumn briefing");
        if (entry->label == QLatin1String("Subtitle"))
            entry->value.text = QStringLiteral("Live from the harbour");
    }
    colleague.save(*record);
}

void saveAgainstAnother(TourActor &actor, Colleague &colleague)
{
    saveElsewhere(colleague);
    actor.withDialog([&] { actor.click(QStringLiteral("saveRecord")); },
                     [&] {
                         actor.find(QStringLiteral("recordConflict"));
                         actor.shoot(QStringLiteral("Somebody else has saved the record"));
                         actor.click(QStringLiteral("saveChosen"));
                     });
    waitForStatus(actor, QStringLiteral("Saved at"));
    actor.shoot(QStringLiteral("The record is saved"));
}

void leaveWithChanges(TourActor &actor)
{
    typeInto(actor, "Subtitle", QStringLiteral("Live from the pier"));
    waitForStatus(actor, QStringLiteral("1 field changed"));
    actor.withDialog([&] { actor.click(QStringLiteral("backToRecordThemes")); },
                     [&] {
                         auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
                         actor.shoot(QStringLiteral("Leaving with changes"));
                         QPushButton *discard =
                             qobject_cast<QPushButton *>(box->button(QMessageBox::Discard));
                         actor.clickAt(*discard, discard->rect().center());
                     });
}

} // namespace

void tourRecord(TourActor &actor, StudioApp &studio)
{
    Colleague colleague(studio);
    const QXSC::DataRecordPtr before = colleague.record();
    openRecord(actor);
    changeFields(actor);
    pickLogo(actor);
    usePages(actor);
    saveAgainstAnother(actor, colleague);
    leaveWithChanges(actor);
    // The next walk finds the record as this one did.
    before->version = colleague.record()->version;
    colleague.save(*before);
}

} // namespace Studio
