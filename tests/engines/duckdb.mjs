// Runs statements in DuckDB, for tests/e2e/test_fleet_engines.py: in a separate folder, with its own database.
// usage: node duckdb.mjs FOLDER <{"run": [SQL...], "ask": {NAME: SQL}}; prints {NAME: [[value, ...], ...]}
import { readFileSync } from "node:fs";
import { chdir } from "node:process";
import { DuckDBInstance } from "@duckdb/node-api";

const task = JSON.parse(readFileSync(0, "utf8"));
chdir(process.argv[2]);
const database = await (await DuckDBInstance.create("fleet.duckdb")).connect();
for (const sql of task.run) await database.run(sql);
const answers = {};
for (const [name, sql] of Object.entries(task.ask)) answers[name] = (await database.runAndReadAll(sql)).getRowsJson();
process.stdout.write(JSON.stringify(answers));
