-- SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
-- SPDX-License-Identifier: GPL-3.0-or-later
--
-- The bytes of files where they are kept in the database. A content is a sequence of chunks. It
-- belongs to a part of an upload (part_id) until it becomes a blob (sha), which moves no bytes; with
-- neither it is to be cleared away. The account 0, which every account sees, has no row elsewhere.

-- Choices that hold for the whole database.
CREATE TABLE service_setting (
    name TEXT NOT NULL PRIMARY KEY,
    value TEXT NOT NULL
);

CREATE TABLE blob_content (
    account_id BIGINT NOT NULL,
    content_id TEXT NOT NULL,
    part_id TEXT,
    sha TEXT,
    size BIGINT,
    made_at BIGINT NOT NULL,
    PRIMARY KEY (account_id, content_id),
    UNIQUE (account_id, part_id),
    UNIQUE (account_id, sha)
);

-- A chunk begins where the one before it ends. Of two writers that go on at the same place the
-- key lets one through.
CREATE TABLE blob_chunk (
    account_id BIGINT NOT NULL,
    content_id TEXT NOT NULL,
    first_byte BIGINT NOT NULL,
    size BIGINT NOT NULL,
    bytes BYTEA NOT NULL,
    PRIMARY KEY (account_id, content_id, first_byte)
);

CREATE TABLE blob_thumbnail (
    account_id BIGINT NOT NULL,
    content_id TEXT NOT NULL,
    edge BIGINT NOT NULL,
    bytes BYTEA NOT NULL,
    PRIMARY KEY (account_id, content_id, edge)
);
