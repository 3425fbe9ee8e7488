// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/recordconflict.h"

#include "studio/appearance.h"
#include "studio/pageheader.h"
#include "studio/textlabel.h"

#include <QApplication>
#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>

namespace Studio {

namespace {

constexpr qsizetype LongestLabel = 120;
constexpr qsizetype LongestValue = 400;
constexpr int Mine = 1;
constexpr int Theirs = 0;

QString valueText(const QXSC::DataRecordValue &value, const QXSC::DataRecordValue &other)
{
    if (value.text.isEmpty())
        return RecordConflictDialog::tr("(empty)");
    QString text = shortened(value.text, LongestValue);
    // Two pages' results may look alike and depend on other assets.
    if (value.text == other.text && value != other)
        text += QLatin1Char('\n') +
                RecordConflictDialog::tr("(asset %1)")
                    .arg(shortened(value.guid.isEmpty() ? value.assetDependencies : value.guid,
                                   LongestLabel));
    return text;
}

QString note(FieldConflict::Changed changed)
{
    switch (changed) {
    case FieldConflict::Changed::Here:
        return RecordConflictDialog::tr("changed by you");
    case FieldConflict::Changed::OnServer:
        return RecordConflictDialog::tr("changed on the server");
    case FieldConflict::Changed::BothSides:
        return RecordConflictDialog::tr("changed on both sides");
    case FieldConflict::Changed::Gone:
        return RecordConflictDialog::tr("no longer in the record; copy your value if you need it");
    }
    return {};
}

} // namespace

RecordConflictDialog::RecordConflictDialog(const QList<FieldConflict> &conflicts,
                                           const QString &explanation, const QString &confirm,
                                           QWidget *parent)
    : QDialog(parent)
    , m_conflicts(conflicts)
{
    setObjectName(QStringLiteral("recordConflict"));
    setWindowTitle(tr("The Record Has Changed"));
    auto *why = new QLabel(explanation, this);
    why->setTextFormat(Qt::PlainText);
    why->setWordWrap(true);
    auto *scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(makeFields());
    QPushButton *allMine = makeButton(this, "allMine", tr("All &Mine"));
    QPushButton *allTheirs = makeButton(this, "allTheirs", tr("All &Theirs"));
    QPushButton *save = makeButton(this, "saveChosen", confirm);
    save->setDefault(true);
    QPushButton *back =
        makeButton(this, "keepEditing", tr("&Cancel"), tr("Decide later; nothing is lost (Esc)"));
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(allMine);
    buttons->addWidget(allTheirs);
    buttons->addStretch(1);
    buttons->addWidget(save);
    buttons->addWidget(back);
    connect(allMine, &QPushButton::clicked, this, [this] { chooseAll(true); });
    connect(allTheirs, &QPushButton::clicked, this, [this] { chooseAll(false); });
    connect(save, &QPushButton::clicked, this, &QDialog::accept);
    connect(back, &QPushButton::clicked, this, &QDialog::reject);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 16, 20, 16);
    column->setSpacing(12);
    column->addWidget(why);
    column->addWidget(scroll, 1);
    column->addLayout(buttons);
    const int wanted = scroll->widget()->sizeHint().height() + 140;
    resize(760, qMin(wanted, screen()->availableSize().height() * 3 / 4));
}

QWidget *RecordConflictDialog::makeFields()
{
    auto *fields = new QWidget;
    auto *grid = new QGridLayout(fields);
    grid->setContentsMargins(0, 0, 8, 0);
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(12);
    grid->setColumnStretch(0, 2);
    grid->setColumnStretch(1, 3);
    grid->setColumnStretch(2, 3);
    const QString headings[] = {tr("Field"), tr("Yours"), tr("On the server")};
    for (int i = 0; i < 3; ++i) {
        auto *heading = new QLabel(headings[i], fields);
        QFont bold = heading->font();
        bold.setWeight(QFont::DemiBold);
        heading->setFont(bold);
        grid->addWidget(heading, 0, i);
    }
    for (qsizetype i = 0; i < m_conflicts.size(); ++i)
        addField(*grid, i);
    grid->setRowStretch(grid->rowCount(), 1);
    return fields;
}

void RecordConflictDialog::addField(QGridLayout &grid, qsizetype number)
{
    const FieldConflict &conflict = m_conflicts.at(number);
    QWidget *fields = grid.parentWidget();
    const int row = grid.rowCount();
    auto *name = new QLabel(fields);
    name->setTextFormat(Qt::PlainText);
    name->setWordWrap(true);
    name->setText(breakable(shortened(conflict.label.simplified(), LongestLabel)) +
                  QLatin1Char('\n') + note(conflict.changed));
    grid.addWidget(name, row, 0, Qt::AlignTop);
    auto *group = new QButtonGroup(this);
    const auto add = [&](int side, const QString &text, const QString &says) {
        auto *cell = new QWidget(fields);
        auto *line = new QHBoxLayout(cell);
        line->setContentsMargins(0, 0, 0, 0);
        auto *choice = new QRadioButton(cell);
        choice->setObjectName(
            QStringLiteral("%1_%2")
                .arg(side == Mine ? QStringLiteral("mine") : QStringLiteral("theirs"))
                .arg(number));
        choice->setAccessibleName(says.arg(conflict.label));
        choice->setAccessibleDescription(text);
        choice->setChecked(conflict.keepsMine == (side == Mine));
        choice->setEnabled(conflict.position >= 0);
        auto *value = new TextLabel("conflictValue", LongestValue * 2, cell);
        value->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        value->showText(text);
        line->addWidget(choice, 0, Qt::AlignTop);
        line->addWidget(value, 1);
        grid.addWidget(cell, row, side == Mine ? 1 : 2, Qt::AlignTop);
        group->addButton(choice, side);
    };
    add(Mine, valueText(conflict.mine, conflict.theirs), tr("Your value of %1"));
    add(Theirs, conflict.position < 0 ? tr("(gone)") : valueText(conflict.theirs, conflict.mine),
        tr("The server's value of %1"));
    connect(group, &QButtonGroup::idToggled, this, [this, number](int id, bool isOn) {
        if (isOn)
            m_conflicts[number].keepsMine = id == Mine;
    });
    m_choices.append(group);
}

void RecordConflictDialog::chooseAll(bool mine)
{
    for (qsizetype i = 0; i < m_choices.size(); ++i) {
        if (m_conflicts.at(i).position >= 0)
            m_choices.at(i)->button(mine ? Mine : Theirs)->setChecked(true);
    }
}

} // namespace Studio
