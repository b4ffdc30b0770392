-- The number of Macs that have each version of an application.
SELECT software.application AS application, software.version AS version, count(DISTINCT latest.machine) AS machines
FROM latest JOIN software ON software.scan_id = latest.scan_id
WHERE software.application <> ''
GROUP BY software.application, software.version
ORDER BY machines DESC, application, version;
