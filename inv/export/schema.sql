-- The database that `inv load` fills, but for the views of single facts, which the catalogue of facts makes. Raise
-- the version in database.cpp with every change that a query could notice, theirs included, and let migration.sql bring
-- databases of the version before to it.

CREATE TABLE machines (
  id INTEGER PRIMARY KEY,
  machine TEXT NOT NULL,    -- what identifies it: serial number, UUID, or name and address
  timestamp TEXT NOT NULL,  -- of the scan, as the file has it: 20120118153045.000000+120
  name TEXT NOT NULL,       -- what people call it
  scanned TEXT NOT NULL,    -- the timestamp for people: 2012-01-18 15:30:45 +02:00
  file TEXT NOT NULL,       -- where the scan was loaded from
  signed_by TEXT NOT NULL,  -- who signed the file; empty if no signature was required
  scan_id TEXT UNIQUE,      -- the file's SHA-256; NULL if an earlier version of inv loaded the file
  scanned_at TEXT,          -- the timestamp in UTC: 2012-01-18T13:30:45Z; NULL if it cannot be understood
  damaged INTEGER NOT NULL  -- 1 if parts of the file could not be read
);

CREATE INDEX machines_by_time ON machines (machine, scanned_at);

-- All files have the same paths, so a fact has the number of its path.
CREATE TABLE paths (
  id INTEGER PRIMARY KEY,
  path TEXT NOT NULL,          -- /Software/Soft:1/version
  element TEXT NOT NULL,       -- of the element it belongs to: /Software/Soft:1; the path itself for its own value
  name TEXT NOT NULL,          -- version
  section TEXT NOT NULL,       -- snapshot or asset
  kind TEXT NOT NULL,          -- without numbers and names: /Software/Soft/version
  element_index TEXT NOT NULL  -- these: 1
);

CREATE UNIQUE INDEX paths_by_path ON paths (path, element, section);

CREATE TABLE fact_values (
  machine_id INTEGER NOT NULL REFERENCES machines (id) ON DELETE CASCADE,
  position INTEGER NOT NULL,  -- in the file, from 1
  path_id INTEGER NOT NULL REFERENCES paths (id),
  value TEXT NOT NULL,
  unit TEXT NOT NULL,
  base_value TEXT NOT NULL,   -- the exact value behind a rounded one: bytes
  number NUMERIC,             -- the value, if it is a number
  PRIMARY KEY (machine_id, position)
) WITHOUT ROWID;

CREATE INDEX fact_values_by_path ON fact_values (path_id, machine_id);

CREATE VIEW facts AS
SELECT machine_id, position, path, element, name, value, unit, base_value, section, kind, element_index, number
FROM fact_values JOIN paths ON paths.id = path_id;

-- A scan without a time is never the last one.
CREATE VIEW latest AS
SELECT * FROM machines m
WHERE id = (SELECT id FROM machines WHERE machine = m.machine AND scanned_at IS NOT NULL
            ORDER BY scanned_at DESC, damaged, id DESC LIMIT 1);
