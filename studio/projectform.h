// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/studioservice.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QDateTimeEdit;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace Studio {

/// The second step of a new project: name, type, description, date of the event. What is wrong with
/// an entry is said below it.
class ProjectForm : public QWidget
{
    Q_OBJECT

public:
    /// The most characters of a name; as much as the service takes.
    static constexpr qsizetype LongestName = 10000;
    /// The most characters of a description; with any characters it fits in what the service takes.
    static constexpr qsizetype LongestDescription = 100000;

    explicit ProjectForm(QWidget *parent);

    /// Empties the form.
    void start();
    /// Offers these types; the present one stays when it is among them.
    void offerTypes(const QList<QXSC::ProjectType> &types, const QString &preferred);

    bool hasTypes() const;
    /// Whether a person has entered anything.
    bool hasEntries() const;
    /// Says what is wrong, puts the keyboard there and returns false; or returns true.
    bool check();
    /// What was entered; without guid and theme.
    QXSC::NewProject entries() const;

    void takeFocus();

protected:
    void changeEvent(QEvent *event) override;

private:
    QLabel *addMessage(QGridLayout &grid, int row, const char *name);
    void build();
    void showProblems();
    QString nameProblem() const;
    QString descriptionProblem() const;
    void applyColors();

    QLineEdit *m_name;
    QComboBox *m_type;
    QPlainTextEdit *m_description;
    QCheckBox *m_hasDate;
    QDateTimeEdit *m_date;
    QLabel *m_nameProblem;
    QLabel *m_typeProblem;
    QLabel *m_descriptionProblem;
    /// Whether Save was tried: from then on what is wrong is said while typing.
    bool m_isChecked = false;
};

} // namespace Studio
