-- Applications older than the version in the table "wanted". Versions that are not numbers with dots are left out.
SELECT latest.machine AS machine, software.application AS application, software.version AS version, wanted.version AS wanted_version
FROM latest
JOIN software ON software.scan_id = latest.scan_id
JOIN wanted ON wanted.application = software.application
JOIN version_keys AS installed ON installed.version = software.version
JOIN version_keys AS least ON least.version = wanted.version
WHERE installed.version_key < least.version_key
ORDER BY machine, application, version;
