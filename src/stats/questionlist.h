// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/statsrecord.h"
#include "stats/statspage.h"

#include <QDateTime>

class QPushButton;

namespace Zel {
class ListView;
}

namespace ZelWebServiceControls {

/// The tab "Q and A": the questions of the audience, to be answered, retracted or deleted.
///
/// Every change is sent at once and the list is then fetched again, from the start of the range up
/// to now; only the first load ends at the end of the range. What another moderator did meanwhile
/// is therefore seen after every action. When a change fails the list stays as it is.
class QuestionList : public StatsPage
{
public:
    QuestionList(QFrame *frame, const StatsSource &source);

    void load() override;

private:
    QPushButton *makeButton(const char *name, const QString &caption, const QString &toolTip,
                            Qt::Key mnemonic);
    void makeList();
    void arrange();
    /// Without an end the questions up to now.
    void loadQuestions(const QDateTime &end = QDateTime());
    void answerSelected();
    /// Returns whether the page still exists.
    [[nodiscard]] bool edit(const QXSC::QuestionRecord &question);
    void retractSelected();
    void deleteSelected();
    void refresh();
    QXSC::QuestionRecordPtr selectedQuestion() const;

    Zel::ListView *m_list = nullptr;
    QPushButton *m_reply;
    QPushButton *m_retract;
    QPushButton *m_delete;
    QPushButton *m_refresh;
};

} // namespace ZelWebServiceControls
