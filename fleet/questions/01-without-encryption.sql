-- Macs without disk encryption, and those whose scan does not say because it was not an extended one.
SELECT latest.machine AS machine, macs.mac AS mac, CASE WHEN macs.filevault = '0' THEN 'off' ELSE 'unknown' END AS encryption
FROM latest JOIN macs ON macs.scan_id = latest.scan_id
WHERE macs.filevault IS NULL OR macs.filevault <> '1'
ORDER BY machine;
