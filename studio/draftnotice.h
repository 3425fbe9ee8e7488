// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/recorddrafts.h"

#include <QFrame>

class QPushButton;
class QToolButton;

namespace Studio {

class TextLabel;

/// The strip that offers a draft which an earlier Studio could not save.
class DraftNotice : public QFrame
{
    Q_OBJECT

public:
    explicit DraftNotice(QWidget *parent = nullptr);

    /// Offers these drafts one after the other; none hides the strip.
    void offer(const QList<RecordDraft> &drafts);

signals:
    void goOn(const RecordDraft &draft);

protected:
    void changeEvent(QEvent *event) override;

private:
    void build();
    void showNext();
    void discard();
    void applyColors();

    TextLabel *m_text;
    QPushButton *m_goOn;
    QPushButton *m_discard;
    QToolButton *m_later;
    QList<RecordDraft> m_drafts;
};

} // namespace Studio
