-- SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
-- SPDX-License-Identifier: GPL-3.0-or-later
--
-- Polls and surveys of deployments and what was answered. Counts are nowhere stored: they are
-- counted from the rows, in an index, and so are right however many write at once. Questions and
-- answers are numbered from 1 by their places, which stay once there are responses.

CREATE TABLE poll_question (
    account_id BIGINT NOT NULL,
    dep_no BIGINT NOT NULL,
    question_no BIGINT NOT NULL,
    guid TEXT NOT NULL,
    question_text TEXT NOT NULL,
    multiple BOOLEAN NOT NULL,
    PRIMARY KEY (account_id, dep_no, question_no),
    UNIQUE (account_id, dep_no, guid)
);

CREATE TABLE poll_answer (
    account_id BIGINT NOT NULL,
    dep_no BIGINT NOT NULL,
    question_no BIGINT NOT NULL,
    answer_no BIGINT NOT NULL,
    guid TEXT NOT NULL,
    answer_text TEXT NOT NULL,
    PRIMARY KEY (account_id, dep_no, question_no, answer_no)
);

-- arrived puts rows in the order they came in.
CREATE TABLE poll_vote (
    account_id BIGINT NOT NULL,
    dep_no BIGINT NOT NULL,
    vote_id BYTEA NOT NULL,
    question_no BIGINT NOT NULL,
    answer_no BIGINT NOT NULL,
    user_guid TEXT NOT NULL,
    voted_at BIGINT NOT NULL,
    arrived BIGINT NOT NULL,
    PRIMARY KEY (account_id, dep_no, vote_id),
    UNIQUE (account_id, dep_no, question_no, user_guid, answer_no)
);

CREATE INDEX poll_vote_by_arrival ON poll_vote (account_id, dep_no, arrived, vote_id);

CREATE TABLE survey (
    account_id BIGINT NOT NULL,
    dep_no BIGINT NOT NULL,
    survey_no BIGINT NOT NULL,
    guid TEXT NOT NULL,
    name TEXT NOT NULL,
    PRIMARY KEY (account_id, dep_no, survey_no),
    UNIQUE (account_id, dep_no, guid)
);

CREATE TABLE survey_question (
    account_id BIGINT NOT NULL,
    dep_no BIGINT NOT NULL,
    survey_no BIGINT NOT NULL,
    question_no BIGINT NOT NULL,
    guid TEXT NOT NULL,
    question_text TEXT NOT NULL,
    multiple BOOLEAN NOT NULL,
    col_count BIGINT NOT NULL CHECK (col_count BETWEEN 1 AND 32767),
    PRIMARY KEY (account_id, dep_no, survey_no, question_no)
);

CREATE TABLE survey_answer (
    account_id BIGINT NOT NULL,
    dep_no BIGINT NOT NULL,
    survey_no BIGINT NOT NULL,
    question_no BIGINT NOT NULL,
    answer_no BIGINT NOT NULL,
    guid TEXT NOT NULL,
    answer_text TEXT NOT NULL,
    correct BOOLEAN NOT NULL,
    row_no BIGINT NOT NULL CHECK (row_no BETWEEN 1 AND 32767),
    col_no BIGINT NOT NULL CHECK (col_no BETWEEN 1 AND 32767),
    PRIMARY KEY (account_id, dep_no, survey_no, question_no, answer_no)
);

-- One answered question of one respondent. answers holds the numbers of the choices, rising, parted
-- by ":".
CREATE TABLE survey_response (
    account_id BIGINT NOT NULL,
    dep_no BIGINT NOT NULL,
    response_id BYTEA NOT NULL,
    survey_no BIGINT NOT NULL,
    question_no BIGINT NOT NULL,
    user_guid TEXT NOT NULL,
    answers TEXT NOT NULL,
    answered_at BIGINT NOT NULL,
    arrived BIGINT NOT NULL,
    PRIMARY KEY (account_id, dep_no, response_id),
    UNIQUE (account_id, dep_no, survey_no, question_no, user_guid)
);

CREATE INDEX survey_response_by_answers
    ON survey_response (account_id, dep_no, survey_no, question_no, answers);

CREATE INDEX survey_response_by_arrival
    ON survey_response (account_id, dep_no, survey_no, arrived, response_id);
