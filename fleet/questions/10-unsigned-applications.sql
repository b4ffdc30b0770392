-- Unsigned applications in extended scans.
SELECT latest.machine AS machine, software.application AS application, software.version AS version, software.location AS location
FROM latest JOIN software ON software.scan_id = latest.scan_id
WHERE software.source IS NOT NULL AND software.source <> 'apple' AND coalesce(software.signed_by, '') = ''
ORDER BY machine, location;
