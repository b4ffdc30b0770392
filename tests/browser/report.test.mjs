import assert from "node:assert/strict";
import { mkdirSync } from "node:fs";
import { join } from "node:path";
import { before, test } from "node:test";

import { chromium } from "playwright-core";

import { folder, report, scan, write } from "./inventories.mjs";

const pictures = join(process.env.VELKARO_BUILD, "browser");
const flags = ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
  "--disable-component-update", "--disable-sync"];

let started = 0;

// A browser of its own for each test, so that nothing is left over from another.
async function withPage(address, options, use) {
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

let imac;
let imacReport;

before(() => {
  mkdirSync(pictures, { recursive: true });
  imac = scan("imac-10.6");
  imacReport = report("imac.html", imac);
});

const table = (page, section) => page.locator(`#${section} tbody tr:visible`);

test("a page asks for nothing but itself and complains of nothing", async () => {
  await withPage(imacReport, {}, async (page, seen) => {
    await page.waitForLoadState("networkidle");
    assert.deepEqual(seen.requests, [imacReport]);
    assert.deepEqual(seen.complaints, []);
    assert.equal(await page.title(), "Studio iMac");
    assert.equal(await table(page, "applications").count(), 150);
  });
});

test("the policy lets no script of a stranger run and no request leave", async () => {
  await withPage(imacReport, {}, async (page, seen) => {
    const outcome = await page.evaluate(async () => {
      const script = document.createElement("script");
      script.textContent = "window.stranger = true";
      document.body.append(script);
      const image = new Image();
      const refused = new Promise((resolve) => { image.onerror = () => resolve(true); });
      image.src = "http://127.0.0.1:9/picture";
      const fetched = await fetch("http://127.0.0.1:9/").then(() => true, () => false);
      return [window.stranger === undefined, await refused, fetched];
    });
    assert.deepEqual(outcome, [true, true, false]);
    assert.ok(seen.complaints.length >= 3 && seen.complaints.every((text) => /Content Security Policy|Failed to fetch/.test(text)),
      seen.complaints.join("\n"));
  });
});

test("search narrows its own table, word by word", async () => {
  await withPage(imacReport, {}, async (page) => {
    const search = page.getByRole("searchbox", { name: "Search in Applications" });
    await search.fill("safari");
    assert.equal(await table(page, "applications").count(), 1);
    assert.equal(await page.locator("#applications .count").textContent(), "1 of 150");
    assert.ok(await table(page, "environment").count() > 0);
    await search.fill("applications/utilities  monitor");
    assert.deepEqual(await table(page, "applications").locator("td:first-child").allTextContents(), ["Activity Monitor"]);
    await search.fill("nothing of this name");
    assert.equal(await table(page, "applications").count(), 0);
    await search.fill("");
    assert.equal(await table(page, "applications").count(), 150);
    assert.equal(await page.locator("#applications .count").textContent(), "150");
  });
});

test("columns sort as people count, one way and the other", async () => {
  const lines = ["+Processes=", "*process:1=init", "pid=10", "*process:2=b", "pid=9", "*process:3=a", "pid=100", "*process:4=none", "pid=", "-"];
  await withPage(report("sort.html", write("sort.inv", lines)), {}, async (page) => {
    const identifiers = () => page.locator("#processes td:first-child").allTextContents();
    const heading = page.locator("#processes th").first();
    await heading.getByRole("button").click();
    assert.deepEqual(await identifiers(), ["9", "10", "100", ""]);
    assert.equal(await heading.getAttribute("aria-sort"), "ascending");
    await heading.getByRole("button").click();
    assert.deepEqual(await identifiers(), ["100", "10", "9", ""]);
    await page.getByRole("button", { name: "Name" }).focus();
    await page.keyboard.press("Enter");
    assert.deepEqual(await page.locator("#processes td:nth-child(3)").allTextContents(), ["a", "b", "init", "none"]);
  });
});

test("names are shown as text, whatever they are", async () => {
  const names = ["<script>window.owned = true</script>", `"quoted" & 'single'`, "\u05e9\u05dc\u05d5\u05dd (\u05e2\u05d5\u05dc\u05dd) 1.0",
    "</td></table></style>", "<img src=x onerror='window.owned = true'>", "{{body}}", "\u202eexe.ppA"];
  const lines = [`hostname=${names[0]}`, "+Software=", ...names.flatMap((name, i) => [`*Soft:${i + 1}=${name}`, `location=/${name}`]), "-"];
  await withPage(report("names.html", write("names.inv", lines)), {}, async (page, seen) => {
    assert.deepEqual(await page.locator("#applications td:first-child").allTextContents(), names);
    assert.equal(await page.locator("h1").textContent(), names[0]);
    assert.equal(await page.title(), names[0]);
    assert.equal(await page.evaluate(() => window.owned), undefined);
    assert.deepEqual(seen.complaints, []);
    assert.deepEqual(seen.requests.length, 1);
    await page.screenshot({ path: join(pictures, "names.png"), fullPage: true });
  });
});

test("the page reads without scripts", async () => {
  await withPage(imacReport, { javaScriptEnabled: false }, async (page, seen) => {
    assert.equal(await table(page, "applications").count(), 150);
    assert.equal(await page.locator(".search").count(), 0);
    assert.deepEqual(seen.complaints, []);
    assert.equal(await page.locator(".memory .slot").count(), 4);
    assert.equal(await page.locator(".memory .filled").count(), 3);
  });
});

// The contrast of the page's texts with their background, as WCAG measures it.
const contrasts = () => {
  const luminance = (colour) => {
    const [r, g, b] = colour.match(/\d+/g).map((part) => part / 255)
      .map((part) => (part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4));
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
  };
  const behind = (element) => {
    for (let at = element; at; at = at.parentElement) {
      const colour = getComputedStyle(at).backgroundColor;
      if (colour !== "rgba(0, 0, 0, 0)") return colour;
    }
    return "rgb(255, 255, 255)";
  };
  const contrast = (one, other) => {
    const [dark, light] = [luminance(one), luminance(other)].sort((a, b) => a - b);
    return (light + 0.05) / (dark + 0.05);
  };
  const texts = ["h1", "header p", ".card p", "h3", "th", "td", ".count"].map((selector) => {
    const element = document.querySelector(selector);
    return [selector, contrast(getComputedStyle(element).color, behind(element))];
  });
  const slot = getComputedStyle(document.querySelector(".slot.filled")).fill;
  return [...texts, ["memory slot", contrast(getComputedStyle(document.querySelector(".memory text")).fill, slot)]];
};

async function assertReadable(page, where) {
  const enough = 4.5;  // for ordinary text
  for (const [what, contrast] of await page.evaluate(contrasts)) assert.ok(contrast >= enough, `${where}, ${what}: ${contrast}`);
}

test("light and dark differ and both keep text readable", async () => {
  const backgrounds = new Set();
  for (const colorScheme of ["light", "dark"]) {
    await withPage(imacReport, { colorScheme }, async (page) => {
      backgrounds.add(await page.evaluate(() => getComputedStyle(document.body).backgroundColor));
      await assertReadable(page, colorScheme);
      await page.screenshot({ path: join(pictures, `${colorScheme}.png`) });
    });
  }
  assert.equal(backgrounds.size, 2);
});

test("print leaves the controls out and the rows in", async () => {
  await withPage(imacReport, { colorScheme: "dark" }, async (page) => {
    const pdf = await page.pdf({ path: join(pictures, "print.pdf"), format: "A4" });
    assert.equal(pdf.subarray(0, 5).toString(), "%PDF-");
    await page.emulateMedia({ media: "print" });
    assert.equal(await page.locator(".search:visible").count(), 0);
    assert.equal(await table(page, "applications").count(), 150);
    assert.equal(await page.evaluate(() => getComputedStyle(document.body).backgroundColor), "rgb(255, 255, 255)");
    await assertReadable(page, "print");
    await page.screenshot({ path: join(pictures, "print.png") });
  });
});

test("a narrow window scrolls tables, not the page", async () => {
  await withPage(imacReport, { viewport: { width: 400, height: 800 } }, async (page) => {
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= document.documentElement.clientWidth));
    await page.screenshot({ path: join(pictures, "narrow.png") });
  });
});

test("a comparison lists the changes in a table of the same kind", async () => {
  const version = (number) => ["+Software=", "*Soft:1=Safari", `version=${number}`, "location=/Applications/Safari.app", "-"];
  const address = report("compare.html", "--compare", write("old.inv", version("5.0")), write("new.inv", version("5.1")));
  await withPage(address, {}, async (page, seen) => {
    const cells = await page.locator("#changes td").allTextContents();
    assert.deepEqual(cells, ["changed", "Safari", "/Applications/Safari.app", "/Software/Soft:1/version", "5.0", "5.1"]);
    await page.getByRole("searchbox").fill("removed");
    assert.equal(await table(page, "changes").count(), 0);
    assert.deepEqual(seen.complaints, []);
  });
});

