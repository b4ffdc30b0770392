// Validates rows against a JSON Schema of draft 2020-12, and the schema itself. usage: node rows.mjs SCHEMA NDJSON...
// Prints a line for each row that is refused, and at the end how many rows there were.
import { createReadStream, readFileSync } from "node:fs";
import { createInterface } from "node:readline";
import Ajv from "ajv/dist/2020.js";
import formats from "ajv-formats";

const [schema, ...files] = process.argv.slice(2);
const ajv = new Ajv.default({ strict: true, allowUnionTypes: true, allErrors: true });
formats.default(ajv);
// Of our own, for people.
ajv.addVocabulary(["version", "path"]);
const validate = ajv.compile(JSON.parse(readFileSync(schema)));

let rows = 0;
for (const file of files) {
  let number = 0;
  for await (const line of createInterface({ input: createReadStream(file), crlfDelay: Infinity })) {
    ++rows, ++number;
    if (!validate(JSON.parse(line))) console.log(`${file}:${number}: ${ajv.errorsText(validate.errors)}`);
  }
}
console.log(rows);
