// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>
#include <QString>

namespace Zel {

/// A file that is there whole or not at all: it is written as PATH.part, for its owner alone, and
/// gets its name when everything is on the disk. What a killed program left under the other name is
/// written over. Functions throw `CopyError`.
class ZEL_EXPORT OutputFile
{
public:
    enum class Existing
    {
        Refuse,
        Replace
    };

    OutputFile(const QString &path, Existing existing);
    /// Removes the part unless it was committed.
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    int handle() const { return m_handle; }

    /// Writes out to the disk and gives the file its name. It may have come into being meanwhile:
    /// then it is refused again, unless it is to be replaced.
    void commit();

private:
    [[noreturn]] void fail(const QString &doing, int systemError) const;
    void refuseExisting() const;
    void openPart();
    bool isAtItsPath() const;
    bool nameUnlessThere() const;

    QString m_path;
    Existing m_existing;
    QByteArray m_name;
    QByteArray m_part;
    int m_handle = -1;
};

} // namespace Zel
