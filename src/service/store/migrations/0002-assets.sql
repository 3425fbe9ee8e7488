-- SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
-- SPDX-License-Identifier: GPL-3.0-or-later
--
-- Folders of assets, who may do what in them, assets and their files, and uploads under way. The
-- root is folder 0 of every account and has no row. The bytes of files lie outside of the database
-- under their SHA-256 (hexadecimal); a row here is written only when they are there.

-- The next number of a folder, so that the number of a deleted one is not given out again.
CREATE TABLE asset_space (
    account_id BIGINT NOT NULL PRIMARY KEY REFERENCES account (account_id),
    next_folder BIGINT NOT NULL
);

CREATE TABLE asset_folder (
    account_id BIGINT NOT NULL REFERENCES account (account_id),
    folder_id BIGINT NOT NULL CHECK (folder_id BETWEEN 1 AND 32767),
    parent_id BIGINT NOT NULL CHECK (parent_id BETWEEN 0 AND 32767),
    name TEXT NOT NULL,
    PRIMARY KEY (account_id, folder_id)
);

-- What a member may do in a folder and, where nothing else is said, below it: R, W, D.
CREATE TABLE folder_perm (
    account_id BIGINT NOT NULL,
    folder_id BIGINT NOT NULL,
    user_id TEXT NOT NULL,
    letters TEXT NOT NULL,
    PRIMARY KEY (account_id, folder_id, user_id),
    FOREIGN KEY (account_id, user_id) REFERENCES membership (account_id, user_id)
);

CREATE TABLE blob (
    account_id BIGINT NOT NULL REFERENCES account (account_id),
    sha TEXT NOT NULL,
    size BIGINT NOT NULL,
    mime TEXT NOT NULL,
    thumbnail BOOLEAN NOT NULL,
    PRIMARY KEY (account_id, sha)
);

-- A deleted asset keeps its row and its bytes until the trash is purged.
CREATE TABLE asset (
    account_id BIGINT NOT NULL,
    guid TEXT NOT NULL,
    folder_id BIGINT NOT NULL,
    name TEXT NOT NULL,
    name_key TEXT NOT NULL,
    detail TEXT NOT NULL,
    asset_type TEXT NOT NULL,
    created_at BIGINT NOT NULL,
    created_by TEXT NOT NULL REFERENCES app_user (user_id),
    deleted_at BIGINT,
    PRIMARY KEY (account_id, guid)
);

CREATE INDEX asset_by_name ON asset (account_id, folder_id, name_key, guid);

CREATE TABLE asset_file (
    account_id BIGINT NOT NULL,
    guid TEXT NOT NULL,
    pos BIGINT NOT NULL,
    name TEXT NOT NULL,
    ext TEXT NOT NULL,
    sha TEXT NOT NULL,
    PRIMARY KEY (account_id, guid, pos),
    FOREIGN KEY (account_id, guid) REFERENCES asset (account_id, guid),
    FOREIGN KEY (account_id, sha) REFERENCES blob (account_id, sha)
);

CREATE INDEX asset_file_by_blob ON asset_file (account_id, sha);

-- guid is set when the upload has become an asset, so that its end can be asked for again.
CREATE TABLE upload (
    account_id BIGINT NOT NULL,
    upload_id TEXT NOT NULL,
    user_id TEXT NOT NULL REFERENCES app_user (user_id),
    folder_id BIGINT NOT NULL,
    name TEXT NOT NULL,
    detail TEXT NOT NULL,
    expires_at BIGINT NOT NULL,
    guid TEXT,
    PRIMARY KEY (account_id, upload_id)
);

CREATE INDEX upload_by_expiry ON upload (account_id, expires_at);

CREATE TABLE upload_file (
    account_id BIGINT NOT NULL,
    upload_id TEXT NOT NULL,
    pos BIGINT NOT NULL,
    name TEXT NOT NULL,
    size BIGINT NOT NULL,
    PRIMARY KEY (account_id, upload_id, pos),
    FOREIGN KEY (account_id, upload_id) REFERENCES upload (account_id, upload_id)
);
