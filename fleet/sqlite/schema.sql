-- sqlite3 fleet.db <sqlite/schema.sql; sqlite3 fleet.db <views.sql
CREATE TABLE scans (scan_id TEXT PRIMARY KEY, machine TEXT NOT NULL, scanned_at TEXT NOT NULL);

CREATE TABLE facts (
  kind TEXT NOT NULL, scan_id TEXT NOT NULL, element TEXT NOT NULL, path TEXT NOT NULL, name TEXT NOT NULL, value TEXT NOT NULL,
  number DOUBLE PRECISION, unit TEXT NOT NULL, base_value DOUBLE PRECISION
);
CREATE INDEX facts_by_kind ON facts (kind, scan_id);

-- For question 2: INSERT INTO wanted VALUES ('Safari', '18.1');
CREATE TABLE wanted (application TEXT PRIMARY KEY, version TEXT NOT NULL);

CREATE VIEW clock AS
SELECT strftime('%Y-%m-%dT%H:%M:%SZ', 'now', '-7 days') AS a_week_ago, strftime('%Y-%m-%dT%H:%M:%SZ', 'now', '-30 days') AS a_month_ago;

-- Turns a version into a text that sorts like it: each number has ten digits.
CREATE VIEW version_keys AS
WITH RECURSIVE steps (version, rest, version_key) AS (
  SELECT version, version || '.', ''
  FROM (SELECT value AS version FROM facts WHERE kind = '/Software/Soft/version' UNION SELECT version FROM wanted)
  WHERE version GLOB '[0-9]*' AND version NOT GLOB '*[^0-9.]*' AND version NOT GLOB '*..*' AND version NOT GLOB '*.'
  UNION ALL
  SELECT version, substr(rest, instr(rest, '.') + 1), version_key || '.' || substr('0000000000' || substr(rest, 1, instr(rest, '.') - 1), -10)
  FROM steps WHERE rest <> ''
)
SELECT version, version_key FROM steps WHERE rest = '';
