-- The database that `inv load` fills. Raise user_version with every change that a query could notice.

CREATE TABLE IF NOT EXISTS machines (
  id INTEGER PRIMARY KEY,
  machine TEXT NOT NULL,    -- what tells it from others: serial number, UUID, hardware address or name
  timestamp TEXT NOT NULL,  -- of the scan, as the file has it: 20120118153045.000000+120
  name TEXT NOT NULL,       -- what people call it
  scanned TEXT NOT NULL,    -- the timestamp for people: 2012-01-18 15:30:45 +02:00
  file TEXT NOT NULL,       -- where the scan was loaded from
  signed_by TEXT NOT NULL,  -- who signed the file; empty when no signature was asked for
  UNIQUE (machine, timestamp)
);

CREATE TABLE IF NOT EXISTS facts (
  machine_id INTEGER NOT NULL REFERENCES machines (id) ON DELETE CASCADE,
  position INTEGER NOT NULL,  -- in the file, from 1
  path TEXT NOT NULL,         -- /Software/Soft:1/version
  element TEXT NOT NULL,      -- of the element it belongs to: /Software/Soft:1; the path itself for its own value
  name TEXT NOT NULL,
  value TEXT NOT NULL,
  unit TEXT NOT NULL,
  base_value TEXT NOT NULL,   -- the exact value behind a rounded one: bytes
  PRIMARY KEY (machine_id, position)
) WITHOUT ROWID;

CREATE INDEX IF NOT EXISTS facts_by_path ON facts (path, machine_id);

-- Each view has a row for each element of each scan. A machine that was scanned twice is there twice.

CREATE VIEW IF NOT EXISTS latest AS
SELECT * FROM machines m
WHERE timestamp = (SELECT max(timestamp) FROM machines WHERE machine = m.machine);

CREATE VIEW IF NOT EXISTS software AS
SELECT m.machine, m.name AS machine_name, m.timestamp,
  max(CASE WHEN f.path = f.element THEN f.value END) AS name,
  max(CASE f.name WHEN 'version' THEN f.value END) AS version,
  max(CASE f.name WHEN 'inst-date' THEN f.value END) AS modified,
  max(CASE f.name WHEN 'info' THEN f.value END) AS info,
  max(CASE f.name WHEN 'location' THEN f.value END) AS location
FROM facts f JOIN machines m ON m.id = f.machine_id
WHERE f.path GLOB '/Software/Soft:*'
GROUP BY f.machine_id, f.element;

CREATE VIEW IF NOT EXISTS disks AS
SELECT m.machine, m.name AS machine_name, m.timestamp,
  replace(f.element, '/Storage/Physical-disks/', '') AS disk,
  max(CASE f.name WHEN 'model' THEN f.value END) AS model,
  max(CASE f.name WHEN 'interface' THEN f.value END) AS interface,
  max(CASE f.name WHEN 'serial' THEN f.value END) AS serial,
  max(CASE f.name WHEN 'size' THEN CAST(f.value AS INTEGER) END) AS size_gb,
  max(CASE f.name WHEN 'size' THEN CAST(nullif(f.base_value, '') AS INTEGER) END) AS size_bytes,
  max(CASE f.name WHEN 'partitions' THEN CAST(f.value AS INTEGER) END) AS partitions
FROM facts f JOIN machines m ON m.id = f.machine_id
WHERE f.path GLOB '/Storage/Physical-disks/*'
GROUP BY f.machine_id, f.element;

CREATE VIEW IF NOT EXISTS volumes AS
SELECT m.machine, m.name AS machine_name, m.timestamp,
  max(CASE WHEN f.path = f.element THEN f.value END) AS name,
  max(CASE f.name WHEN 'mount-point' THEN f.value END) AS mount_point,
  max(CASE f.name WHEN 'file-sys' THEN f.value END) AS file_system,
  max(CASE f.name WHEN 'size' THEN CAST(f.value AS REAL) END) AS size_gb,
  max(CASE f.name WHEN 'free' THEN CAST(f.value AS REAL) END) AS free_gb,
  max(CASE f.name WHEN 'used%' THEN CAST(f.value AS INTEGER) END) AS used_percent
FROM facts f JOIN machines m ON m.id = f.machine_id
WHERE f.path GLOB '/Storage/Logical-disks/*'
GROUP BY f.machine_id, f.element;

CREATE VIEW IF NOT EXISTS memory AS
SELECT m.machine, m.name AS machine_name, m.timestamp,
  CAST(replace(f.element, '/Memory/Memory-slot:', '') AS INTEGER) AS slot,
  max(CASE f.name WHEN 'used' THEN CAST(f.value AS INTEGER) END) AS used,
  max(CASE f.name WHEN 'bank-label' THEN f.value END) AS bank,
  max(CASE f.name WHEN 'capacity' THEN CAST(f.value AS INTEGER) END) AS capacity_mb,
  max(CASE f.name WHEN 'mem-type' THEN f.value END) AS type,
  max(CASE f.name WHEN 'speed' THEN CAST(f.value AS INTEGER) END) AS speed_mhz
FROM facts f JOIN machines m ON m.id = f.machine_id
WHERE f.path GLOB '/Memory/Memory-slot:*'
GROUP BY f.machine_id, f.element;

CREATE VIEW IF NOT EXISTS displays AS
SELECT m.machine, m.name AS machine_name, m.timestamp,
  max(CASE f.name WHEN 'model' THEN f.value END) AS model,
  max(CASE f.name WHEN 'id' THEN f.value END) AS id,
  max(CASE f.name WHEN 'main-monitor' THEN CAST(f.value AS INTEGER) END) AS main,
  max(CASE f.name WHEN 'max-resolution' THEN f.value END) AS max_resolution,
  max(CASE f.name WHEN 'serial' THEN f.value END) AS serial,
  (SELECT CAST(d.value AS INTEGER) FROM facts d
   WHERE d.path = f.element || '/max-visible-image-size/diagonal' AND d.machine_id = f.machine_id) AS diagonal_inches
FROM facts f JOIN machines m ON m.id = f.machine_id
WHERE f.path GLOB '/Video/Monitors/Monitor:*' AND f.element NOT GLOB '/Video/Monitors/Monitor:*/*'
GROUP BY f.machine_id, f.element;

CREATE VIEW IF NOT EXISTS accounts AS
SELECT m.machine, m.name AS machine_name, m.timestamp,
  max(CASE WHEN f.path = f.element THEN f.value END) AS name,
  max(CASE f.name WHEN 'fullname' THEN f.value END) AS full_name,
  max(CASE f.name WHEN 'id' THEN CAST(f.value AS INTEGER) END) AS id,
  max(CASE f.name WHEN 'group' THEN CAST(f.value AS INTEGER) END) AS group_id,
  max(CASE f.name WHEN 'shell' THEN f.value END) AS shell,
  max(CASE f.name WHEN 'hdir' THEN f.value END) AS home
FROM facts f JOIN machines m ON m.id = f.machine_id
WHERE f.path GLOB '/User-accounts/usr-acc:*'
GROUP BY f.machine_id, f.element;

PRAGMA user_version = 2;
