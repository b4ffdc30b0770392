// Opens the reader's page of large machines in Chromium and prints the milliseconds of script that each act takes there, as
// the browser's tracing shows it: medians of five rounds, each with the page loaded anew. Ends with status 1 when an act with
// 5,000 applications is beyond the limit.
//
//     VELKARO_BUILD=BUILD node bench/page_times.mjs [APPLICATIONS...]
import { withPage } from "../tests/browser/browser.mjs";
import { applications, report, write } from "../tests/browser/inventories.mjs";
import { timeActs } from "../tests/browser/script_time.mjs";

const kRounds = 5;
const kLimited = 5000;
const kLimit = 100;

async function times(number) {
  let taken;
  const address = report(`${number}.html`, write(`${number}.inv`, applications(number)));
  await withPage(address, {}, async (page) => { taken = await timeActs(page, kRounds); });
  return taken;
}

const numbers = process.argv.length > 2 ? process.argv.slice(2).map(Number) : [kLimited, 20000];
const columns = [];
for (const number of numbers) columns.push(await times(number));

console.log(`| script for | ${numbers.join(" | ")} |`);
console.log(`|---|${"---:|".repeat(numbers.length)}`);
for (const act of Object.keys(columns[0])) {
  console.log(`| ${act} | ${columns.map((column) => `${column[act].toFixed(1)} ms`).join(" | ")} |`);
}
for (const [place, number] of numbers.entries()) {
  if (number > kLimited) continue;
  const [act, most] = Object.entries(columns[place]).reduce((one, other) => (one[1] < other[1] ? other : one));
  const holds = most > 0 && most < kLimit;
  console.log(`\n${holds ? "holds" : "FAILS"}: every act with ${number} applications in less than ${kLimit} ms: ${act} ${most.toFixed(1)}`);
  if (!holds) process.exitCode = 1;
}
