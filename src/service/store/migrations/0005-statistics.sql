-- SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
-- SPDX-License-Identifier: GPL-3.0-or-later
--
-- What happened in deployments (published events). Rows of an audience name their deployment and
-- their person by numbers, because there are millions of them. They have no foreign keys: they are
-- written only together with what they refer to, and nothing of it is ever deleted.

-- files_hash is that of the folder that was taken in last, so that the same one need not be read
-- again.
CREATE TABLE deployment (
    account_id BIGINT NOT NULL,
    guid TEXT NOT NULL,
    dep_no BIGINT NOT NULL,
    project_guid TEXT NOT NULL,
    name TEXT NOT NULL,
    published_at BIGINT NOT NULL,
    key_hash BYTEA,
    files_hash BYTEA,
    PRIMARY KEY (account_id, guid),
    UNIQUE (account_id, dep_no),
    FOREIGN KEY (account_id, project_guid) REFERENCES project (account_id, guid)
);

CREATE INDEX deployment_by_project ON deployment (account_id, project_guid, published_at, guid);

CREATE INDEX deployment_by_key ON deployment (key_hash);

-- Whoever viewed, registered or asked. person_no is made from user_id.
CREATE TABLE audience_person (
    account_id BIGINT NOT NULL,
    dep_no BIGINT NOT NULL,
    person_no BIGINT NOT NULL,
    user_id TEXT NOT NULL,
    PRIMARY KEY (account_id, dep_no, person_no)
);

CREATE TABLE registrant (
    account_id BIGINT NOT NULL,
    dep_no BIGINT NOT NULL,
    person_no BIGINT NOT NULL,
    registration_id BYTEA NOT NULL,
    first_name TEXT NOT NULL,
    last_name TEXT NOT NULL,
    email TEXT NOT NULL,
    registered_at BIGINT NOT NULL,
    PRIMARY KEY (account_id, dep_no, person_no),
    UNIQUE (account_id, dep_no, registration_id)
);

-- The browsers that views came from. profile_no is made from the three texts.
CREATE TABLE view_profile (
    account_id BIGINT NOT NULL,
    dep_no BIGINT NOT NULL,
    profile_no BIGINT NOT NULL,
    browser_type TEXT NOT NULL,
    js_version TEXT NOT NULL,
    screen_depth TEXT NOT NULL,
    PRIMARY KEY (account_id, dep_no, profile_no)
);

CREATE TABLE page_view (
    account_id BIGINT NOT NULL,
    dep_no BIGINT NOT NULL,
    view_id BYTEA NOT NULL,
    person_no BIGINT NOT NULL,
    view_at BIGINT NOT NULL,
    time_spent BIGINT NOT NULL CHECK (time_spent BETWEEN 0 AND 2147483647),
    closed BOOLEAN NOT NULL,
    profile_no BIGINT NOT NULL,
    PRIMARY KEY (account_id, dep_no, view_id)
);

-- Holds all that lists and figures need, so that neither has to look into the table.
CREATE INDEX page_view_by_time
    ON page_view (account_id, dep_no, view_at, person_no, time_spent, closed, profile_no);

-- The views of each person and browser in each hour of UTC, added up. Written with the views and
-- always equal to their sum. A figure takes whole hours from here and counts views only in what is
-- left at both ends of its range. A row belongs to one person, so that many writers do not meet.
CREATE TABLE view_tally (
    account_id BIGINT NOT NULL,
    dep_no BIGINT NOT NULL,
    hour_no BIGINT NOT NULL,
    person_no BIGINT NOT NULL,
    profile_no BIGINT NOT NULL,
    hits BIGINT NOT NULL,
    seconds BIGINT NOT NULL,
    first_at BIGINT NOT NULL,
    last_at BIGINT NOT NULL,
    PRIMARY KEY (account_id, dep_no, hour_no, person_no, profile_no)
);

-- Texts are XML-escaped, once.
CREATE TABLE question (
    account_id BIGINT NOT NULL,
    guid TEXT NOT NULL,
    dep_no BIGINT NOT NULL,
    person_no BIGINT NOT NULL,
    status TEXT NOT NULL,
    question_text TEXT NOT NULL,
    answer_text TEXT NOT NULL,
    submitted_at BIGINT,
    answered_at BIGINT,
    PRIMARY KEY (account_id, guid)
);

CREATE INDEX question_by_time ON question (account_id, dep_no, submitted_at, guid);
