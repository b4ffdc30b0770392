-- Serial numbers of more than one Mac: several hardware UUIDs have the same one.
SELECT serial, count(DISTINCT uuid) AS machines, min(mac) AS one_mac, max(mac) AS another_mac
FROM macs
WHERE serial <> '' AND uuid <> ''
GROUP BY serial
HAVING count(DISTINCT uuid) > 1
ORDER BY serial;
