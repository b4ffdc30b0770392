-- The database that `inv load` fills, but for the views of single facts, which the catalogue of facts makes. Raise
-- user_version with every change that a query could notice, theirs included.

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

CREATE VIEW IF NOT EXISTS latest AS
SELECT * FROM machines m
WHERE timestamp = (SELECT max(timestamp) FROM machines WHERE machine = m.machine);

PRAGMA user_version = 3;
