// Opens pages in Chromium.
import { join } from "node:path";

import { chromium } from "playwright-core";

import { folder } from "./inventories.mjs";

const flags = ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
  "--disable-component-update", "--disable-sync"];

let started = 0;

// A separate browser for each use, so that nothing is left over from another.
export async function withPage(address, options, use) {
  const context = await chromium.launchPersistentContext(join(folder, `profile-${++started}`), {
    executablePath: "/usr/bin/chromium",
    headless: true,
    args: flags,
    viewport: { width: 1280, height: 1000 },
    ...options,
  });
  const seen = { requests: [], complaints: [] };
  context.on("request", (request) => seen.requests.push(request.url()));
  const page = await context.newPage();
  page.on("console", (message) => seen.complaints.push(message.text()));
  page.on("pageerror", (error) => seen.complaints.push(String(error)));
  try {
    await page.goto(address);
    await use(page, seen);
  } finally {
    await context.close();
  }
}
