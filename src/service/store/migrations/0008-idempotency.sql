-- SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
-- SPDX-License-Identifier: GPL-3.0-or-later
--
-- The answers of writing calls that carried a key, so that a call which comes again is answered again
-- and not done twice; and the indexes by which long lists are read page by page.

CREATE TABLE idem (
    account_id BIGINT NOT NULL REFERENCES account (account_id),
    user_id TEXT NOT NULL REFERENCES app_user (user_id),
    idem_key TEXT NOT NULL,
    request_hash BYTEA NOT NULL,
    status BIGINT NOT NULL CHECK (status BETWEEN 200 AND 299),
    body BYTEA NOT NULL,
    expires_at BIGINT NOT NULL,
    PRIMARY KEY (account_id, user_id, idem_key)
);

CREATE INDEX idem_by_expiry ON idem (expires_at);

-- Each page begins after the last row of the one before, so an index has to be in exactly the order
-- of the list: NULL first, and with the key of the row.
DROP INDEX project_by_name;
CREATE INDEX project_by_name
    ON project (account_id, type_id, name_key NULLS FIRST, guid NULLS FIRST);

DROP INDEX theme_by_name;
CREATE INDEX theme_by_name ON theme (account_id, name_key NULLS FIRST, guid NULLS FIRST);

DROP INDEX asset_by_name;
CREATE INDEX asset_by_name
    ON asset (account_id, folder_id, name_key NULLS FIRST, guid NULLS FIRST);

-- Read backwards.
DROP INDEX deployment_by_project;
CREATE INDEX deployment_by_project
    ON deployment (account_id, project_guid, published_at NULLS FIRST, guid NULLS FIRST);

-- Holds all that lists and figures need, so that neither has to look into the table.
DROP INDEX page_view_by_time;
CREATE INDEX page_view_by_time
    ON page_view (account_id, dep_no, view_at NULLS FIRST, view_id NULLS FIRST, person_no,
                  time_spent, closed, profile_no);

DROP INDEX question_by_time;
CREATE INDEX question_by_time
    ON question (account_id, dep_no, submitted_at NULLS FIRST, guid NULLS FIRST);

DROP INDEX poll_vote_by_arrival;
CREATE INDEX poll_vote_by_arrival
    ON poll_vote (account_id, dep_no, arrived NULLS FIRST, vote_id NULLS FIRST);

DROP INDEX survey_response_by_arrival;
CREATE INDEX survey_response_by_arrival
    ON survey_response (account_id, dep_no, survey_no, arrived NULLS FIRST,
                        response_id NULLS FIRST);
