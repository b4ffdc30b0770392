
"use strict";
// Tables stand in the page as they are; this makes them searchable and sortable.

// Numbers by size, texts as people order them; what is empty comes last either way.
const collator = new Intl.Collator(undefined, { numeric: true, sensitivity: "base" });

function compareCells(one, other, descending) {
  if (one === "" || other === "") return (one === "") - (other === "");
  const order = collator.compare(one, other);
  return descending ? -order : order;
}

function makeSortable(table) {
  const headings = [...table.tHead.rows[0].cells];
  const body = table.tBodies[0];
  headings.forEach((heading, column) => {
    const button = document.createElement("button");
    button.type = "button";
    button.append(...heading.childNodes);
    heading.append(button);
    button.addEventListener("click", () => {
      const descending = heading.getAttribute("aria-sort") === "ascending";
      for (const other of headings) other.removeAttribute("aria-sort");
      heading.setAttribute("aria-sort", descending ? "descending" : "ascending");
      const keyed = [...body.rows].map((row) => [row.cells[column].textContent, row]);
      keyed.sort((one, other) => compareCells(one[0], other[0], descending));
      body.append(...keyed.map((pair) => pair[1]));
    });
  });
}

function makeSearchable(section, table) {
  const rows = [...table.tBodies[0].rows].map((row) => [row.textContent.toLowerCase(), row]);
  const count = section.querySelector(".count");
  const search = document.createElement("input");
  search.type = "search";
  search.className = "search";
  search.placeholder = "Search";
  search.setAttribute("aria-label", "Search in " + section.querySelector("h2").firstChild.textContent.trim());
  search.addEventListener("input", () => {
    const words = search.value.toLowerCase().split(/\s+/).filter(Boolean);
    let shown = 0;
    for (const [text, row] of rows) {
      row.hidden = !words.every((word) => text.includes(word));
      if (!row.hidden) ++shown;
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
