#include "inv/export/row_schema.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace {

using inv::CellType;
using inv::SchemaFormat;
using nlohmann::json;

const inv::RowKind kThings = {"things",
                              "a thing",
                              {{"id", CellType::text, true, "", "its id"},
                               {"name", CellType::text, false, "/Things/Thing:N", "its name"},
                               {"count", CellType::integer, false, "", "how many"},
                               {"bytes", CellType::size, true, "", "its size"},
                               {"share", CellType::number, false, "", "its share"},
                               {"used", CellType::boolean, false, "", "whether it is used"},
                               {"seen_at", CellType::time, false, "", "when it was seen"},
                               {"made_on", CellType::date, false, "", "when it was made"}}};

TEST(RowSchema, JsonSchemaDescribesALineOfNdjson) {
  EXPECT_EQ(json::parse(row_schema(kThings, SchemaFormat::json_schema)), json::parse(R"({
    "$schema": "https://json-schema.org/draft/2020-12/schema",
    "$id": "urn:velkaro:inventory:things:1.0",
    "version": "1.0",
    "title": "things",
    "description": "A row is a thing.",
    "type": "object",
    "required": ["id", "name", "count", "bytes", "share", "used", "seen_at", "made_on"],
    "properties": {
      "id": {"description": "its id", "type": "string"},
      "name": {"description": "its name", "type": ["string", "null"], "path": "/Things/Thing:N"},
      "count": {"description": "how many", "type": ["integer", "null"]},
      "bytes": {"description": "its size", "type": "integer", "minimum": 0},
      "share": {"description": "its share", "type": ["number", "null"]},
      "used": {"description": "whether it is used", "type": ["boolean", "null"]},
      "seen_at": {"description": "when it was seen", "type": ["string", "null"], "format": "date-time"},
      "made_on": {"description": "when it was made", "type": ["string", "null"], "format": "date"}
    }})"));
}

TEST(RowSchema, SqlMakesATable) {
  EXPECT_EQ(row_schema(kThings, SchemaFormat::sql), R"(-- Version 1.0. A row is a thing.
CREATE TABLE things (
  id TEXT NOT NULL,  -- its id
  name TEXT,  -- its name
  count BIGINT,  -- how many
  bytes BIGINT NOT NULL,  -- its size
  share DOUBLE PRECISION,  -- its share
  used BOOLEAN,  -- whether it is used
  seen_at TIMESTAMP WITH TIME ZONE,  -- when it was seen
  made_on DATE  -- when it was made
);
)");
}

TEST(RowSchema, EnginesHaveTypesOfTheirOwn) {
  EXPECT_EQ(row_schema(kThings, SchemaFormat::duckdb), R"(-- Version 1.0. A row is a thing.
CREATE TABLE things (
  id VARCHAR NOT NULL,  -- its id
  name VARCHAR,  -- its name
  count BIGINT,  -- how many
  bytes BIGINT NOT NULL,  -- its size
  share DOUBLE,  -- its share
  used BOOLEAN,  -- whether it is used
  seen_at TIMESTAMPTZ,  -- when it was seen
  made_on DATE  -- when it was made
);
)");
  EXPECT_EQ(row_schema(kThings, SchemaFormat::postgresql), R"(-- Version 1.0. A row is a thing.
CREATE TABLE things (
  id text NOT NULL,  -- its id
  name text,  -- its name
  count bigint,  -- how many
  bytes bigint NOT NULL,  -- its size
  share double precision,  -- its share
  used boolean,  -- whether it is used
  seen_at timestamptz,  -- when it was seen
  made_on date  -- when it was made
);
)");
  EXPECT_EQ(row_schema(kThings, SchemaFormat::clickhouse), R"(-- Version 1.0. A row is a thing.
CREATE TABLE things (
  id String,  -- its id
  name Nullable(String),  -- its name
  count Nullable(Int64),  -- how many
  bytes Int64,  -- its size
  share Nullable(Float64),  -- its share
  used Nullable(Bool),  -- whether it is used
  seen_at Nullable(DateTime('UTC')),  -- when it was seen
  made_on Nullable(Date)  -- when it was made
) ENGINE = MergeTree ORDER BY (machine, scan_id);
)");
}

}  // namespace
