-- Macs with less than 8 GB and a free slot, unless they say that their memory cannot be replaced.
SELECT latest.machine AS machine, macs.model AS model, macs.memory_mb AS memory_mb, memory.free_slots AS free_slots
FROM latest
JOIN macs ON macs.scan_id = latest.scan_id
JOIN memory ON memory.scan_id = latest.scan_id
WHERE macs.memory_mb < 8192 AND memory.free_slots > 0 AND coalesce(macs.memory_upgradeable, '1') <> '0'
ORDER BY machine;
