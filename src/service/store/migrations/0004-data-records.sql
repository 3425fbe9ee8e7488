-- SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
-- SPDX-License-Identifier: GPL-3.0-or-later
--
-- The data records of themes. Each theme has at most one as it was imported (edited = FALSE, under
-- the theme's own account, 0 for every account) and one for each account that has saved it (edited =
-- TRUE, under that account). A saved one is a whole record with fields of its own.
CREATE TABLE data_record (
    account_id BIGINT NOT NULL CHECK (account_id BETWEEN 0 AND 2147483647),
    theme_guid TEXT NOT NULL,
    edited BOOLEAN NOT NULL,
    version BIGINT NOT NULL CHECK (version > 0),
    saved_by TEXT REFERENCES app_user (user_id),
    PRIMARY KEY (account_id, theme_guid, edited)
);

-- The fields of a record in their order. Types and labels are kept as they are, unknown ones and
-- equal ones too.
CREATE TABLE data_record_entry (
    account_id BIGINT NOT NULL,
    theme_guid TEXT NOT NULL,
    edited BOOLEAN NOT NULL,
    pos BIGINT NOT NULL,
    label TEXT NOT NULL,
    type TEXT NOT NULL,
    hidden BOOLEAN NOT NULL,
    ext TEXT NOT NULL,
    source TEXT NOT NULL,
    button_text TEXT NOT NULL,
    width BIGINT NOT NULL CHECK (width BETWEEN -32768 AND 32767),
    height BIGINT NOT NULL CHECK (height BETWEEN -32768 AND 32767),
    value_text TEXT NOT NULL,
    value_guid TEXT NOT NULL,
    value_dependencies TEXT NOT NULL,
    PRIMARY KEY (account_id, theme_guid, edited, pos),
    FOREIGN KEY (account_id, theme_guid, edited)
        REFERENCES data_record (account_id, theme_guid, edited)
);
