// The same as duckdb.mjs, for ClickHouse; its engine is half a gigabyte (npm install --no-save chdb in this folder), so it is installed only on request.
import { readFileSync } from "node:fs";
import { chdir } from "node:process";
import { Session } from "chdb";

const task = JSON.parse(readFileSync(0, "utf8"));
chdir(process.argv[2]);
const database = new Session("./fleet.clickhouse");
database.query("SET data_type_default_nullable = 0");
// One statement at a time.
const statements = (text) => text.replace(/^--.*$/gm, "").split(/;\s*$/m).map((sql) => sql.trim()).filter(Boolean);
for (const text of task.run) for (const sql of statements(text)) database.query(sql);
const answers = {};
for (const [name, sql] of Object.entries(task.ask)) {
  answers[name] = statements(sql).flatMap((one) => JSON.parse(database.query(one, "JSONCompact")).data);
}
process.stdout.write(JSON.stringify(answers));
