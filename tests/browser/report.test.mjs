import assert from "node:assert/strict";
import { copyFileSync, mkdirSync, readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { join } from "node:path";
import { before, test } from "node:test";

import { withPage } from "./browser.mjs";
import { applications, folder, report, scan, write } from "./inventories.mjs";
import { timeActs } from "./script_time.mjs";

const axe = readFileSync(createRequire(import.meta.url).resolve("axe-core/axe.min.js"), "utf8");

const pictures = join(process.env.VELKARO_BUILD, "browser");
let imac;
let imacReport;

before(() => {
  mkdirSync(pictures, { recursive: true });
  imac = scan("imac-10.6");
  imacReport = report("imac.html", imac);
});

// What changed between two scans, and a folder of machines, as pages.
function comparison() {
  const version = (number) => ["+Software=", "*Soft:1=Safari", `version=${number}`, "location=/Applications/Safari.app", "-"];
  return report("compare.html", "--compare", write("old.inv", version("5.0")), write("new.inv", version("5.1")));
}

function fleet() {
  const scans = join(folder, "scans");
  mkdirSync(scans, { recursive: true });
  copyFileSync(imac, join(scans, "imac.inv"));
  copyFileSync(write("full.inv", ["hostname=FULL", "+Storage=", "+Logical-disks=", "*partition:1=Nearly full of everything that there is",
    "size=100", "free=4", "-", "-"]), join(scans, "full.inv"));
  return report("fleet.html", scans);
}

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
    assert.deepEqual(await page.locator("#processes td:nth-child(2)").allTextContents(), ["a", "b", "init", "none"]);
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

const widths = [390, 768, 1280];

test("on a phone bars are seen, tables have the whole width, and nothing sticks out", async () => {
  for (const address of [imacReport, comparison(), fleet()]) {
    await withPage(address, { viewport: { width: 390, height: 844 } }, async (page) => {
      assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= document.documentElement.clientWidth), address);
      const sizes = await page.evaluate(() => ({
        bars: [...document.querySelectorAll(".bar")].map((bar) => bar.getBoundingClientRect().width),
        tables: [...document.querySelectorAll(".scroll")].map((scroll) => scroll.getBoundingClientRect().width),
        outside: [...document.querySelectorAll("main *")].filter((element) => !element.closest(".scroll, .unseen") &&
          element.getBoundingClientRect().right > document.documentElement.clientWidth + 1).map((element) => element.outerHTML.slice(0, 90)),
      }));
      assert.deepEqual(sizes.outside, []);
      assert.ok(sizes.bars.every((width) => width >= 60), `${address}: bars of ${sizes.bars}`);
      assert.ok(sizes.tables.every((width) => width >= 350), `${address}: tables of ${sizes.tables}`);
      await page.screenshot({ path: join(pictures, `phone-${address.split("/").pop()}.png`) });
    });
  }
});

test("a phone's volumes have bars as wide as the page", async () => {
  await withPage(imacReport, { viewport: { width: 390, height: 844 } }, async (page) => {
    const bars = await page.locator(".volume .bar").evaluateAll((all) => all.map((bar) => bar.getBoundingClientRect().width));
    assert.equal(bars.length, 4);
    assert.ok(bars.every((width) => width >= 340), String(bars));
  });
});

test("axe finds nothing at any width, light or dark", async () => {
  const long = report("long.html", write("long.inv", applications(501)));
  for (const address of [imacReport, comparison(), fleet(), long]) {
    for (const width of widths) {
      for (const colorScheme of ["light", "dark"]) {
        await withPage(address, { viewport: { width, height: 900 }, colorScheme }, async (page) => {
          await page.evaluate(axe);
          const { violations } = await page.evaluate(() => window.axe.run());
          const found = violations.map(({ id, nodes }) => `${id}: ${nodes.map((node) => node.html.slice(0, 100)).join(" | ")}`);
          assert.deepEqual(found, [], `${address}, ${width}, ${colorScheme}`);
        });
      }
    }
  }
});

test("the list of contents leads to every section, and storage, security and network come before the long tables", async () => {
  await withPage(imacReport, {}, async (page) => {
    const ids = await page.locator("section").evaluateAll((all) => all.map((section) => section.id));
    const links = await page.locator("nav.contents a").evaluateAll((all) => all.map((link) => link.getAttribute("href").slice(1)));
    assert.deepEqual(links, ids);
    const place = (id) => {
      assert.ok(ids.includes(id), id);
      return ids.indexOf(id);
    };
    for (const early of ["space", "disks", "volumes", "network-adapters", "firewall-services"]) {
      for (const long of ["applications", "processes", "environment"]) assert.ok(place(early) < place(long), `${early} after ${long}`);
    }
    await page.getByRole("link", { name: "Accounts" }).click();
    assert.ok(await page.locator("#accounts").evaluate((section) => section.getBoundingClientRect().top < window.innerHeight));
  });
});

test("of a long table the first rows are shown, and all of them for who asks", async () => {
  await withPage(report("long.html", write("long.inv", applications(501))), {}, async (page) => {
    const first = () => table(page, "applications").first().locator("td").first().textContent();
    assert.equal(await table(page, "applications").count(), 500);
    assert.equal(await page.locator("#applications .count").textContent(), "501");
    const more = page.getByRole("button", { name: "Show all 501 rows, not only the first 500" });
    await more.focus();
    await page.keyboard.press("Enter");
    assert.equal(await table(page, "applications").count(), 501);
    assert.equal(await more.isVisible(), false);
    assert.equal(await page.evaluate(() => document.activeElement.className), "scroll");
    await page.getByRole("button", { name: "Name" }).click();
    await page.getByRole("button", { name: "Name" }).click();
    assert.equal(await first(), "Application 500");
    assert.equal(await table(page, "applications").count(), 500);
    await page.getByRole("searchbox").fill("500.app");
    assert.equal(await first(), "Application 97");
    assert.equal(await more.isVisible(), false);
    await page.getByRole("searchbox").fill("");
    assert.equal(await first(), "Application 500");
    assert.equal(await more.isVisible(), true);
  });
});

test("a table of as many rows as are shown at first needs no button", async () => {
  await withPage(report("whole.html", write("whole.inv", applications(500))), {}, async (page) => {
    assert.equal(await table(page, "applications").count(), 500);
    assert.equal(await page.locator(".more:visible").count(), 0);
  });
});

test("a long table is printed whole, as far as the search finds its rows", async () => {
  await withPage(report("long.html", write("long.inv", applications(1200))), {}, async (page) => {
    await page.getByRole("searchbox").fill("5");
    const found = Number((await page.locator("#applications .count").textContent()).split(" ")[0]);
    assert.ok(found > 500 && found < 1200, String(found));
    await page.pdf();
    assert.equal(await table(page, "applications").count(), found);
    await page.getByRole("searchbox").fill("");
    assert.equal(await table(page, "applications").count(), 500);
    await page.pdf();
    assert.equal(await table(page, "applications").count(), 1200);
  });
});

test("without scripts a long table is there from its first row to its last", async () => {
  await withPage(report("long.html", write("long.inv", applications(1200))), { javaScriptEnabled: false }, async (page) => {
    assert.equal(await table(page, "applications").count(), 1200);
    assert.equal(await page.locator("button").count(), 0);
  });
});

test("with 5,000 applications a keystroke and a sort take less than 100 ms of script", async () => {
  const address = report("large.html", write("large.inv", applications(5000)));
  await withPage(address, {}, async (page) => {
    const times = await timeActs(page, 3);
    assert.equal(await page.locator("#applications .count").textContent(), "5000");
    for (const [what, time] of Object.entries(times)) {
      assert.ok(time > 0, `${what} was not measured`);
      assert.ok(time < 100, `${what}: ${time} ms`);
    }
    await page.getByRole("button", { name: "Show all" }).click();
    const versions = await page.locator("#applications td:nth-child(2)").evaluateAll((all) => [all[0], all[4999]].map((cell) => cell.textContent));
    assert.deepEqual(versions, ["0.0", "8.70"]);
  });
});

test("what is empty comes last, accents and cases do not count, and numbers go by their size", async () => {
  const names = ["b", "\u00c4pfel 10", "apfel 9", "", "C"];
  const lines = ["+Software=", ...names.flatMap((name, i) => [`*Soft:${i + 1}=${name}`, `location=/${i}`]), "-"];
  await withPage(report("order.html", write("order.inv", lines)), {}, async (page) => {
    const order = () => page.locator("#applications td:first-child").allTextContents();
    await page.getByRole("button", { name: "Name" }).click();
    assert.deepEqual(await order(), ["apfel 9", "\u00c4pfel 10", "b", "C", ""]);
    await page.getByRole("button", { name: "Name" }).click();
    assert.deepEqual(await order(), ["C", "b", "\u00c4pfel 10", "apfel 9", ""]);
  });
});

test("a fleet's machines lead to their pages", async () => {
  await withPage(fleet(), {}, async (page, seen) => {
    assert.equal(await table(page, "machines").count(), 2);
    assert.equal(await page.locator("#disks-filling-up .volume").count(), 1);
    await page.locator("#machines").getByRole("link", { name: "Studio iMac" }).click();
    assert.equal(await page.title(), "Studio iMac");
    assert.deepEqual(seen.complaints, []);
  });
});

test("a comparison tells the changes in a table of the same kind", async () => {
  await withPage(comparison(), {}, async (page, seen) => {
    const cells = await page.locator("#changes td").allTextContents();
    assert.deepEqual(cells, ["changed", "Application", "Safari 5.0 to 5.1"]);
    // Files without a machine are identified by their names.
    assert.match(await page.locator(".warning").textContent(), /these are two different machines/);
    await page.getByRole("searchbox").fill("removed");
    assert.equal(await table(page, "changes").count(), 0);
    assert.deepEqual(seen.complaints, []);
  });
});
