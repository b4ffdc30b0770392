-- inv export --format csv -o facts.csv inventories/*.inv; clickhouse-local --path fleet --queries-file clickhouse/load.sql
-- Scans that are already there are skipped, so the same files may be loaded again.
CREATE TEMPORARY TABLE staging (
  machine String, path String, name String, value String, unit String, base_value String, scan_id String, scanned_at String, section String, kind String,
  element String, number String
);
INSERT INTO staging SELECT * FROM file('facts.csv', 'CSVWithNames');

INSERT INTO facts
SELECT kind, scan_id, element, path, name, value, toFloat64OrNull(number), unit, toFloat64OrNull(base_value)
FROM staging WHERE scan_id NOT IN (SELECT scan_id FROM scans);
INSERT INTO scans SELECT scan_id, min(machine), min(scanned_at) FROM staging WHERE scan_id NOT IN (SELECT scan_id FROM scans) GROUP BY scan_id;
DROP TABLE staging;
