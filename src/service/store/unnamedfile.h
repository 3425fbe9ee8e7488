// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/blobstore.h"

namespace Zel {

/// A file in the folder for temporary ones that has no name there, so that nobody else comes upon
/// it and nothing stays of it. This process, and only it, can open it by its path.
class UnnamedFile : public LocalFile
{
public:
    UnnamedFile();
    ~UnnamedFile() override;
    UnnamedFile(const UnnamedFile &) = delete;
    UnnamedFile &operator=(const UnnamedFile &) = delete;

    void append(const QByteArray &bytes);
    QString path() const override;

private:
    int m_handle;
};

} // namespace Zel
