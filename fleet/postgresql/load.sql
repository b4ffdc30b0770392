-- inv export --format csv -o facts.csv inventories/*.inv; psql fleet -f postgresql/load.sql
-- Scans that are already there are skipped, so the same files may be loaded again.
\set ON_ERROR_STOP on
CREATE TEMP TABLE staging (
  machine text, path text, name text, value text, unit text, base_value text, scan_id text, scanned_at text, section text, kind text, element text,
  number text
);
\copy staging FROM 'facts.csv' WITH (FORMAT csv, HEADER match, NULL '\N')

BEGIN;
CREATE TEMP TABLE arrived AS
SELECT scan_id, min(machine) AS machine, min(scanned_at) AS scanned_at FROM staging
WHERE scan_id NOT IN (SELECT scan_id FROM scans) GROUP BY scan_id;
INSERT INTO facts
SELECT kind, scan_id, element, path, name, value, nullif(number, '')::double precision, unit, nullif(base_value, '')::double precision
FROM staging WHERE scan_id IN (SELECT scan_id FROM arrived);
INSERT INTO scans SELECT scan_id, machine, scanned_at FROM arrived;
COMMIT;
ANALYZE;
