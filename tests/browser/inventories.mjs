// Inventory files for the browser tests, and the pages that inv makes from them.
import { execFileSync } from "node:child_process";
import { mkdtempSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join, resolve } from "node:path";
import { deflateSync } from "node:zlib";

const root = resolve(import.meta.dirname, "../..");
const inv = join(process.env.VELKARO_BUILD, "inv");

export const folder = mkdtempSync(join(tmpdir(), "velkaro-browser-"));
process.on("exit", () => rmSync(folder, { recursive: true, force: true }));

// The path of a scan of one of the simulator's machines.
export function scan(machine) {
  const out = mkdtempSync(join(folder, "scan-"));
  const command = [join(root, "simulator/machines", machine), process.env.VELKARO_SCANNER, "/silent"];
  execFileSync(join(root, "simulator/run"), command, { cwd: out, stdio: "ignore" });
  return join(out, readdirSync(out)[0]);
}

// The path of a file whose snapshot holds these lines.
export function write(name, lines) {
  const text = `\ufeff?zxml\n+Snapshot=\n${lines.join("\n")}\n-\n`;
  const section = Buffer.concat([deflateSync(text), Buffer.from("\0\u0001ZXML", "latin1")]);
  const header = `[H]\ncount=1\nsnapshotcount=1\n[0]\noffset=0\nlength=${section.length}\ntype=snapshot\n`;
  const offset = Buffer.alloc(8);
  offset.writeBigUInt64BE(BigInt(section.length));
  const path = join(folder, name);
  writeFileSync(path, Buffer.concat([section, Buffer.from(header), offset, Buffer.from("\u0003\0INV!", "latin1")]));
  return path;
}

// The address of the page that `inv report` makes with these arguments.
export function report(name, ...args) {
  const path = join(folder, name);
  execFileSync(inv, ["report", ...args, "-o", path]);
  return `file://${path}`;
}

// The lines of a snapshot with this many applications.
export function applications(number) {
  const lines = ["timestamp=20120118153045.000000+120", "+Software="];
  for (let i = 0; i < number; ++i) {
    lines.push(`*Soft:${i + 1}=Application ${(i * 7919) % number}`, `version=${i % 9}.${i % 71}`, "inst-date=20110102",
      "runtime-environment=universal", `info=${i % 9}.${i % 7}, Copyright 2011 Maker ${i % 50}`, "64bit-app=1",
      `location=/Applications/Folder ${i % 40}/Application ${i}.app`);
  }
  return [...lines, "-"];
}
