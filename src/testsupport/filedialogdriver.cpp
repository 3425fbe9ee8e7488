// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport/filedialogdriver.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>

namespace ZelTest {

namespace {

/// What a person types to name one file, or several in quotes.
QString typedText(const QStringList &paths)
{
    if (paths.size() == 1)
        return paths.constFirst();
    QStringList quoted;
    for (const QString &path : paths)
        quoted << QLatin1Char('"') + QFileInfo(path).fileName() + QLatin1Char('"');
    return quoted.join(QLatin1Char(' '));
}

} // namespace

FileDialogDriver::FileDialogDriver(QObject *parent)
    : QObject(parent)
{
    m_timer.setInterval(5);
    connect(&m_timer, &QTimer::timeout, this, &FileDialogDriver::look);
    m_timer.start();
}

FileDialogDriver::~FileDialogDriver() = default;

void FileDialogDriver::choose(const QStringList &paths)
{
    m_answers << paths;
}

void FileDialogDriver::cancel()
{
    m_answers << QStringList();
}

void FileDialogDriver::look()
{
    auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
    if (!dialog || !dialog->isVisible())
        return;
    if (dialog == m_answered) {
        // It did not take its answer, a name that does not exist for instance.
        QTest::keyClick(dialog, Qt::Key_Escape);
        return;
    }
    m_answered = dialog;
    m_shown << Shown{dialog->windowTitle(), dialog->nameFilters(),
                     dialog->directory().absolutePath(),
                     dialog->fileMode() == QFileDialog::ExistingFiles};
    const QStringList paths = m_answers.isEmpty() ? QStringList() : m_answers.takeFirst();
    if (paths.isEmpty()) {
        QTest::keyClick(dialog, Qt::Key_Escape);
        return;
    }
    if (paths.size() > 1)
        dialog->setDirectory(QFileInfo(paths.constFirst()).absolutePath());
    auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    name->setText(typedText(paths));
    QTest::keyClick(name, Qt::Key_Return);
}

} // namespace ZelTest
