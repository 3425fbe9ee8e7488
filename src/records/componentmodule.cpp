// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/componentmodule.h"

#include "platform/core/runtimeerror.h"
#include "records/componentdialog.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibrary>
#include <QOpenGLContext>

#include <dlfcn.h>
#include <unistd.h>

namespace ZelWebServiceControls {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("ZelWebServiceControls::ComponentModule", text);
}

[[noreturn]] void refuse(const QString &why)
{
    throw Zel::RuntimeError(Zel::RuntimeError::CannotCreateObject, why);
}

QString ownFolder()
{
    // Any object of this library tells where it was loaded from.
    static const char place = 0;
    Dl_info info;
    if (!dladdr(&place, &info) || !info.dli_fname)
        return QString();
    return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
}

bool isSandboxOff()
{
    return qEnvironmentVariableIntValue("QTWEBENGINE_DISABLE_SANDBOX") != 0 ||
           qgetenv("QTWEBENGINE_CHROMIUM_FLAGS").contains("--no-sandbox");
}

QString programObstacle()
{
    if (!QOpenGLContext::globalShareContext())
        return tr("Web pages cannot be shown: the program has to set Qt::AA_ShareOpenGLContexts "
                  "before it makes its application object.");
    if (geteuid() == 0 && !isSandboxOff())
        return tr("Web pages cannot be shown to the user root: the browser's sandbox does not work "
                  "there. Run the program as another user, or set "
                  "QTWEBENGINE_DISABLE_SANDBOX=1.");
    return QString();
}

/// The engine draws by OpenGL; not every platform has it.
QString displayObstacle()
{
    if (!QOpenGLContext::globalShareContext()->isValid())
        return tr("Web pages cannot be shown: there is no OpenGL on this display.");
    return QString();
}

} // namespace

ComponentModule::ComponentModule()
    : ComponentModule(ownFolder())
{
}

ComponentModule::ComponentModule(const QString &folder)
    : m_folder(folder)
{
}

QString ComponentModule::obstacle()
{
    const QString ofProgram = programObstacle();
    return ofProgram.isEmpty() ? displayObstacle() : ofProgram;
}

ComponentDialog *ComponentModule::makeDialog() const
{
    const QString file = m_folder + QStringLiteral("/libZelRecordsWeb.so.0");
    if (!QFileInfo::exists(file))
        refuse(
            tr("Web pages cannot be shown: the module for them is not installed (%1).").arg(file));
    if (const QString why = programObstacle(); !why.isEmpty())
        refuse(why);
    QLibrary library(file);
    if (!library.load())
        refuse(tr("Web pages cannot be shown: the module for them does not load. %1")
                   .arg(library.errorString()));
    using Maker = ComponentDialog *(*)();
    const auto make = reinterpret_cast<Maker>(library.resolve("zelMakeComponentDialog"));
    if (!make)
        refuse(tr("Web pages cannot be shown: %1 is not the module for them.").arg(file));
    if (const QString why = displayObstacle(); !why.isEmpty())
        refuse(why);
    return make();
}

} // namespace ZelWebServiceControls
