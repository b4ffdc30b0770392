-- Before the tables of this version are made, those of versions 2 and 3 are set aside. They have one table of facts,
-- each with its whole path, and identify scans only by machine and timestamp.

CREATE TEMP TABLE old_machines AS SELECT * FROM main.machines;
CREATE TEMP TABLE old_facts AS SELECT * FROM main.facts;
DROP VIEW IF EXISTS latest;
DROP VIEW IF EXISTS software;
DROP VIEW IF EXISTS disks;
DROP VIEW IF EXISTS volumes;
DROP VIEW IF EXISTS memory;
DROP VIEW IF EXISTS displays;
DROP VIEW IF EXISTS accounts;
DROP VIEW IF EXISTS systems;
DROP VIEW IF EXISTS network;
DROP VIEW IF EXISTS usb;
DROP VIEW IF EXISTS printers;
DROP VIEW IF EXISTS firewall;
DROP VIEW IF EXISTS firewall_rules;
DROP VIEW IF EXISTS security;
DROP VIEW IF EXISTS processes;
DROP TABLE main.facts;
DROP TABLE main.machines;
