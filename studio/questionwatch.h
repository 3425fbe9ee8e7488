// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"

#include <QObject>
#include <QSet>

#include <functional>

class QPushButton;

namespace Zel {
class ListView;
}

namespace ZelWebServiceControls {
class StatsControl;
}

namespace Studio {

/// What Studio adds to the list of questions: the same question is selected again after a refresh,
/// questions that came since the last look are counted, and a change that failed can be made again.
class QuestionWatch : public QObject
{
    Q_OBJECT

public:
    QuestionWatch(ZelWebServiceControls::StatsControl &control, QXSC::ServiceClient &client,
                  QObject *parent);

    /// Another deployment: what is loaded next is new to nobody.
    void restart();
    /// The person has seen what the list shows, or turns away from it.
    void looked();

    /// What makes the change again that has just failed; nothing when what failed was no change.
    std::function<void()> again() const;

    void refresh() const;
    void remove() const;

signals:
    /// How many questions came since the last look.
    void newQuestions(int count);

private:
    enum class Change
    {
        None,
        Answer,
        Retract,
        Delete
    };

    QString selectedGuid() const;
    void begin(Change change);
    void aboutToLoad();
    void loaded();
    void selectAgain();
    QSet<QString> guids() const;

    QXSC::ServiceClient &m_client;
    Zel::ListView *m_list;
    QPushButton *m_refresh;
    QPushButton *m_delete;
    QString m_selected;
    Change m_change = Change::None;
    QString m_changed;
    /// The questions as they were at the last look; nobody has looked before the first load.
    QSet<QString> m_known;
    bool m_hasLooked = false;
};

} // namespace Studio
