// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/componentdialog.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibrary>
#include <QOpenGLContext>
#include <QPointer>

#include <dlfcn.h>
#include <unistd.h>

namespace ZelWebServiceControls {

ComponentDialog::~ComponentDialog() = default;

namespace {

[[noreturn]] void refuse(const QString &why)
{
    throw Zel::RuntimeError(Zel::RuntimeError::CannotCreateObject, why);
}

/// The browser engine ends the whole process when one of these does not hold.
void demandEngineConditions()
{
    if (!QCoreApplication::testAttribute(Qt::AA_ShareOpenGLContexts))
        refuse(QCoreApplication::translate(
            "ComponentDialog", "Pages cannot be shown: the program has to set "
                               "Qt::AA_ShareOpenGLContexts before it makes its QApplication."));
    if (!QOpenGLContext::globalShareContext())
        refuse(QCoreApplication::translate(
            "ComponentDialog", "Pages cannot be shown: there is no OpenGL on this display."));
    const bool sandboxOff = qEnvironmentVariableIntValue("QTWEBENGINE_DISABLE_SANDBOX") == 1 ||
                            qgetenv("QTWEBENGINE_CHROMIUM_FLAGS").contains("--no-sandbox");
    if (geteuid() == 0 && !sandboxOff)
        refuse(QCoreApplication::translate(
            "ComponentDialog",
            "Pages cannot be shown to root: the browser's sandbox does not work for it. Start the "
            "program as another user, or set QTWEBENGINE_DISABLE_SANDBOX=1."));
}

/// The folder that holds this library.
QString libraryFolder()
{
    Dl_info info{};
    if (!dladdr(reinterpret_cast<const void *>(&componentDialog), &info) || !info.dli_fname)
        return {};
    return QFileInfo(QFile::decodeName(info.dli_fname)).absolutePath();
}

ComponentDialog *makeDialog()
{
    demandEngineConditions();
    QLibrary module(libraryFolder() + QStringLiteral("/ZelRecordsWeb"), 0);
    using Maker = ComponentDialog *(*)();
    const auto make = reinterpret_cast<Maker>(module.resolve("zelMakeComponentDialog"));
    if (!make)
        refuse(QCoreApplication::translate("ComponentDialog",
                                           "Pages cannot be shown: the widget browser is not "
                                           "installed (%1).")
                   .arg(module.errorString()));
    return make();
}

} // namespace

ComponentDialog &componentDialog()
{
    static QPointer<ComponentDialog> dialog;
    if (!dialog) {
        dialog = makeDialog();
        QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit,
                         dialog.data(), [] { delete dialog.data(); });
    }
    return *dialog;
}

} // namespace ZelWebServiceControls
