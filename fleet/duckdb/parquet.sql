-- Writes the database as Parquet, below the current folder: facts/dt=DAY/part-N.parquet and the typed tables in the same way. A day is a few large
-- files, sorted by kind and machine, never a file for each Mac: readers skip what they do not need.
--   duckdb -f duckdb/schema.sql -f duckdb/tables.sql -f duckdb/load.sql -f duckdb/load-tables.sql -f duckdb/parquet.sql
-- If a database has several days, DuckDB may write the first rows of a day, fewer than 2048, after its others.
-- Several threads would each write separate files, with arbitrary rows.
SET threads = 1;
SET preserve_insertion_order = true;

-- A day's existing files are replaced: write each day from a database with all of that day.
COPY (
  SELECT facts.kind, scans.machine, facts.scan_id, scans.scanned_at::TIMESTAMPTZ AS scanned_at, facts.element, facts.path, facts.name, facts.value,
    facts.number, facts.unit, facts.base_value, substr(scans.scanned_at, 1, 10) AS dt
  FROM facts JOIN scans USING (scan_id)
  WHERE scans.scanned_at <> ''
  ORDER BY dt, facts.kind, scans.machine, facts.scan_id, facts.element
) TO 'facts' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);

COPY (
  SELECT *, strftime(scanned_at AT TIME ZONE 'UTC', '%Y-%m-%d') AS dt FROM typed.machines WHERE scanned_at IS NOT NULL ORDER BY dt, machine, scan_id, path
) TO 'machines' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);
COPY (
  SELECT *, strftime(scanned_at AT TIME ZONE 'UTC', '%Y-%m-%d') AS dt FROM typed.software WHERE scanned_at IS NOT NULL ORDER BY dt, name, machine, scan_id, path
) TO 'software' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);
COPY (
  SELECT *, strftime(scanned_at AT TIME ZONE 'UTC', '%Y-%m-%d') AS dt FROM typed.disks WHERE scanned_at IS NOT NULL ORDER BY dt, machine, scan_id, path
) TO 'disks' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);
COPY (
  SELECT *, strftime(scanned_at AT TIME ZONE 'UTC', '%Y-%m-%d') AS dt FROM typed.volumes WHERE scanned_at IS NOT NULL ORDER BY dt, machine, scan_id, path
) TO 'volumes' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);
COPY (
  SELECT *, strftime(scanned_at AT TIME ZONE 'UTC', '%Y-%m-%d') AS dt FROM typed.memory WHERE scanned_at IS NOT NULL ORDER BY dt, machine, scan_id, path
) TO 'memory' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);
COPY (
  SELECT *, strftime(scanned_at AT TIME ZONE 'UTC', '%Y-%m-%d') AS dt FROM typed.displays WHERE scanned_at IS NOT NULL ORDER BY dt, machine, scan_id, path
) TO 'displays' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);
COPY (
  SELECT *, strftime(scanned_at AT TIME ZONE 'UTC', '%Y-%m-%d') AS dt FROM typed.adapters WHERE scanned_at IS NOT NULL ORDER BY dt, machine, scan_id, path
) TO 'adapters' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);
COPY (
  SELECT *, strftime(scanned_at AT TIME ZONE 'UTC', '%Y-%m-%d') AS dt FROM typed.accounts WHERE scanned_at IS NOT NULL ORDER BY dt, machine, scan_id, path
) TO 'accounts' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);
COPY (
  SELECT *, strftime(scanned_at AT TIME ZONE 'UTC', '%Y-%m-%d') AS dt FROM typed.processes WHERE scanned_at IS NOT NULL ORDER BY dt, name, machine, scan_id, path
) TO 'processes' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);
COPY (
  SELECT *, strftime(scanned_at AT TIME ZONE 'UTC', '%Y-%m-%d') AS dt FROM typed.packages WHERE scanned_at IS NOT NULL ORDER BY dt, name, machine, scan_id, path
) TO 'packages' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);
COPY (
  SELECT *, strftime(scanned_at AT TIME ZONE 'UTC', '%Y-%m-%d') AS dt FROM typed.security WHERE scanned_at IS NOT NULL ORDER BY dt, machine, scan_id, path
) TO 'security' (FORMAT parquet, COMPRESSION zstd, PARTITION_BY (dt), FILENAME_PATTERN 'part-{i}', OVERWRITE_OR_IGNORE);
