-- The number of Macs with each release of the system.
SELECT macs.release_name AS release_name, count(*) AS machines
FROM latest JOIN macs ON macs.scan_id = latest.scan_id
GROUP BY macs.release_name
ORDER BY machines DESC, release_name;
