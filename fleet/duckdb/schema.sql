-- duckdb fleet.duckdb -f duckdb/schema.sql -f views.sql
CREATE TABLE scans (scan_id VARCHAR PRIMARY KEY, machine VARCHAR NOT NULL, scanned_at VARCHAR NOT NULL);

CREATE TABLE facts (
  kind VARCHAR NOT NULL, scan_id VARCHAR NOT NULL, element VARCHAR NOT NULL, path VARCHAR NOT NULL, name VARCHAR NOT NULL, value VARCHAR NOT NULL,
  number DOUBLE, unit VARCHAR NOT NULL, base_value DOUBLE
);

-- For question 2: INSERT INTO wanted VALUES ('Safari', '18.1');
CREATE TABLE wanted (application VARCHAR PRIMARY KEY, version VARCHAR NOT NULL);

CREATE VIEW clock AS
SELECT
  strftime((now() - INTERVAL 7 DAY) AT TIME ZONE 'UTC', '%Y-%m-%dT%H:%M:%SZ') AS a_week_ago,
  strftime((now() - INTERVAL 30 DAY) AT TIME ZONE 'UTC', '%Y-%m-%dT%H:%M:%SZ') AS a_month_ago;

-- Turns a version into a text that sorts like it: each number has ten digits.
CREATE VIEW version_keys AS
SELECT version, regexp_replace(replace('.' || version, '.', '.0000000000'), '\.[0-9]*([0-9]{10})', '.\1', 'g') AS version_key
FROM (SELECT value AS version FROM facts WHERE kind = '/Software/Soft/version' UNION SELECT version FROM wanted) AS versions
WHERE regexp_matches(version, '^[0-9]+(\.[0-9]+)*$');
