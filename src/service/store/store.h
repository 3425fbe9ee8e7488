// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/accounts.h"
#include "service/store/assetfolders.h"
#include "service/store/assets.h"
#include "service/store/audience.h"
#include "service/store/blobkind.h"
#include "service/store/clock.h"
#include "service/store/database.h"
#include "service/store/datarecords.h"
#include "service/store/deployments.h"
#include "service/store/passwordhasher.h"
#include "service/store/polls.h"
#include "service/store/projects.h"
#include "service/store/questions.h"
#include "service/store/repeats.h"
#include "service/store/serverkeys.h"
#include "service/store/sessions.h"
#include "service/store/signinthrottle.h"
#include "service/store/statistics.h"
#include "service/store/surveys.h"
#include "service/store/themes.h"
#include "service/store/thumbnails.h"
#include "service/store/uploads.h"
#include "service/store/users.h"

#include <memory>

namespace Zel {

/// Everything the daemon works on, over one database that has been migrated. Used by many threads
/// at once.
class ZEL_EXPORT Store
{
public:
    /// @param place where the bytes of files lie; the folder empty for `defaultFilesFolder`
    /// @param thumbnailMaker what decodes the pictures that people upload
    explicit Store(Database &database,
                   PasswordHasher::Cost cost = PasswordHasher::Cost::Interactive,
                   const Clock &clock = systemClock(), const BlobPlace &place = BlobPlace(),
                   const ThumbnailMaker &thumbnailMaker = Thumbnails::decodeFile);

    /// Where the files of a database lie unless another folder is named: beside a SQLite file,
    /// else among the person's own data.
    static QString defaultFilesFolder(const DatabaseAddress &address);

private:
    std::unique_ptr<BlobStore> m_blobs;

public:
    Database &database;
    Clock clock;
    PasswordHasher hasher;
    ServerKeys keys;
    Users users;
    Sessions sessions;
    SignInThrottle throttle;
    Accounts accounts;
    Repeats repeats;
    BlobStore &blobs;
    Themes themes;
    DataRecords dataRecords;
    Projects projects;
    Deployments deployments;
    Audience audience;
    Statistics statistics;
    Questions questions;
    Polls polls;
    Surveys surveys;
    Thumbnails thumbnails;
    AssetFolders folders;
    Assets assets;
    Uploads uploads;
};

} // namespace Zel
