-- SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
-- SPDX-License-Identifier: GPL-3.0-or-later
--
-- People, accounts, sessions and projects. Keys of tables that belong to an account begin with
-- account_id. Times are milliseconds UTC; NULL is "not set". name_key is the name folded for order.

CREATE TABLE schema_version (
    version BIGINT NOT NULL PRIMARY KEY,
    applied_at BIGINT NOT NULL
);

-- Secrets that all daemons of one database share, by purpose.
CREATE TABLE server_key (
    kid TEXT NOT NULL PRIMARY KEY,
    secret BYTEA NOT NULL,
    created_at BIGINT NOT NULL
);

CREATE TABLE app_user (
    user_id TEXT NOT NULL PRIMARY KEY,
    login TEXT NOT NULL,
    login_key TEXT NOT NULL UNIQUE,
    display_name TEXT NOT NULL,
    pw_hash TEXT NOT NULL,
    disabled BOOLEAN NOT NULL,
    created_at BIGINT NOT NULL
);

CREATE TABLE account (
    account_id BIGINT NOT NULL PRIMARY KEY CHECK (account_id BETWEEN 1 AND 2147483647),
    name TEXT NOT NULL,
    name_key TEXT NOT NULL
);

CREATE TABLE membership (
    account_id BIGINT NOT NULL REFERENCES account (account_id),
    user_id TEXT NOT NULL REFERENCES app_user (user_id),
    role TEXT NOT NULL CHECK (role IN ('owner', 'author', 'viewer')),
    PRIMARY KEY (account_id, user_id)
);

CREATE INDEX membership_by_user ON membership (user_id, account_id);

-- A session is found by the keyed hash of its token; the token itself is nowhere.
CREATE TABLE session (
    token_hash BYTEA NOT NULL PRIMARY KEY,
    user_id TEXT NOT NULL REFERENCES app_user (user_id),
    account_id BIGINT REFERENCES account (account_id),
    app_name TEXT NOT NULL,
    created_at BIGINT NOT NULL,
    seen_at BIGINT NOT NULL,
    expires_at BIGINT NOT NULL
);

CREATE INDEX session_by_expiry ON session (expires_at);

-- Failed sign-ins by the keyed hash of user name and address.
CREATE TABLE sign_in_attempt (
    bucket BYTEA NOT NULL PRIMARY KEY,
    failures BIGINT NOT NULL,
    last_at BIGINT NOT NULL,
    blocked_until BIGINT NOT NULL
);

CREATE INDEX sign_in_attempt_by_time ON sign_in_attempt (last_at);

CREATE TABLE project_type (
    account_id BIGINT NOT NULL REFERENCES account (account_id),
    type_id TEXT NOT NULL,
    name TEXT NOT NULL,
    position BIGINT NOT NULL,
    PRIMARY KEY (account_id, type_id)
);

CREATE TABLE project (
    account_id BIGINT NOT NULL,
    guid TEXT NOT NULL,
    type_id TEXT NOT NULL,
    name TEXT NOT NULL,
    name_key TEXT NOT NULL,
    description TEXT NOT NULL,
    created_at BIGINT,
    modified_at BIGINT,
    created_by TEXT NOT NULL REFERENCES app_user (user_id),
    event_at BIGINT,
    published BOOLEAN NOT NULL,
    PRIMARY KEY (account_id, guid),
    FOREIGN KEY (account_id, type_id) REFERENCES project_type (account_id, type_id)
);

CREATE INDEX project_by_name ON project (account_id, type_id, name_key, guid);
