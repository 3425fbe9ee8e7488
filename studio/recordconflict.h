// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/recordmerge.h"

#include <QDialog>

class QButtonGroup;
class QGridLayout;

namespace Studio {

/// Shows, field by field, what the author typed and what is on the server now, and lets the author
/// choose between them.
class RecordConflictDialog : public QDialog
{
    Q_OBJECT

public:
    /// @param explanation how it came to this, a sentence or two
    /// @param confirm the caption of the button that goes on with the choices
    RecordConflictDialog(const QList<FieldConflict> &conflicts, const QString &explanation,
                         const QString &confirm, QWidget *parent);

    /// The fields with what was chosen.
    const QList<FieldConflict> &conflicts() const { return m_conflicts; }

private:
    QWidget *makeFields();
    void addField(QGridLayout &grid, qsizetype number);
    void chooseAll(bool mine);

    QList<FieldConflict> m_conflicts;
    QList<QButtonGroup *> m_choices;
};

} // namespace Studio
