// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace Studio {

/// Names the file of certificate authorities that is trusted besides those of the system, for
/// services whose certificate a company has issued itself, and lets a person choose or drop it.
/// Only a file that holds certificates is taken.
class TrustedFile : public QWidget
{
    Q_OBJECT

public:
    explicit TrustedFile(QWidget *parent = nullptr);

    /// Empty for none.
    QString file() const { return m_file; }

    /// Does not say `changed`.
    void setFile(const QString &path);

signals:
    /// A person chose a file, or dropped it.
    void changed(const QString &path);
    /// What was chosen cannot be used; a sentence for people.
    void refused(const QString &why);

private:
    void press();
    void choose();

    QString m_file;
    QLabel *m_name;
    QPushButton *m_button;
};

} // namespace Studio
