-- psql fleet -f postgresql/schema.sql -f views.sql
CREATE TABLE scans (scan_id text PRIMARY KEY, machine text NOT NULL, scanned_at text NOT NULL);

CREATE TABLE facts (
  kind text NOT NULL, scan_id text NOT NULL, element text NOT NULL, path text NOT NULL, name text NOT NULL, value text NOT NULL,
  number double precision, unit text NOT NULL, base_value double precision
);
CREATE INDEX facts_by_kind ON facts (kind, scan_id);

-- For question 2: INSERT INTO wanted VALUES ('Safari', '18.1');
CREATE TABLE wanted (application text PRIMARY KEY, version text NOT NULL);

CREATE VIEW clock AS
SELECT
  to_char((now() - interval '7 days') AT TIME ZONE 'UTC', 'YYYY-MM-DD"T"HH24:MI:SS"Z"') AS a_week_ago,
  to_char((now() - interval '30 days') AT TIME ZONE 'UTC', 'YYYY-MM-DD"T"HH24:MI:SS"Z"') AS a_month_ago;

-- Turns a version into a text that sorts like it in any language: each number has ten digits.
CREATE VIEW version_keys AS
SELECT version, regexp_replace(replace('.' || version, '.', '.0000000000'), '\.[0-9]*([0-9]{10})', '.\1', 'g') COLLATE "C" AS version_key
FROM (SELECT value AS version FROM facts WHERE kind = '/Software/Soft/version' UNION SELECT version FROM wanted) AS versions
WHERE version ~ '^[0-9]+(\.[0-9]+)*$';
