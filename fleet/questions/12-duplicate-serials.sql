-- Serial numbers that more than one Mac has: there are several hardware UUIDs to it.
SELECT serial, count(DISTINCT uuid) AS machines, min(mac) AS one_mac, max(mac) AS another_mac
FROM macs
WHERE serial <> '' AND uuid <> ''
GROUP BY serial
HAVING count(DISTINCT uuid) > 1
ORDER BY serial;
