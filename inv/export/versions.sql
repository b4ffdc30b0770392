-- For each version among the values a text that sorts as versions do, 5.9 before 5.10: see version_order.h. Whatever asks
-- for versions needs nothing but comparing texts.

CREATE TABLE version_keys (
  version TEXT PRIMARY KEY,  -- as the file has it: 5.10
  version_key TEXT NOT NULL  -- .0000000005.0000000010.
) WITHOUT ROWID;

INSERT INTO version_keys
SELECT DISTINCT value, version_key(value) FROM facts
WHERE (name = 'version' OR name GLOB '*-version') AND version_key(value) <> '';
