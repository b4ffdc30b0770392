-- Copies what was set aside from those versions into the tables of this one.

INSERT INTO main.machines
SELECT id, machine, timestamp, name, scanned, file, signed_by, NULL,
  time_in_utc(timestamp, (SELECT value FROM temp.old_facts WHERE machine_id = id AND path = '/Scan/calendar')), 0
FROM temp.old_machines;

INSERT INTO main.paths (path, element, name, section, kind, element_index)
SELECT DISTINCT path, element, name,
  CASE WHEN path GLOB '/*' THEN 'snapshot' ELSE 'asset' END, kind_of_path(path), index_of_path(path)
FROM temp.old_facts;

INSERT INTO main.fact_values
SELECT machine_id, position, id, value, unit, base_value, number_of_value(value)
FROM temp.old_facts o JOIN main.paths p ON p.path = o.path AND p.element = o.element;

DROP TABLE temp.old_facts;
DROP TABLE temp.old_machines;
