// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "login/login.h"
#include "testsupport/testcase.h"

#include <QtDesigner/QDesignerComponents>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QDesignerIntegration>
#include <QtDesigner/QDesignerPropertyEditorInterface>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>
#include <QPushButton>
#include <QTest>

using ZelWebServiceControls::Login;

namespace {

const QByteArray formText = R"(<ui version="4.0"><class>Form</class>
<widget class="QWidget" name="Form"><property name="geometry"><rect><x>0</x><y>0</y>
<width>500</width><height>300</height></rect></property>
<widget class="ZelWebServiceControls::Login" name="login"/></widget>
<customwidgets><customwidget><class>ZelWebServiceControls::Login</class>
<extends>QWidget</extends><header>login/login.h</header></customwidget></customwidgets></ui>)";

/// The editor loads the plugin of Qt WebEngine too, where there is one, which wants this said before
/// the application object is made.
[[maybe_unused]] const bool contextsShared = [] {
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    return true;
}();

} // namespace

/// Drives the real form editor of Qt Designer with the real plugin.
class TestDesigner : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        // The editor tries every widget class it knows once; there is no OpenGL offscreen.
        QTest::ignoreMessage(QtWarningMsg, "QOpenGLWidget is not supported on this platform.");
        // The editor looks for plugins in a folder "designer" of the library paths. It is to find
        // ours alone, whatever else is installed.
        QDir plugins = QFileInfo(QStringLiteral(ZEL_DESIGNER_PLUGIN)).absoluteDir();
        plugins.cdUp();
        const QStringList paths = QCoreApplication::libraryPaths();
        QCoreApplication::setLibraryPaths({plugins.absolutePath()});
        QDesignerComponents::initializeResources();
        m_core = QDesignerComponents::createFormEditor(this);
        m_core->setPropertyEditor(QDesignerComponents::createPropertyEditor(m_core, nullptr));
        new QDesignerIntegration(m_core, m_core);
        QDesignerComponents::initializePlugins(m_core);
        QCoreApplication::setLibraryPaths(paths);
    }

    void cleanupTestCase()
    {
        delete m_core->propertyEditor();
        delete m_core;
    }

    void everyControlIsOffered()
    {
        QPluginLoader loader(QStringLiteral(ZEL_DESIGNER_PLUGIN));
        auto *collection =
            qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
        QVERIFY2(collection, qPrintable(loader.errorString()));
        QStringList names;
        for (QDesignerCustomWidgetInterface *control : collection->customWidgets()) {
            names << control->name();
            QVERIFY(!control->toolTip().isEmpty());
            QVERIFY(!control->icon().pixmap(24, 24).isNull());
            QVERIFY(
                QFileInfo::exists(QStringLiteral(ZEL_SOURCE_DIR "/src/") + control->includeFile()));
            const std::unique_ptr<QWidget> widget(control->createWidget(nullptr));
            QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), control->name());
        }
        QCOMPARE(names, (QStringList{QStringLiteral("ZelWebServiceControls::AssetManager"),
                                     QStringLiteral("ZelWebServiceControls::CheckboxWidget"),
                                     QStringLiteral("ZelWebServiceControls::CustomWidget"),
                                     QStringLiteral("ZelWebServiceControls::DataRecordManager"),
                                     QStringLiteral("ZelWebServiceControls::Login"),
                                     QStringLiteral("ZelWebServiceControls::ProjectList"),
                                     QStringLiteral("ZelWebServiceControls::StatsControl"),
                                     QStringLiteral("ZelWebServiceControls::TextAreaWidget"),
                                     QStringLiteral("ZelWebServiceControls::TextAssetWidget"),
                                     QStringLiteral("ZelWebServiceControls::TextWidget"),
                                     QStringLiteral("ZelWebServiceControls::ThemeList")}));
    }

    void controlsOnAFormAreInDesignMode()
    {
        Login *login = openForm();
        QVERIFY(login);
        QCOMPARE(login->mode(), Zel::Control::Mode::Design);
    }

    void theFileKeepsTheBagAndNoSingleProperty()
    {
        Login *login = openForm();
        m_form->cursor()->setWidgetProperty(login, QStringLiteral("UseProxy"), true);
        m_form->cursor()->setWidgetProperty(login, QStringLiteral("UserName"),
                                            QStringLiteral("maja"));
        QTRY_VERIFY(m_form->contents().contains(QLatin1String("PropertyBagText")));
        const QString text = m_form->contents();
        QVERIFY(!text.contains(QLatin1String("property name=\"UseProxy\"")));
        QVERIFY(!text.contains(QLatin1String("property name=\"UserName\"")));

        Login fresh;
        fresh.readPropertyBag(login->writePropertyBag());
        QVERIFY(fresh.UseProxy());
        QCOMPARE(fresh.UserName(), QStringLiteral("maja"));
    }

    void aSavedFormComesBack()
    {
        Login *login = openForm();
        m_form->cursor()->setWidgetProperty(login, QStringLiteral("UserName"),
                                            QStringLiteral("tomas"));
        QTRY_VERIFY(m_form->contents().contains(QLatin1String("PropertyBagText")));
        const QByteArray saved = m_form->contents().toUtf8();
        Login *again = openForm(saved);
        QCOMPARE(again->UserName(), QStringLiteral("tomas"));
    }

    void anUntouchedControlStoresNothing()
    {
        openForm();
        QVERIFY(!m_form->contents().contains(QLatin1String("PropertyBagText")));
    }

private:
    Login *openForm(const QByteArray &text = formText)
    {
        delete m_form;
        m_form = m_core->formWindowManager()->createFormWindow();
        m_form->setContents(QString::fromUtf8(text));
        m_core->formWindowManager()->setActiveFormWindow(m_form);
        return m_form->findChild<Login *>(QStringLiteral("login"));
    }

    QDesignerFormEditorInterface *m_core = nullptr;
    QPointer<QDesignerFormWindowInterface> m_form;
};

ZEL_TEST_MAIN(TestDesigner)
#include "tst_designer.moc"
