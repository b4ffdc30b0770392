-- for table in machines software disks volumes memory displays adapters accounts processes packages security; do
--   inv export --table $table --format csv -o $table.csv inventories
-- done; duckdb fleet.duckdb -f duckdb/load-tables.sql
-- A scan whose machine is there already is left out, so the same files may be loaded again.
CREATE OR REPLACE TEMP TABLE there AS SELECT scan_id FROM typed.machines;
BEGIN;

CREATE OR REPLACE TEMP TABLE arrived AS FROM typed.machines LIMIT 0;
COPY arrived FROM 'machines.csv' (FORMAT csv, HEADER, NULLSTR '', DELIMITER ',', QUOTE '"', ESCAPE '"');
INSERT INTO typed.machines FROM arrived WHERE scan_id NOT IN (FROM there);

CREATE OR REPLACE TEMP TABLE arrived AS FROM typed.software LIMIT 0;
COPY arrived FROM 'software.csv' (FORMAT csv, HEADER, NULLSTR '', DELIMITER ',', QUOTE '"', ESCAPE '"');
INSERT INTO typed.software FROM arrived WHERE scan_id NOT IN (FROM there);

CREATE OR REPLACE TEMP TABLE arrived AS FROM typed.disks LIMIT 0;
COPY arrived FROM 'disks.csv' (FORMAT csv, HEADER, NULLSTR '', DELIMITER ',', QUOTE '"', ESCAPE '"');
INSERT INTO typed.disks FROM arrived WHERE scan_id NOT IN (FROM there);

CREATE OR REPLACE TEMP TABLE arrived AS FROM typed.volumes LIMIT 0;
COPY arrived FROM 'volumes.csv' (FORMAT csv, HEADER, NULLSTR '', DELIMITER ',', QUOTE '"', ESCAPE '"');
INSERT INTO typed.volumes FROM arrived WHERE scan_id NOT IN (FROM there);

CREATE OR REPLACE TEMP TABLE arrived AS FROM typed.memory LIMIT 0;
COPY arrived FROM 'memory.csv' (FORMAT csv, HEADER, NULLSTR '', DELIMITER ',', QUOTE '"', ESCAPE '"');
INSERT INTO typed.memory FROM arrived WHERE scan_id NOT IN (FROM there);

CREATE OR REPLACE TEMP TABLE arrived AS FROM typed.displays LIMIT 0;
COPY arrived FROM 'displays.csv' (FORMAT csv, HEADER, NULLSTR '', DELIMITER ',', QUOTE '"', ESCAPE '"');
INSERT INTO typed.displays FROM arrived WHERE scan_id NOT IN (FROM there);

CREATE OR REPLACE TEMP TABLE arrived AS FROM typed.adapters LIMIT 0;
COPY arrived FROM 'adapters.csv' (FORMAT csv, HEADER, NULLSTR '', DELIMITER ',', QUOTE '"', ESCAPE '"');
INSERT INTO typed.adapters FROM arrived WHERE scan_id NOT IN (FROM there);

CREATE OR REPLACE TEMP TABLE arrived AS FROM typed.accounts LIMIT 0;
COPY arrived FROM 'accounts.csv' (FORMAT csv, HEADER, NULLSTR '', DELIMITER ',', QUOTE '"', ESCAPE '"');
INSERT INTO typed.accounts FROM arrived WHERE scan_id NOT IN (FROM there);

CREATE OR REPLACE TEMP TABLE arrived AS FROM typed.processes LIMIT 0;
COPY arrived FROM 'processes.csv' (FORMAT csv, HEADER, NULLSTR '', DELIMITER ',', QUOTE '"', ESCAPE '"');
INSERT INTO typed.processes FROM arrived WHERE scan_id NOT IN (FROM there);

CREATE OR REPLACE TEMP TABLE arrived AS FROM typed.packages LIMIT 0;
COPY arrived FROM 'packages.csv' (FORMAT csv, HEADER, NULLSTR '', DELIMITER ',', QUOTE '"', ESCAPE '"');
INSERT INTO typed.packages FROM arrived WHERE scan_id NOT IN (FROM there);

CREATE OR REPLACE TEMP TABLE arrived AS FROM typed.security LIMIT 0;
COPY arrived FROM 'security.csv' (FORMAT csv, HEADER, NULLSTR '', DELIMITER ',', QUOTE '"', ESCAPE '"');
INSERT INTO typed.security FROM arrived WHERE scan_id NOT IN (FROM there);

COMMIT;
