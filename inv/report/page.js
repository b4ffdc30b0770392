
"use strict";
// Tables stand in the page as they are; this makes them searchable and sortable. What that takes of each row is
// worked out once, so that thousands of rows answer at every keystroke.

// What a text is sorted by: marks and cases do not count, and numbers have the same number of digits. Comparing
// such keys is many times as fast as asking the browser how people of this language order texts.
function sortKey(text) {
  const letters = text.normalize("NFD").replace(/\p{M}/gu, "").toLowerCase();
  return letters.replace(/\d+/g, (digits) => digits.replace(/^0+(?=\d)/, "").padStart(20, "0"));
}

// Empty cells come last either way; rows of the same key stay in their order.
function compareKeys(one, other, descending) {
  if (one === other) return 0;
  if (one === "" || other === "") return one === "" ? 1 : -1;
  return (one < other) === descending ? 1 : -1;
}

function makeSortable(table) {
  const headings = [...table.tHead.rows[0].cells];
  const body = table.tBodies[0];
  headings.forEach((heading, column) => {
    const button = document.createElement("button");
    button.type = "button";
    button.append(...heading.childNodes);
    heading.append(button);
    let keys = null;
    button.addEventListener("click", () => {
      const descending = heading.getAttribute("aria-sort") === "ascending";
      for (const other of headings) other.removeAttribute("aria-sort");
      heading.setAttribute("aria-sort", descending ? "descending" : "ascending");
      keys ??= new Map([...body.rows].map((row) => [row, sortKey(row.cells[column].textContent)]));
      const items = [...body.rows].map((row) => ({ row, key: keys.get(row) }));
      items.sort((one, other) => compareKeys(one.key, other.key, descending));
      // Away from the page rows move cheaply; in it the browser lays out anew for each.
      body.remove();
      body.append(...items.map(({ row }) => row));
      table.append(body);
    });
  });
}

function makeSearchable(section, table) {
  const count = section.querySelector(".count");
  const search = document.createElement("input");
  search.type = "search";
  search.className = "search";
  search.placeholder = "Search";
  search.setAttribute("aria-label", "Search in " + section.querySelector("h2").firstChild.textContent.trim());
  let rows = null;
  search.addEventListener("input", () => {
    rows ??= [...table.tBodies[0].rows].map((row) => ({ row, text: row.textContent.toLowerCase(), hidden: false }));
    const words = search.value.toLowerCase().split(/\s+/).filter(Boolean);
    let shown = 0;
    for (const item of rows) {
      const hidden = !words.every((word) => item.text.includes(word));
      if (hidden !== item.hidden) item.row.hidden = item.hidden = hidden;
      if (!hidden) ++shown;
    }
    count.textContent = words.length === 0 ? String(rows.length) : shown + " of " + rows.length;
  });
  section.querySelector("h2").append(search);
}

for (const section of document.querySelectorAll("section")) {
  const table = section.querySelector("table");
  if (!table) continue;
  makeSortable(table);
  makeSearchable(section, table);
}
