-- Readable views over the rows of `inv export`, for SQLite, DuckDB, PostgreSQL and ClickHouse alike. What differs between them (tables, the clock,
-- comparing versions) is in the schema.sql of each, which comes first.

-- The last scan of each Mac.
CREATE VIEW latest AS
SELECT scan_id, machine, scanned_at
FROM (
  SELECT scan_id, machine, scanned_at, row_number() OVER (PARTITION BY machine ORDER BY scanned_at DESC, scan_id DESC) AS place
  FROM scans
) AS ranked
WHERE place = 1;

-- The last scan of each Mac that is a week old or older.
CREATE VIEW week_ago AS
SELECT scan_id, machine, scanned_at
FROM (
  SELECT scan_id, machine, scanned_at, row_number() OVER (PARTITION BY machine ORDER BY scanned_at DESC, scan_id DESC) AS place
  FROM scans
  WHERE scanned_at <= (SELECT max(a_week_ago) FROM clock)
) AS ranked
WHERE place = 1;

-- A row for each scan. What only an extended scan has is NULL in others.
CREATE VIEW macs AS
SELECT
  scan_id,
  max(CASE WHEN kind = 'AssetInfo/alias' THEN value END) AS mac,
  max(CASE WHEN kind = '/System/Chassis/serial' THEN value END) AS serial,
  max(CASE WHEN kind = '/System/Computer-system/uuid' THEN value END) AS uuid,
  max(CASE WHEN kind = '/System/Computer-system/model' THEN value END) AS model,
  coalesce(
    max(CASE WHEN kind = '/Platform/system-name' THEN value END) || ' ' || max(CASE WHEN kind = '/Platform/system-version' THEN value END),
    max(CASE WHEN kind = '/OS/os/name' THEN value END)) AS release_name,
  max(CASE WHEN kind = '/Memory/General-info/physical-memory' THEN number END) AS memory_mb,
  max(CASE WHEN kind = '/Platform/memory-upgradeable' THEN value END) AS memory_upgradeable,
  max(CASE WHEN kind = '/Security/Platform/filevault' THEN value END) AS filevault
FROM facts
WHERE kind IN (
  'AssetInfo/alias', '/System/Chassis/serial', '/System/Computer-system/uuid', '/System/Computer-system/model', '/Platform/system-name',
  '/Platform/system-version', '/OS/os/name', '/Memory/General-info/physical-memory', '/Platform/memory-upgradeable', '/Security/Platform/filevault')
GROUP BY scan_id;

CREATE VIEW software AS
SELECT
  scan_id,
  element,
  max(CASE WHEN kind = '/Software/Soft' THEN value END) AS application,
  max(CASE WHEN kind = '/Software/Soft/version' THEN value END) AS version,
  max(CASE WHEN kind = '/Software/Soft/location' THEN value END) AS location,
  max(CASE WHEN kind = '/Software-details/Soft/source' THEN value END) AS source,
  max(CASE WHEN kind = '/Software-details/Soft/signed-by' THEN value END) AS signed_by
FROM facts
WHERE kind IN (
  '/Software/Soft', '/Software/Soft/version', '/Software/Soft/location', '/Software-details/Soft/source', '/Software-details/Soft/signed-by')
GROUP BY scan_id, element;

CREATE VIEW volumes AS
SELECT
  scan_id,
  element,
  max(CASE WHEN kind = '/Storage/Logical-disks/partition' THEN value END) AS volume,
  max(CASE WHEN kind = '/Storage/Logical-disks/partition/mount-point' THEN value END) AS mount_point,
  max(CASE WHEN kind = '/Storage/Logical-disks/partition/used%' THEN number END) AS used_percent
FROM facts
WHERE kind IN ('/Storage/Logical-disks/partition', '/Storage/Logical-disks/partition/mount-point', '/Storage/Logical-disks/partition/used%')
GROUP BY scan_id, element;

CREATE VIEW memory AS
SELECT scan_id, count(*) AS slots, sum(CASE WHEN value = '0' THEN 1 ELSE 0 END) AS free_slots
FROM facts
WHERE kind = '/Memory/Memory-slot/used'
GROUP BY scan_id;

CREATE VIEW displays AS
SELECT
  scan_id,
  element,
  max(CASE WHEN kind = '/Video/Monitors/Monitor' THEN value END) AS display,
  max(CASE WHEN kind = '/Video/Monitors/Monitor/model' THEN value END) AS model
FROM facts
WHERE kind IN ('/Video/Monitors/Monitor', '/Video/Monitors/Monitor/model')
GROUP BY scan_id, element;

CREATE VIEW accounts AS
SELECT
  scan_id,
  element,
  max(CASE WHEN kind = '/User-accounts/usr-acc' THEN value END) AS account,
  max(CASE WHEN kind = '/User-accounts/usr-acc/fullname' THEN value END) AS full_name,
  max(CASE WHEN kind = '/User-accounts/usr-acc/id' THEN value END) AS user_id,
  max(CASE WHEN kind = '/User-accounts/usr-acc/group' THEN value END) AS group_id
FROM facts
WHERE kind IN ('/User-accounts/usr-acc', '/User-accounts/usr-acc/fullname', '/User-accounts/usr-acc/id', '/User-accounts/usr-acc/group')
GROUP BY scan_id, element;
