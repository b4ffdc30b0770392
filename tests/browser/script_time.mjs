// How long scripts keep a page busy, according to the browser's own tracing.
const kScript = new Set(["FunctionCall", "EvaluateScript", "v8.compile"]);

// What a click starts can be part of another script, and is then traced only as the event. What other events start is
// traced as calls; the events themselves include the browser's own editing and layout.
function isScript({ name, args }) {
  return kScript.has(name) || (name === "EventDispatch" && args?.data?.type === "click");
}

// The milliseconds of processor time of scripts on the page's main thread, so that other programs do not count; nested scripts count once.
function scriptMilliseconds(events, thread) {
  const spans = events
    .filter((event) => event.ph === "X" && event.tid === thread.tid && event.pid === thread.pid && isScript(event))
    .map((event) => [event.tts, event.tts + event.tdur])
    .sort((one, other) => one[0] - other[0]);
  let total = 0;
  let end = 0;
  for (const [from, to] of spans) {
    total += Math.max(0, to - Math.max(from, end));
    end = Math.max(end, to);
  }
  return total / 1000;
}

// The script time while `act` works on the page.
export async function scriptTime(page, act) {
  const session = await page.context().newCDPSession(page);
  const events = [];
  session.on("Tracing.dataCollected", ({ value }) => events.push(...value));
  const complete = new Promise((resolve) => { session.once("Tracing.tracingComplete", resolve); });
  await session.send("Tracing.start", { transferMode: "ReportEvents", traceConfig: { includedCategories: ["devtools.timeline", "__metadata"] } });
  await act();
  await page.evaluate(() => new Promise((resolve) => { requestAnimationFrame(() => requestAnimationFrame(resolve)); }));
  await session.send("Tracing.end");
  await complete;
  await session.detach();
  const threads = events.filter((event) => event.name === "thread_name" && event.args.name === "CrRendererMain");
  return Math.max(...threads.map((thread) => scriptMilliseconds(events, thread)));
}

// The acts on a page's table of applications, in order. Elements are found by their places: searching for names in
// such a large page takes longer than everything that is measured.
function actsOn(page) {
  const key = (name) => () => page.keyboard.press(name);
  const click = (element) => () => page.locator(`#applications ${element}`).evaluate((button) => button.click());
  const sort = (column) => click(`th:nth-child(${column}) button`);
  const search = [["first key", key("a")], ["second key", key("7")], ["backspace", key("Backspace")], ["last backspace", key("Backspace")]];
  return [...search, ["sort by name", sort(1)], ["sort back", sort(1)], ["sort by version", sort(2)],
    ["show all rows", click(".more")], ["sort all rows", sort(3)]];
}

const median = (numbers) => numbers.sort((one, other) => one - other)[Math.floor(numbers.length / 2)];

// The milliseconds of script for each act, medians of this many rounds, each with the page reloaded.
export async function timeActs(page, rounds) {
  const times = {};
  for (let round = 0; round < rounds; ++round) {
    await page.reload();
    await page.locator("#applications .search").focus();
    for (const [what, act] of actsOn(page)) (times[what] ??= []).push(await scriptTime(page, act));
  }
  return Object.fromEntries(Object.entries(times).map(([what, all]) => [what, median(all)]));
}
