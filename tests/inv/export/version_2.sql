-- A database that inv filled when its version was 2: four scans of one machine.
BEGIN TRANSACTION;
CREATE TABLE facts (
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
INSERT INTO "facts" VALUES(1,1,'/timestamp','/','timestamp','20120118100000.000000+600','','');
INSERT INTO "facts" VALUES(1,2,'/scan-time','/','scan-time','5000','ms','');
INSERT INTO "facts" VALUES(1,3,'/client-version','/','client-version','12.01.18.0','','');
INSERT INTO "facts" VALUES(1,4,'/scan-subtype','/','scan-subtype','sstService','','');
INSERT INTO "facts" VALUES(1,5,'/snaptype','/','snaptype','mac:1','','');
INSERT INTO "facts" VALUES(1,6,'/hostname','/','hostname','LAB','','');
INSERT INTO "facts" VALUES(1,7,'/System/Chassis/serial','/System/Chassis','serial','SIM0OLD001','','');
INSERT INTO "facts" VALUES(1,8,'/Software/Soft:1','/Software/Soft:1','Soft:1','Safari','','');
INSERT INTO "facts" VALUES(1,9,'/Software/Soft:1/version','/Software/Soft:1','version','5.1','','');
INSERT INTO "facts" VALUES(1,10,'/Software/Soft:1/location','/Software/Soft:1','location','/Applications/Safari.app','','');
INSERT INTO "facts" VALUES(1,11,'/Storage/Logical-disks/partition:1','/Storage/Logical-disks/partition:1','partition:1','Macintosh HD','','');
INSERT INTO "facts" VALUES(1,12,'/Storage/Logical-disks/partition:1/mount-point','/Storage/Logical-disks/partition:1','mount-point','/','','');
INSERT INTO "facts" VALUES(1,13,'/Storage/Logical-disks/partition:1/size','/Storage/Logical-disks/partition:1','size','499.50','GB','499500000000');
INSERT INTO "facts" VALUES(1,14,'AssetInfo/int-name','AssetInfo','int-name','Lab iMac','','');
INSERT INTO "facts" VALUES(1,15,'AssetInfo/serial-number','AssetInfo','serial-number','SIM0OLD001','','');
INSERT INTO "facts" VALUES(2,1,'/timestamp','/','timestamp','20120118030000.000000-480','','');
INSERT INTO "facts" VALUES(2,2,'/scan-time','/','scan-time','5000','ms','');
INSERT INTO "facts" VALUES(2,3,'/client-version','/','client-version','12.01.18.0','','');
INSERT INTO "facts" VALUES(2,4,'/scan-subtype','/','scan-subtype','sstService','','');
INSERT INTO "facts" VALUES(2,5,'/snaptype','/','snaptype','mac:1','','');
INSERT INTO "facts" VALUES(2,6,'/hostname','/','hostname','LAB','','');
INSERT INTO "facts" VALUES(2,7,'/System/Chassis/serial','/System/Chassis','serial','SIM0OLD001','','');
INSERT INTO "facts" VALUES(2,8,'/Software/Soft:1','/Software/Soft:1','Soft:1','Safari','','');
INSERT INTO "facts" VALUES(2,9,'/Software/Soft:1/version','/Software/Soft:1','version','5.1','','');
INSERT INTO "facts" VALUES(2,10,'/Software/Soft:1/location','/Software/Soft:1','location','/Applications/Safari.app','','');
INSERT INTO "facts" VALUES(2,11,'/Storage/Logical-disks/partition:1','/Storage/Logical-disks/partition:1','partition:1','Macintosh HD','','');
INSERT INTO "facts" VALUES(2,12,'/Storage/Logical-disks/partition:1/mount-point','/Storage/Logical-disks/partition:1','mount-point','/','','');
INSERT INTO "facts" VALUES(2,13,'/Storage/Logical-disks/partition:1/size','/Storage/Logical-disks/partition:1','size','499.50','GB','499500000000');
INSERT INTO "facts" VALUES(2,14,'AssetInfo/int-name','AssetInfo','int-name','Lab iMac','','');
INSERT INTO "facts" VALUES(2,15,'AssetInfo/serial-number','AssetInfo','serial-number','SIM0OLD001','','');
INSERT INTO "facts" VALUES(3,1,'/timestamp','/','timestamp','someday','','');
INSERT INTO "facts" VALUES(3,2,'/scan-time','/','scan-time','5000','ms','');
INSERT INTO "facts" VALUES(3,3,'/client-version','/','client-version','12.01.18.0','','');
INSERT INTO "facts" VALUES(3,4,'/scan-subtype','/','scan-subtype','sstService','','');
INSERT INTO "facts" VALUES(3,5,'/snaptype','/','snaptype','mac:1','','');
INSERT INTO "facts" VALUES(3,6,'/hostname','/','hostname','LAB','','');
INSERT INTO "facts" VALUES(3,7,'/System/Chassis/serial','/System/Chassis','serial','SIM0OLD001','','');
INSERT INTO "facts" VALUES(3,8,'/Software/Soft:1','/Software/Soft:1','Soft:1','Safari','','');
INSERT INTO "facts" VALUES(3,9,'/Software/Soft:1/version','/Software/Soft:1','version','5.1','','');
INSERT INTO "facts" VALUES(3,10,'/Software/Soft:1/location','/Software/Soft:1','location','/Applications/Safari.app','','');
INSERT INTO "facts" VALUES(3,11,'/Storage/Logical-disks/partition:1','/Storage/Logical-disks/partition:1','partition:1','Macintosh HD','','');
INSERT INTO "facts" VALUES(3,12,'/Storage/Logical-disks/partition:1/mount-point','/Storage/Logical-disks/partition:1','mount-point','/','','');
INSERT INTO "facts" VALUES(3,13,'/Storage/Logical-disks/partition:1/size','/Storage/Logical-disks/partition:1','size','499.50','GB','499500000000');
INSERT INTO "facts" VALUES(3,14,'AssetInfo/int-name','AssetInfo','int-name','Lab iMac','','');
INSERT INTO "facts" VALUES(3,15,'AssetInfo/serial-number','AssetInfo','serial-number','SIM0OLD001','','');
INSERT INTO "facts" VALUES(4,1,'/timestamp','/','timestamp','20190312120000.000000+180','','');
INSERT INTO "facts" VALUES(4,2,'/scan-time','/','scan-time','5000','ms','');
INSERT INTO "facts" VALUES(4,3,'/client-version','/','client-version','12.01.18.0','','');
INSERT INTO "facts" VALUES(4,4,'/scan-subtype','/','scan-subtype','sstService','','');
INSERT INTO "facts" VALUES(4,5,'/snaptype','/','snaptype','mac:1','','');
INSERT INTO "facts" VALUES(4,6,'/hostname','/','hostname','LAB','','');
INSERT INTO "facts" VALUES(4,7,'/System/Chassis/serial','/System/Chassis','serial','SIM0OLD001','','');
INSERT INTO "facts" VALUES(4,8,'/Software/Soft:1','/Software/Soft:1','Soft:1','Safari','','');
INSERT INTO "facts" VALUES(4,9,'/Software/Soft:1/version','/Software/Soft:1','version','5.1','','');
INSERT INTO "facts" VALUES(4,10,'/Software/Soft:1/location','/Software/Soft:1','location','/Applications/Safari.app','','');
INSERT INTO "facts" VALUES(4,11,'/Storage/Logical-disks/partition:1','/Storage/Logical-disks/partition:1','partition:1','Macintosh HD','','');
INSERT INTO "facts" VALUES(4,12,'/Storage/Logical-disks/partition:1/mount-point','/Storage/Logical-disks/partition:1','mount-point','/','','');
INSERT INTO "facts" VALUES(4,13,'/Storage/Logical-disks/partition:1/size','/Storage/Logical-disks/partition:1','size','499.50','GB','499500000000');
INSERT INTO "facts" VALUES(4,14,'/Scan/calendar','/Scan','calendar','ethiopic','','');
INSERT INTO "facts" VALUES(4,15,'AssetInfo/int-name','AssetInfo','int-name','Lab iMac','','');
INSERT INTO "facts" VALUES(4,16,'AssetInfo/serial-number','AssetInfo','serial-number','SIM0OLD001','','');
CREATE TABLE machines (
  id INTEGER PRIMARY KEY,
  machine TEXT NOT NULL,    -- what tells it from others: serial number, UUID, hardware address or name
  timestamp TEXT NOT NULL,  -- of the scan, as the file has it: 20120118153045.000000+120
  name TEXT NOT NULL,       -- what people call it
  scanned TEXT NOT NULL,    -- the timestamp for people: 2012-01-18 15:30:45 +02:00
  file TEXT NOT NULL,       -- where the scan was loaded from
  signed_by TEXT NOT NULL,  -- who signed the file; empty when no signature was asked for
  UNIQUE (machine, timestamp)
);
INSERT INTO "machines" VALUES(1,'SIM0OLD001','20120118100000.000000+600','Lab iMac','2012-01-18 10:00:00 +10:00','old1.inv','');
INSERT INTO "machines" VALUES(2,'SIM0OLD001','20120118030000.000000-480','Lab iMac','2012-01-18 03:00:00 -08:00','old2.inv','');
INSERT INTO "machines" VALUES(3,'SIM0OLD001','someday','Lab iMac','someday','old3.inv','');
INSERT INTO "machines" VALUES(4,'SIM0OLD001','20190312120000.000000+180','Lab iMac','2019-03-12 12:00:00 +03:00','old4.inv','');
CREATE INDEX facts_by_path ON facts (path, machine_id);
CREATE VIEW latest AS
SELECT * FROM machines m
WHERE timestamp = (SELECT max(timestamp) FROM machines WHERE machine = m.machine);
CREATE VIEW software AS
SELECT m.machine, m.name AS machine_name, m.timestamp,
  max(CASE WHEN f.path = f.element THEN f.value END) AS name,
  max(CASE f.name WHEN 'version' THEN f.value END) AS version,
  max(CASE f.name WHEN 'inst-date' THEN f.value END) AS modified,
  max(CASE f.name WHEN 'info' THEN f.value END) AS info,
  max(CASE f.name WHEN 'location' THEN f.value END) AS location
FROM facts f JOIN machines m ON m.id = f.machine_id
WHERE f.path GLOB '/Software/Soft:*'
GROUP BY f.machine_id, f.element;
CREATE VIEW disks AS
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
CREATE VIEW volumes AS
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
CREATE VIEW memory AS
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
CREATE VIEW displays AS
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
CREATE VIEW accounts AS
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
COMMIT;
PRAGMA user_version = 2;
