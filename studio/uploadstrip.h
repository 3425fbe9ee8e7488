// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

class QLabel;
class QProgressBar;
class QPushButton;

namespace Studio {

/// The line below the assets that tells how far reading or uploading files is, with the button that
/// ends it, and what is left afterwards, with the button that goes on. Hidden while there is
/// nothing to tell.
class UploadStrip : public QFrame
{
    Q_OBJECT

public:
    explicit UploadStrip(QWidget *parent = nullptr);

    /// Dropped files are being read; `count` is 0 while they are still being looked for.
    void showReading(int done, int count);
    /// The file `number` (from 1) of `count` is being uploaded.
    ///
    /// @param withBar whether the manager's own bar covers only a part of the batch
    void showUploading(int number, int count, bool withBar);
    /// A stop or a failure left files.
    void showRest(int uploaded, int rest);

    /// The button that ends what is going on.
    QPushButton *endButton() const { return m_end; }

    /// The button that goes on after a stop or a failure.
    QPushButton *restButton() const { return m_rest; }

signals:
    void endAsked();
    void restAsked();

private:
    void showBusy(const QString &text, int done, int count, bool withBar);

    QLabel *m_text;
    QProgressBar *m_bar;
    QPushButton *m_end;
    QPushButton *m_rest;
};

} // namespace Studio
