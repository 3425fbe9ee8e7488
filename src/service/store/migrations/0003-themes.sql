-- SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
-- SPDX-License-Identifier: GPL-3.0-or-later
--
-- Themes, the templates they use, and the theme a project was made from. Account 0 stands for "every
-- account" and has no row in the table account, so nothing here refers to that table.

-- Preview pictures of themes; their bytes lie among the blobs, under their SHA-256 (hexadecimal).
CREATE TABLE theme_preview (
    account_id BIGINT NOT NULL CHECK (account_id BETWEEN 0 AND 2147483647),
    sha TEXT NOT NULL,
    size BIGINT NOT NULL,
    mime TEXT NOT NULL,
    PRIMARY KEY (account_id, sha)
);

-- A theme with an owner is shown to that person only. The definition is an XML document, kept as it
-- came, well-formed or not; an empty one means "none yet".
CREATE TABLE theme (
    account_id BIGINT NOT NULL CHECK (account_id BETWEEN 0 AND 2147483647),
    guid TEXT NOT NULL,
    owner_user TEXT REFERENCES app_user (user_id),
    name TEXT NOT NULL,
    name_key TEXT NOT NULL,
    description TEXT NOT NULL,
    width BIGINT NOT NULL CHECK (width BETWEEN 0 AND 2147483647),
    height BIGINT NOT NULL CHECK (height BETWEEN 0 AND 2147483647),
    created_at BIGINT NOT NULL,
    modified_at BIGINT NOT NULL,
    definition TEXT NOT NULL,
    preview_sha TEXT,
    PRIMARY KEY (account_id, guid),
    FOREIGN KEY (account_id, preview_sha) REFERENCES theme_preview (account_id, sha),
    CHECK (account_id > 0 OR owner_user IS NULL)
);

CREATE INDEX theme_by_name ON theme (account_id, name_key, guid);
CREATE INDEX theme_by_preview ON theme (account_id, preview_sha);

CREATE TABLE template (
    account_id BIGINT NOT NULL CHECK (account_id BETWEEN 0 AND 2147483647),
    template_key TEXT NOT NULL,
    version_key TEXT NOT NULL,
    name TEXT NOT NULL,
    description TEXT NOT NULL,
    PRIMARY KEY (account_id, template_key, version_key)
);

-- The templates of a theme in their order. They are found by their two keys, in the account first,
-- then among those of every account.
CREATE TABLE theme_template (
    account_id BIGINT NOT NULL,
    theme_guid TEXT NOT NULL,
    pos BIGINT NOT NULL,
    template_key TEXT NOT NULL,
    version_key TEXT NOT NULL,
    required BOOLEAN NOT NULL,
    PRIMARY KEY (account_id, theme_guid, pos),
    FOREIGN KEY (account_id, theme_guid) REFERENCES theme (account_id, guid)
);

-- The theme of the account, or of every account, that a project was made from.
ALTER TABLE project ADD COLUMN
    theme_guid TEXT;
