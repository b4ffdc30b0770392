-- Macs that have not been scanned for 30 days.
SELECT latest.machine AS machine, macs.mac AS mac, latest.scanned_at AS last_scanned
FROM latest JOIN macs ON macs.scan_id = latest.scan_id
WHERE latest.scanned_at < (SELECT max(a_month_ago) FROM clock)
ORDER BY last_scanned, machine;
