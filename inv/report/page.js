
"use strict";
// The page already has the tables; this makes them searchable and sortable. Removing a row from what the
// browser has laid out costs more than sorting, so only the first rows of a long table stay in the page
// until somebody asks for all of them, or prints. The sort keys of the rows are computed only once.

const kFirstRows = 500;

// The sort key of a text: accents and case do not count, and numbers have the same number of digits. Comparing
// such keys is many times as fast as the browser's own language-aware comparison.
function sortKey(text) {
  const letters = /[^\0-\x7F]/.test(text) ? text.normalize("NFD").replace(/\p{M}/gu, "") : text;
  return letters.toLowerCase().replace(/0*(\d+)/g, (all, digits) => digits.padStart(20, "0"));
}

// Empty cells come last in either direction; rows with the same key keep their order.
function compareKeys(one, other, descending) {
  if (one === other) return 0;
  if (one === "" || other === "") return one === "" ? 1 : -1;
  return (one < other) === descending ? 1 : -1;
}

// All rows of a table in order; the page has the first of those that a search finds.
function rowsOf(table) {
  const body = table.tBodies[0];
  const items = [...body.rows].map((row) => ({ row, text: null, keys: [] }));
  const more = document.createElement("button");
  let words = [];
  let found = items;

  function show(most) {
    const shown = document.createDocumentFragment();
    for (const { row } of found.slice(0, most)) shown.append(row);
    body.replaceChildren(shown);
    more.hidden = found.length <= most;
    more.textContent = `Show all ${found.length} rows, not only the first ${kFirstRows}`;
  }

  function find() {
    const hasWords = (item) => words.every((word) => item.text.includes(word));
    found = words.length === 0 ? items : items.filter(hasWords);
    show(kFirstRows);
    return found.length;
  }

  more.type = "button";
  more.className = "more";
  more.hidden = true;
  more.addEventListener("click", () => {
    // Do this while the table is short: moving the focus makes the browser lay out what changed.
    table.parentNode.focus({ preventScroll: true });
    show(Infinity);
  });
  table.parentNode.after(more);
  addEventListener("beforeprint", () => show(Infinity));
  if (items.length > kFirstRows) show(kFirstRows);

  return {
    count: items.length,
    // Rows with the same key keep their order.
    sort(column, descending) {
      for (const item of items) item.keys[column] ??= sortKey(item.row.cells[column].textContent);
      items.sort((one, other) => compareKeys(one.keys[column], other.keys[column], descending));
      find();
    },
    // Shows the rows that contain all of the words, and returns how many there are.
    search(text) {
      for (const item of items) item.text ??= item.row.textContent.toLowerCase();
      words = text.toLowerCase().split(/\s+/).filter(Boolean);
      return find();
    },
  };
}

function makeSortable(table, rows) {
  const headings = [...table.tHead.rows[0].cells];
  headings.forEach((heading, column) => {
    const button = document.createElement("button");
    button.type = "button";
    button.append(...heading.childNodes);
    heading.append(button);
    button.addEventListener("click", () => {
      const descending = heading.getAttribute("aria-sort") === "ascending";
      for (const other of headings) other.removeAttribute("aria-sort");
      heading.setAttribute("aria-sort", descending ? "descending" : "ascending");
      rows.sort(column, descending);
    });
  });
}

function makeSearchable(section, rows) {
  const count = section.querySelector(".count");
  const search = document.createElement("input");
  search.type = "search";
  search.className = "search";
  search.placeholder = "Search";
  search.setAttribute("aria-label", "Search in " + section.querySelector("h2").firstChild.textContent.trim());
  search.addEventListener("input", () => {
    const found = rows.search(search.value);
    count.textContent = search.value.trim() === "" ? String(rows.count) : found + " of " + rows.count;
  });
  section.querySelector("h2").append(search);
}

for (const section of document.querySelectorAll("section")) {
  const table = section.querySelector("table");
  if (!table) continue;
  const rows = rowsOf(table);
  makeSortable(table, rows);
  makeSearchable(section, rows);
}
