// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/commondialog.h"

#include "platform/core/runtimeerror.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>

namespace Zel {

namespace {

/// Qt's form of one pattern. "*.*" means every file to the people who write it, also one without a
/// dot. Qt parts patterns at blanks; any one character stands for a blank inside a pattern.
QString qtPattern(const QString &pattern)
{
    if (pattern == QLatin1String("*.*"))
        return QStringLiteral("*");
    return QString(pattern).replace(QLatin1Char(' '), QLatin1Char('?'));
}

QString qtPatterns(const QString &patterns)
{
    QStringList result;
    for (const QString &part : patterns.split(QLatin1Char(';'))) {
        if (const QString pattern = part.trimmed(); !pattern.isEmpty())
            result << qtPattern(pattern);
    }
    return result.join(QLatin1Char(' '));
}

/// A description without the patterns that people repeat behind it, "Pictures (*.bmp)": Qt shows
/// them itself.
QString bareDescription(const QString &description)
{
    static const QRegularExpression repeated(QStringLiteral("\\s*\\([^()]*[*?][^()]*\\)$"));
    return description.trimmed().remove(repeated);
}

} // namespace

QStringList CommonDialog::nameFilters(const QString &filter)
{
    const QStringList parts = filter.split(QLatin1Char('|'));
    QStringList result;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString patterns = qtPatterns(parts.at(i + 1));
        if (!patterns.isEmpty())
            result
                << QStringLiteral("%1 (%2)").arg(bareDescription(parts.at(i)), patterns).trimmed();
    }
    return result;
}

QString CommonDialog::filterText(const QStringList &nameFilters)
{
    QStringList parts;
    for (const QString &entry : nameFilters) {
        const qsizetype open = entry.lastIndexOf(QLatin1Char('('));
        const qsizetype close = entry.lastIndexOf(QLatin1Char(')'));
        const bool hasPattern = open >= 0 && close > open;
        const QString patterns = hasPattern ? entry.mid(open + 1, close - open - 1) : entry;
        QStringList list = patterns.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        list.replaceInStrings(QRegularExpression(QStringLiteral("^\\*$")), QStringLiteral("*.*"));
        parts << (hasPattern ? entry.left(open).trimmed() : entry) << list.join(QLatin1Char(';'));
    }
    return parts.join(QLatin1Char('|'));
}

QString CommonDialog::joinedFileName(const QStringList &paths)
{
    if (paths.isEmpty())
        return {};
    if (paths.size() == 1)
        return QDir::toNativeSeparators(paths.constFirst());
    QStringList parts{QDir::toNativeSeparators(QFileInfo(paths.constFirst()).absolutePath())};
    for (const QString &path : paths)
        parts << QFileInfo(path).fileName();
    return parts.join(QChar(u'\0'));
}

CommonDialog::CommonDialog(QWidget *owner)
    : m_owner(owner)
{
}

void CommonDialog::setUp(QFileDialog &dialog) const
{
    dialog.setObjectName(QStringLiteral("commonDialog"));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setWindowTitle(dialogTitle.isEmpty()
                              ? QCoreApplication::translate("Zel::CommonDialog", "Open")
                              : dialogTitle);
    dialog.setFileMode(flags & AllowMultiSelect ? QFileDialog::ExistingFiles
                                                : QFileDialog::ExistingFile);
    QStringList filters = nameFilters(filter);
    if (filters.isEmpty() && !qtPatterns(defaultPattern).isEmpty())
        filters << QCoreApplication::translate("Zel::CommonDialog", "Files (%1)")
                       .arg(qtPatterns(defaultPattern));
    if (!filters.isEmpty())
        dialog.setNameFilters(filters);
    if (!initialFolder.isEmpty() && QFileInfo(initialFolder).isDir())
        dialog.setDirectory(initialFolder);
    if (!fileName.isEmpty())
        dialog.selectFile(fileName);
}

void CommonDialog::showOpen()
{
    // Not on the stack: the dialog is deleted with the owner's window, also while it is open, and
    // whoever holds this object may go with them.
    const QPointer<QFileDialog> dialog(new QFileDialog(m_owner ? m_owner->window() : nullptr));
    const bool throwOnCancel = cancelError;
    setUp(*dialog);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    const QStringList chosen = dialog ? dialog->selectedFiles() : QStringList();
    delete dialog;
    if (accepted && !chosen.isEmpty())
        fileName = joinedFileName(chosen);
    else if (throwOnCancel)
        throw RuntimeError(RuntimeError::DialogCancelled);
}

} // namespace Zel
