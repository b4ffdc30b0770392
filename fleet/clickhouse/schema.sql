-- clickhouse-local --path fleet --multiquery --queries-file clickhouse/schema.sql --queries-file views.sql
CREATE TABLE scans (scan_id String, machine String, scanned_at String) ENGINE = MergeTree ORDER BY (machine, scanned_at);

CREATE TABLE facts (
  kind LowCardinality(String), scan_id String, element String, path String, name LowCardinality(String), value String,
  number Nullable(Float64), unit LowCardinality(String), base_value Nullable(Float64)
) ENGINE = MergeTree ORDER BY (kind, scan_id);

-- For question 2: INSERT INTO wanted VALUES ('Safari', '18.1');
CREATE TABLE wanted (application String, version String) ENGINE = MergeTree ORDER BY application;

CREATE VIEW clock AS
SELECT
  formatDateTime(now('UTC') - INTERVAL 7 DAY, '%Y-%m-%dT%H:%i:%SZ') AS a_week_ago,
  formatDateTime(now('UTC') - INTERVAL 30 DAY, '%Y-%m-%dT%H:%i:%SZ') AS a_month_ago;

-- Turns a version into a text that sorts like it: each number has ten digits.
CREATE VIEW version_keys AS
SELECT version, replaceRegexpAll(replaceAll('.' || version, '.', '.0000000000'), '\\.[0-9]*([0-9]{10})', '.\\1') AS version_key
FROM (SELECT value AS version FROM facts WHERE kind = '/Software/Soft/version' UNION DISTINCT SELECT version FROM wanted) AS versions
WHERE match(version, '^[0-9]+(\\.[0-9]+)*$');
