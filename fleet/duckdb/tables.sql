-- duckdb fleet.duckdb -f duckdb/tables.sql, once. The typed tables, as `inv schema --table NAME --format duckdb` prints them, in a schema of their own: views.sql has views
-- of the same names over facts.
CREATE SCHEMA typed;

-- Version 1.0. A row is a scan of a Mac: the Mac and its system.
CREATE TABLE typed.machines (
  scan_id VARCHAR NOT NULL,  -- the SHA-256 of the scan's file
  scanned_at TIMESTAMPTZ,  -- when the scan was made
  machine VARCHAR NOT NULL,  -- what identifies the Mac: its serial number, else its UUID, else its name and hardware address
  path VARCHAR NOT NULL,  -- where the row is in the scan, for inv get
  name VARCHAR,  -- what people call the Mac: its computer name, else its host name
  model VARCHAR,  -- the model identifier, such as Mac16,8
  model_name VARCHAR,  -- the name of the model, such as MacBook Pro (extended scans)
  model_number VARCHAR,  -- the model number for orders (extended scans)
  serial VARCHAR,  -- the serial number
  uuid VARCHAR,  -- the hardware UUID
  system VARCHAR,  -- the system; extended scans have it as the system itself reports it
  version VARCHAR,  -- the system's version; in scans that are not extended, the build follows in brackets
  build VARCHAR,  -- the system's build (extended scans)
  kernel VARCHAR,  -- the kernel and its version
  architecture VARCHAR,  -- 64-bit or 32-bit
  uptime_seconds BIGINT,  -- how long the system had been running
  memory_bytes BIGINT,  -- the memory, in bytes
  memory_type VARCHAR,  -- the type of memory that is part of the chip (extended scans)
  memory_upgradeable BOOLEAN,  -- whether memory can be replaced (extended scans)
  processor VARCHAR,  -- the chip, or the first processor
  processor_mhz BIGINT,  -- the clock speed of the first processor, in MHz
  cores BIGINT,  -- the processor cores of the whole Mac
  performance_cores BIGINT,  -- cores for performance (extended scans)
  efficiency_cores BIGINT,  -- cores for efficiency (extended scans)
  graphics_cores BIGINT,  -- cores of the graphics processor (extended scans)
  virtual_machine BOOLEAN,  -- whether the Mac is a virtual one (extended scans)
  laptop BOOLEAN,  -- whether the Mac has a battery (extended scans)
  firmware VARCHAR,  -- the version of the firmware (extended scans)
  hostname VARCHAR,  -- the name in the local network
  domain VARCHAR,  -- the workgroup
  user_name VARCHAR,  -- who was logged in
  ip_address VARCHAR,  -- the IP addresses of the primary adapter, commas between
  battery_condition VARCHAR,  -- the battery's condition (extended scans)
  battery_cycles BIGINT,  -- how often the battery has been charged (extended scans)
  battery_serial VARCHAR,  -- the battery's serial number (extended scans)
  scanner_version VARCHAR,  -- the version of the scanner (extended scans)
  left_out VARCHAR  -- what the scan was asked to leave out, commas between (extended scans)
);

-- Version 1.0. A row is an application.
CREATE TABLE typed.software (
  scan_id VARCHAR NOT NULL,  -- the SHA-256 of the scan's file
  scanned_at TIMESTAMPTZ,  -- when the scan was made
  machine VARCHAR NOT NULL,  -- what identifies the Mac: its serial number, else its UUID, else its name and hardware address
  path VARCHAR NOT NULL,  -- where the row is in the scan, for inv get
  name VARCHAR,  -- the application's name
  version VARCHAR,  -- its version, as it writes it
  modified_on DATE,  -- when it was last modified
  kind VARCHAR,  -- what it is made for, in the profiler's word
  is_64_bit BOOLEAN,  -- whether it is a 64-bit program
  info VARCHAR,  -- what it says of itself
  location VARCHAR,  -- its path
  architecture VARCHAR,  -- the processors that it runs on, in the profiler's word (extended scans)
  source VARCHAR,  -- where it comes from, in the profiler's word (extended scans)
  signed_by VARCHAR  -- who signed it, commas between (extended scans)
);

-- Version 1.0. A row is a disk or drive.
CREATE TABLE typed.disks (
  scan_id VARCHAR NOT NULL,  -- the SHA-256 of the scan's file
  scanned_at TIMESTAMPTZ,  -- when the scan was made
  machine VARCHAR NOT NULL,  -- what identifies the Mac: its serial number, else its UUID, else its name and hardware address
  path VARCHAR NOT NULL,  -- where the row is in the scan, for inv get
  disk VARCHAR,  -- HDD, CD or Removable, and its number
  name VARCHAR,  -- what a removable disk is called
  model VARCHAR,  -- its model
  interface VARCHAR,  -- how it is connected: SATA, NVMe, USB
  serial VARCHAR,  -- its serial number
  size_bytes BIGINT,  -- its size, in bytes
  partitions BIGINT,  -- how many partitions it has
  firmware VARCHAR,  -- the version of its firmware
  manufacturer VARCHAR,  -- who made a removable disk
  medium VARCHAR,  -- ssd or rotational, in the profiler's word (extended scans)
  smart_status VARCHAR,  -- what it reports of its health (extended scans)
  internal BOOLEAN,  -- whether it is in the Mac (extended scans)
  partition_map VARCHAR,  -- the kind of its partition map, in the profiler's word (extended scans)
  device VARCHAR,  -- its device, such as disk0 (extended scans)
  trim_support BOOLEAN  -- whether the system tells the disk which blocks are free (extended scans)
);

-- Version 1.0. A row is a volume; those of one APFS container share its size and free space.
CREATE TABLE typed.volumes (
  scan_id VARCHAR NOT NULL,  -- the SHA-256 of the scan's file
  scanned_at TIMESTAMPTZ,  -- when the scan was made
  machine VARCHAR NOT NULL,  -- what identifies the Mac: its serial number, else its UUID, else its name and hardware address
  path VARCHAR NOT NULL,  -- where the row is in the scan, for inv get
  name VARCHAR,  -- the volume's name
  mount_point VARCHAR,  -- where it is mounted
  file_system VARCHAR,  -- its file system
  size_bytes BIGINT,  -- its size, in bytes
  free_bytes BIGINT,  -- its free space, in bytes
  used_percent BIGINT,  -- how much of it is used, in percent
  device VARCHAR,  -- its device, such as disk0s2 (extended scans; of removable disks always)
  system_volume BOOLEAN,  -- whether the system started from it (extended scans)
  uuid VARCHAR,  -- its UUID (extended scans)
  writable BOOLEAN,  -- whether it can be written to (extended scans)
  encrypted BOOLEAN,  -- whether it is encrypted (extended scans)
  container VARCHAR,  -- its APFS container, such as disk3 (extended scans)
  disk VARCHAR,  -- the disks that it is on, commas between (extended scans)
  internal BOOLEAN,  -- whether they are in the Mac (extended scans)
  protocol VARCHAR  -- how they are connected (extended scans)
);

-- Version 1.0. A row is a memory slot, used or not; memory that is part of the chip is a slot that is not used.
CREATE TABLE typed.memory (
  scan_id VARCHAR NOT NULL,  -- the SHA-256 of the scan's file
  scanned_at TIMESTAMPTZ,  -- when the scan was made
  machine VARCHAR NOT NULL,  -- what identifies the Mac: its serial number, else its UUID, else its name and hardware address
  path VARCHAR NOT NULL,  -- where the row is in the scan, for inv get
  slot BIGINT,  -- the slot's number, from 1
  used BOOLEAN,  -- whether a module is in it
  bank VARCHAR,  -- what the slot is called
  capacity_bytes BIGINT,  -- the module's size, in bytes
  type VARCHAR,  -- the type of memory
  speed_mhz BIGINT,  -- the module's speed, in MHz
  manufacturer VARCHAR  -- who made it
);

-- Version 1.0. A row is a display; extended scans have those too that do not describe themselves.
CREATE TABLE typed.displays (
  scan_id VARCHAR NOT NULL,  -- the SHA-256 of the scan's file
  scanned_at TIMESTAMPTZ,  -- when the scan was made
  machine VARCHAR NOT NULL,  -- what identifies the Mac: its serial number, else its UUID, else its name and hardware address
  path VARCHAR NOT NULL,  -- where the row is in the scan, for inv get
  display BIGINT,  -- the display's number, from 1
  name VARCHAR,  -- what the system calls it (extended scans)
  model VARCHAR,  -- its model, as it describes itself, else its name
  id VARCHAR,  -- the maker's letters and the product code, as the display describes itself
  main BOOLEAN,  -- whether the menu bar is on it
  max_resolution VARCHAR,  -- the largest resolution that it lists, in pixels
  serial VARCHAR,  -- its serial number
  diagonal_inches BIGINT,  -- its diagonal, in inches
  made_in_year BIGINT,  -- the year in which it was made
  vendor_id VARCHAR,  -- the maker's number (extended scans)
  product_id VARCHAR,  -- the product's number (extended scans)
  resolution VARCHAR,  -- the resolution in use (extended scans)
  pixels VARCHAR,  -- the pixels in use (extended scans)
  connection VARCHAR,  -- how it is connected, in the profiler's word (extended scans)
  built_in BOOLEAN,  -- whether it is part of the Mac (extended scans)
  mirrored BOOLEAN,  -- whether it shows what another one shows (extended scans)
  adapter VARCHAR  -- the graphics adapter that it is connected to (extended scans)
);

-- Version 1.0. A row is a network adapter or service.
CREATE TABLE typed.adapters (
  scan_id VARCHAR NOT NULL,  -- the SHA-256 of the scan's file
  scanned_at TIMESTAMPTZ,  -- when the scan was made
  machine VARCHAR NOT NULL,  -- what identifies the Mac: its serial number, else its UUID, else its name and hardware address
  path VARCHAR NOT NULL,  -- where the row is in the scan, for inv get
  name VARCHAR,  -- the service's name
  device VARCHAR,  -- its device, such as en0
  type VARCHAR,  -- its type, such as Ethernet
  ip_address VARCHAR,  -- its IP addresses, commas between
  subnet VARCHAR,  -- its subnet masks, commas between (extended scans)
  gateway VARCHAR,  -- the router
  mac_address VARCHAR,  -- its hardware address
  config_method VARCHAR,  -- how it gets its IPv4 addresses (extended scans)
  ipv6_addresses VARCHAR,  -- its IPv6 addresses, commas between (extended scans)
  dns_servers VARCHAR,  -- its name servers, commas between (extended scans)
  search_domains VARCHAR,  -- the domains that names are looked for in, commas between (extended scans)
  dhcp_server VARCHAR,  -- the server that gave it its address (extended scans)
  link_speed VARCHAR,  -- the kind of its link (extended scans)
  service_order BIGINT,  -- its place among the services (extended scans)
  wireless_card VARCHAR,  -- the wireless card (extended scans)
  country_code VARCHAR  -- the country whose rules the wireless card follows (extended scans)
);

-- Version 1.0. A row is a user account with a home folder.
CREATE TABLE typed.accounts (
  scan_id VARCHAR NOT NULL,  -- the SHA-256 of the scan's file
  scanned_at TIMESTAMPTZ,  -- when the scan was made
  machine VARCHAR NOT NULL,  -- what identifies the Mac: its serial number, else its UUID, else its name and hardware address
  path VARCHAR NOT NULL,  -- where the row is in the scan, for inv get
  name VARCHAR,  -- the account's name
  full_name VARCHAR,  -- its owner's name
  id BIGINT,  -- the user's number
  group_id BIGINT,  -- the number of its primary group
  shell VARCHAR,  -- its shell
  home VARCHAR  -- its home folder
);

-- Version 1.0. A row is a process that ran during the scan.
CREATE TABLE typed.processes (
  scan_id VARCHAR NOT NULL,  -- the SHA-256 of the scan's file
  scanned_at TIMESTAMPTZ,  -- when the scan was made
  machine VARCHAR NOT NULL,  -- what identifies the Mac: its serial number, else its UUID, else its name and hardware address
  path VARCHAR NOT NULL,  -- where the row is in the scan, for inv get
  name VARCHAR,  -- the short name of its command
  pid BIGINT,  -- its number
  parent_pid BIGINT,  -- the number of its parent
  user_name VARCHAR,  -- the account that it ran as
  command VARCHAR  -- its command line
);

-- Version 1.0. A row is a package or update that was installed (extended scans).
CREATE TABLE typed.packages (
  scan_id VARCHAR NOT NULL,  -- the SHA-256 of the scan's file
  scanned_at TIMESTAMPTZ,  -- when the scan was made
  machine VARCHAR NOT NULL,  -- what identifies the Mac: its serial number, else its UUID, else its name and hardware address
  path VARCHAR NOT NULL,  -- where the row is in the scan, for inv get
  name VARCHAR,  -- the package's name
  version VARCHAR,  -- its version
  installed_at TIMESTAMPTZ,  -- when it was installed
  source VARCHAR  -- where it came from, in the profiler's word
);

-- Version 1.0. A row is a scan of a Mac: its protections.
CREATE TABLE typed.security (
  scan_id VARCHAR NOT NULL,  -- the SHA-256 of the scan's file
  scanned_at TIMESTAMPTZ,  -- when the scan was made
  machine VARCHAR NOT NULL,  -- what identifies the Mac: its serial number, else its UUID, else its name and hardware address
  path VARCHAR NOT NULL,  -- where the row is in the scan, for inv get
  firewall_status BIGINT,  -- 0: all connections are let through, 1: some are, 2: none is
  firewall_stealth_mode BOOLEAN,  -- whether the firewall does not answer probes
  firewall_logging BOOLEAN,  -- whether the firewall writes a log
  disk_encryption BOOLEAN,  -- whether the startup disk is encrypted (extended scans)
  integrity_protection BOOLEAN,  -- whether the system protects its own files (extended scans)
  gatekeeper BOOLEAN,  -- whether downloaded applications are checked (extended scans)
  secure_boot VARCHAR,  -- which systems may start (extended scans)
  activation_lock BOOLEAN,  -- whether the Mac is locked to an account (extended scans)
  managed BOOLEAN,  -- whether device management is enrolled (extended scans)
  managed_by_purchase BOOLEAN,  -- whether it was enrolled with the purchase (extended scans)
  management_approved BOOLEAN,  -- whether a user approved the enrolment (extended scans)
  management_server VARCHAR,  -- the server of device management (extended scans)
  malware_definitions VARCHAR,  -- the version of the system's malware definitions (extended scans)
  secure_virtual_memory BOOLEAN  -- whether swapped memory is encrypted (extended scans)
);
