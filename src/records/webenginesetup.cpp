// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// What the browser engine needs of a program that may load it later.

#include <QCoreApplication>

namespace {

/// The browser engine shares graphics contexts with the windows around it, which Qt allows only
/// when it was asked before the application object was made. A host that links this library has
/// asked by linking it; nothing of the engine is loaded by that. A library loaded into a running
/// application comes too late and leaves the attribute alone.
[[maybe_unused]] const bool isPrepared = [] {
    if (!QCoreApplication::instance())
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    return true;
}();

} // namespace
