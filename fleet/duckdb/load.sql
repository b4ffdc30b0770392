-- inv export --format csv -o facts.csv inventories/*.inv; duckdb fleet.duckdb -f duckdb/load.sql
-- Scans that are already there are skipped, so the same files may be loaded again.
CREATE OR REPLACE TEMP TABLE staging AS
SELECT * FROM read_csv('facts.csv', header = true, all_varchar = true, delim = ',', quote = '"', escape = '"', nullstr = '');

CREATE OR REPLACE TEMP TABLE arrived AS
SELECT scan_id, min(machine) AS machine, coalesce(min(scanned_at), '') AS scanned_at FROM staging
WHERE scan_id NOT IN (SELECT scan_id FROM scans) GROUP BY scan_id;

BEGIN;
INSERT INTO facts
SELECT kind, scan_id, coalesce(element, ''), path, name, coalesce(value, ''), number::DOUBLE, coalesce(unit, ''), base_value::DOUBLE
FROM staging WHERE scan_id IN (SELECT scan_id FROM arrived)
ORDER BY kind, scan_id;
INSERT INTO scans SELECT scan_id, machine, scanned_at FROM arrived;
COMMIT;
DROP TABLE staging;
