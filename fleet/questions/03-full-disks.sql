-- Volumes that are more than 90 % full.
SELECT latest.machine AS machine, volumes.volume AS volume, volumes.mount_point AS mount_point, volumes.used_percent AS used_percent
FROM latest JOIN volumes ON volumes.scan_id = latest.scan_id
WHERE volumes.used_percent > 90
ORDER BY machine, volume, mount_point;
