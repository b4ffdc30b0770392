-- Writes what is in the database as Parquet, below the current folder: facts/dt=DAY/part-N.parquet and tables of applications, volumes and Macs in the same
-- way. A day is a few large files, sorted by kind and machine, and never a file for each Mac: readers skip what they do not ask for.
--   inv export --format csv -o facts.csv today/*.inv
--   duckdb -f duckdb/schema.sql -f views.sql -f duckdb/load.sql -f duckdb/parquet.sql
-- Each thread would write files of its own, of whatever rows it got.
SET threads = 1;
SET preserve_insertion_order = true;

-- What is in a day's folder already is replaced: write each day from a database that has all of that day.
COPY (
  SELECT facts.kind, scans.machine, facts.scan_id, scans.scanned_at::TIMESTAMPTZ AS scanned_at, facts.element, facts.path, facts.name, facts.value,
    facts.number, facts.unit, facts.base_value, substr(scans.scanned_at, 1, 10) AS dt
  FROM facts JOIN scans USING (scan_id)
  WHERE scans.scanned_at <> ''
  ORDER BY dt, facts.kind, scans.machine, facts.scan_id, facts.element
) TO 'facts' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);

COPY (
  SELECT scans.machine, scans.scan_id, scans.scanned_at::TIMESTAMPTZ AS scanned_at, macs.* EXCLUDE (scan_id), substr(scans.scanned_at, 1, 10) AS dt
  FROM macs JOIN scans USING (scan_id)
  WHERE scans.scanned_at <> ''
  ORDER BY dt, scans.machine, scans.scan_id
) TO 'macs' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);

COPY (
  SELECT scans.machine, scans.scan_id, scans.scanned_at::TIMESTAMPTZ AS scanned_at, software.* EXCLUDE (scan_id), substr(scans.scanned_at, 1, 10) AS dt
  FROM software JOIN scans USING (scan_id)
  WHERE scans.scanned_at <> ''
  ORDER BY dt, software.application, scans.machine, scans.scan_id, software.element
) TO 'software' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);

COPY (
  SELECT scans.machine, scans.scan_id, scans.scanned_at::TIMESTAMPTZ AS scanned_at, volumes.* EXCLUDE (scan_id), substr(scans.scanned_at, 1, 10) AS dt
  FROM volumes JOIN scans USING (scan_id)
  WHERE scans.scanned_at <> ''
  ORDER BY dt, scans.machine, scans.scan_id, volumes.element
) TO 'volumes' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);
