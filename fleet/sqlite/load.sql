-- inv export --format csv -o facts.csv inventories/*.inv; sqlite3 fleet.db <sqlite/load.sql
-- Scans that are already there are skipped, so the same files may be loaded again.
.bail on
DROP TABLE IF EXISTS staging;
.import --csv facts.csv staging
BEGIN;
CREATE TEMP TABLE arrived AS
SELECT scan_id, min(machine) AS machine, min(scanned_at) AS scanned_at FROM staging
WHERE scan_id NOT IN (SELECT scan_id FROM scans) GROUP BY scan_id;
INSERT INTO facts
SELECT kind, scan_id, element, path, name, value, nullif(number, ''), unit, nullif(base_value, '')
FROM staging WHERE scan_id IN (SELECT scan_id FROM arrived);
INSERT INTO scans SELECT scan_id, machine, scanned_at FROM arrived;
DROP TABLE staging;
COMMIT;
