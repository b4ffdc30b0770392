// Validates lists of what is linked against the schema of CycloneDX. usage: node sbom.mjs FILE...
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import Ajv from "ajv";
import formats from "ajv-formats";
import newerFormats from "ajv-formats-draft2019";

const require = createRequire(import.meta.url);
const folder = require.resolve("@cyclonedx/cyclonedx-library/package.json").replace("package.json", "res/schema");
const schema = (name) => JSON.parse(readFileSync(`${folder}/${name}.SNAPSHOT.schema.json`));

// The main schema refers to the others by the names of their files.
const ajv = new Ajv({ strict: false });
for (const name of ["spdx", "jsf-0.82", "cryptography-defs"]) ajv.addSchema({ ...schema(name), $id: `http://cyclonedx.org/schema/${name}.SNAPSHOT.schema.json` });
formats(ajv);
newerFormats(ajv);
const validate = ajv.compile(schema("bom-1.6"));

for (const path of process.argv.slice(2)) {
  if (!validate(JSON.parse(readFileSync(path)))) {
    console.log(`${path}: ${ajv.errorsText(validate.errors)}`);
    process.exitCode = 1;
  }
}
