-- How many displays of each model there are, and on how many Macs.
SELECT coalesce(displays.model, displays.display) AS display_model, count(*) AS number_of_displays, count(DISTINCT latest.machine) AS machines
FROM latest JOIN displays ON displays.scan_id = latest.scan_id
GROUP BY coalesce(displays.model, displays.display)
ORDER BY number_of_displays DESC, display_model;
