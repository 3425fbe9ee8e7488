// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/questionwatch.h"

#include "platform/widgets/form.h"
#include "platform/widgets/listmodel.h"
#include "platform/widgets/listview.h"
#include "stats/qadialog.h"
#include "stats/statscontrol.h"

#include <QPushButton>

namespace Studio {

using ZelWebServiceControls::QADialog;
using ZelWebServiceControls::StatsControl;

QuestionWatch::QuestionWatch(StatsControl &control, QXSC::ServiceClient &client, QObject *parent)
    : QObject(parent)
    , m_client(client)
    , m_list(control.findChild<Zel::ListView *>(QStringLiteral("qaListView")))
    , m_refresh(control.findChild<QPushButton *>(QStringLiteral("refreshCmd")))
    , m_delete(control.findChild<QPushButton *>(QStringLiteral("deleteCmd")))
{
    const std::pair<const char *, Change> buttons[] = {{"replyCmd", Change::Answer},
                                                       {"retractCmd", Change::Retract},
                                                       {"deleteCmd", Change::Delete},
                                                       {"refreshCmd", Change::None}};
    // A button is pressed before it is clicked, so this is known before anything can fail.
    for (const auto &[name, change] : buttons) {
        const auto *button = control.findChild<QPushButton *>(QLatin1String(name));
        connect(button, &QPushButton::pressed, this, [this, begun = change] { begin(begun); });
        // The control hears of the click first: what it did is over by now, or was given up.
        connect(button, &QPushButton::clicked, this, [this] { m_change = Change::None; });
    }
    const QAbstractItemModel *model = m_list->model();
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, &QuestionWatch::aboutToLoad);
    connect(model, &QAbstractItemModel::modelReset, this, &QuestionWatch::loaded);
    connect(m_list, &Zel::ListView::lineClicked, this, &QuestionWatch::looked);
}

void QuestionWatch::restart()
{
    m_selected.clear();
    m_known.clear();
    m_hasLooked = false;
    m_change = Change::None;
    m_list->setEmptyText(QString()); // what it said was of another deployment
    emit newQuestions(0);
}

QString QuestionWatch::selectedGuid() const
{
    const qsizetype row = m_list->selectedRow();
    const auto question =
        row < 0 ? QXSC::QuestionRecordPtr() : m_list->tag(row).value<QXSC::QuestionRecordPtr>();
    return question ? question->QuestionGuid : QString();
}

void QuestionWatch::begin(Change change)
{
    m_changed = selectedGuid();
    m_change = m_changed.isEmpty() ? Change::None : change;
}

void QuestionWatch::aboutToLoad()
{
    if (const QString guid = selectedGuid(); !guid.isEmpty())
        m_selected = guid;
}

void QuestionWatch::loaded()
{
    if (m_list->count() == 0 && m_list->emptyText().isEmpty())
        return; // emptied before the service is asked
    if (!m_hasLooked)
        looked();
    else
        emit newQuestions(static_cast<int>((guids() - m_known).size()));
    // The list puts its own selection right after its model.
    QMetaObject::invokeMethod(this, &QuestionWatch::selectAgain, Qt::QueuedConnection);
}

void QuestionWatch::selectAgain()
{
    const QString wanted = std::exchange(m_selected, {});
    if (wanted.isEmpty() || m_list->selectedRow() >= 0)
        return;
    for (qsizetype row = 0; row < m_list->count(); ++row) {
        const auto question = m_list->tag(row).value<QXSC::QuestionRecordPtr>();
        if (!question || question->QuestionGuid != wanted)
            continue;
        m_list->selectRow(row);
        m_list->ensureVisible(row);
        return;
    }
}

QSet<QString> QuestionWatch::guids() const
{
    QSet<QString> all;
    for (qsizetype row = 0; row < m_list->count(); ++row) {
        if (const auto question = m_list->tag(row).value<QXSC::QuestionRecordPtr>())
            all.insert(question->QuestionGuid);
    }
    return all;
}

void QuestionWatch::looked()
{
    if (m_list->count() == 0 && m_list->emptyText().isEmpty())
        return; // nothing is known yet
    m_hasLooked = true;
    m_known = guids();
    emit newQuestions(0);
}

std::function<void()> QuestionWatch::again() const
{
    // A change that failed leaves the list as it is; one that went through does not.
    if (m_changed.isEmpty() || selectedGuid() != m_changed)
        return {};
    const QString guid = m_changed;
    QXSC::ServiceClient &client = m_client;
    QPushButton *refresh = m_refresh;
    const auto setStatus = [&client, refresh, guid](const QString &status) {
        client.SetQuestionStatus(guid, status);
        refresh->click();
    };
    switch (m_change) {
    case Change::Answer: {
        const QADialog &dialog = Zel::sharedForm<QADialog>();
        if (dialog.result() != QADialog::Confirmed)
            return {};
        return [&client, setStatus, guid, answer = dialog.answer(), question = dialog.question()] {
            client.UpdateQuestion(guid, answer, question, {}, {});
            setStatus(QStringLiteral("STAGED"));
        };
    }
    case Change::Retract:
        return [setStatus] { setStatus(QStringLiteral("RETRACT")); };
    case Change::Delete:
        return [setStatus] { setStatus(QStringLiteral("DELETE")); };
    case Change::None:
        break;
    }
    return {};
}

void QuestionWatch::refresh() const
{
    m_refresh->click();
}

void QuestionWatch::remove() const
{
    m_delete->click();
}

} // namespace Studio
