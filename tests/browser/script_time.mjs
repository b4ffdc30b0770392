// How long scripts keep a page busy, as the browser's own tracing tells it.
const kScript = new Set(["FunctionCall", "EvaluateScript", "v8.compile"]);

// What a click starts can be a part of another script, and is then told as the event only. What other events start is
// told as calls; the events themselves hold the browser's own editing and layout.
function isScript({ name, args }) {
  return kScript.has(name) || (name === "EventDispatch" && args?.data?.type === "click");
}

// The milliseconds of processor time that scripts took of the page's main thread, so that other programs that run
// meanwhile do not count; those within others count once.
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

// What scripts take while `act` works on the page.
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
