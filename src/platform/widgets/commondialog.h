// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QPointer>
#include <QStringList>
#include <QWidget>

class QFileDialog;

namespace Zel {

/// The common file dialog: set its properties, call `showOpen`, read `fileName`.
///
/// `filter` is "Description|pattern;pattern|Description|pattern ...", for instance
/// "Pictures|*.bmp;*.jpg|All files|*.*". Several chosen files come back in `fileName` as the folder
/// and the bare names, each parted by the character with code 0; a single one as its whole path.
class ZEL_EXPORT CommonDialog
{
public:
    /// The dialog opens modally over the window of `owner`.
    explicit CommonDialog(QWidget *owner = nullptr);

    /// Explorer style with multiple selection.
    static constexpr quint32 ExplorerMultiSelect = 0x80200;
    /// The bit that allows several files.
    static constexpr quint32 AllowMultiSelect = 0x200;

    QString dialogTitle;
    /// The pattern the dialog starts with ("*.*"); used when `filter` is empty.
    QString defaultPattern;
    QString filter;
    QString initialFolder;
    QString fileName;
    quint32 flags = 0;
    /// Whether cancelling throws error 32755; otherwise `fileName` just stays as it is.
    bool cancelError = false;

    /// Shows the Open dialog and returns when it is closed.
    void showOpen();

    /// Qt's name filters for a filter text; a description without a pattern is dropped, a pattern
    /// "*.*" matches every file. Patterns that the description repeats in parentheses are left out.
    static QStringList nameFilters(const QString &filter);
    /// The filter text for Qt's name filters.
    static QString filterText(const QStringList &nameFilters);
    /// The joined form of one or several chosen paths.
    static QString joinedFileName(const QStringList &paths);

private:
    void setUp(QFileDialog &dialog) const;

    QPointer<QWidget> m_owner;
};

} // namespace Zel
