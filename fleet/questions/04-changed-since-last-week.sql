-- Applications that came, went or changed their version within a week. An application is identified by its location.
WITH
pairs AS (
  SELECT latest.machine AS machine, latest.scan_id AS new_scan, week_ago.scan_id AS old_scan
  FROM latest JOIN week_ago ON week_ago.machine = latest.machine
  WHERE latest.scan_id <> week_ago.scan_id
),
was AS (
  SELECT pairs.machine AS machine, software.location AS location, max(software.application) AS application, max(software.version) AS version
  FROM pairs JOIN software ON software.scan_id = pairs.old_scan
  WHERE software.location <> ''
  GROUP BY pairs.machine, software.location
),
is_now AS (
  SELECT pairs.machine AS machine, software.location AS location, max(software.application) AS application, max(software.version) AS version
  FROM pairs JOIN software ON software.scan_id = pairs.new_scan
  WHERE software.location <> ''
  GROUP BY pairs.machine, software.location
),
both_times AS (
  SELECT machine, location, max(application) AS application, max(old_version) AS old_version, max(new_version) AS new_version
  FROM (
    SELECT machine, location, application, coalesce(version, '') AS old_version, NULL AS new_version FROM was
    UNION ALL
    SELECT machine, location, application, NULL AS old_version, coalesce(version, '') AS new_version FROM is_now
  ) AS times
  GROUP BY machine, location
)
SELECT
  machine,
  CASE WHEN old_version IS NULL THEN 'added' WHEN new_version IS NULL THEN 'removed' ELSE 'changed' END AS change,
  application, location, old_version, new_version
FROM both_times
WHERE old_version IS NULL OR new_version IS NULL OR old_version <> new_version
ORDER BY machine, location;
