// Tables: a current cell that the arrows move, a range of cells that grows with Shift or by the mouse, cells that are typed
// into, copied and pasted as spreadsheets do it.
"use strict";

function makeGrid(does) {
  const body = make("tbody", { role: "rowgroup" }), head = make("thead", { role: "rowgroup" });
  // What has the keys is what is known as the table.
  const element = make("div", { class: "grid", tabIndex: 0, role: "grid" }, make("table", { role: "none" }, head, body));
  // A range goes from the corner where it was begun to the current cell.
  Object.assign(element, { head, body, does, corner: [0, 0], current: [0, 0] });
  element.onpointerdown = (event) => {
    const cell = event.target.closest("td,th");
    if (cell && event.button === 0 && event.target.tagName !== "INPUT") setCurrent(element, cell.row, cell.column, event.shiftKey);
  };
  element.onpointerover = (event) => {
    const cell = event.target.closest("td");
    const drawn = event.pointerType === "mouse" && event.buttons === 1 && document.activeElement === element;
    if (cell && drawn) setCurrent(element, cell.row, cell.column, true);
  };
  element.onclick = (event) => {
    const cell = event.target.closest("td,th");
    if (!cell || event.target.tagName === "INPUT") return;
    setCurrent(element, cell.row, cell.column, event.shiftKey);
    element.focus();
    does("click", cell.row, cell.column);
  };
  element.ondblclick = (event) => {
    const cell = event.target.closest("td,th");
    if (!cell || event.target.tagName === "INPUT") return;
    if (isTyped(element, cell)) beginEntry(element, "");
    else does("double", cell.row, cell.column);
  };
  element.onkeydown = (event) => gridKey(element, event);
  return element;
}

function showGrid(element, it) {
  const rowOf = (cells, row, tag) =>
    make("tr", { role: "row" }, ...cells.map((cell, column) => {
      const [text, fore, back] = Array.isArray(cell) ? cell : [cell, "", ""];
      const element = make(tag, { role: tag === "th" ? "columnheader" : "gridcell" }, text);
      Object.assign(element, { row, column });
      colour(element, fore, back);
      return element;
    }));
  element.it = it;
  const rows = it.rows.map((cells, row) => rowOf(cells, row, row < it.headingRows ? "th" : "td"));
  // Headings of several lines are one, as tall as they are.
  element.head.replaceChildren(...rows.slice(0, it.headingRows));
  const entry = element.entry;
  element.body.replaceChildren(...rows.slice(it.headingRows));
  it.widths.forEach((width, column) => {
    for (const row of rows.slice(0, 1)) if (row.children[column]) row.children[column].style.minWidth = `${width + 1}ch`;
  });
  if (it.selectsRows) {
    for (const row of rows) {
      row.classList.toggle("selected", row === rows[it.selectedRow]);
      row.setAttribute("aria-selected", row === rows[it.selectedRow]);
    }
    if (it.selectedRow >= it.headingRows) element.current = [it.selectedRow, element.current[1]];
  }
  if (element.shownTop !== it.topRow) {
    element.shownTop = it.topRow;
    if (rows[it.topRow]) element.scrollTop = rows[it.topRow].offsetTop - element.head.offsetHeight;
  }
  setCurrent(element, ...element.current, true);
  if (entry && entry.input.isConnected === false) reopenEntry(element, entry);
}

function cellAt(element, row, column) {
  const heading = element.it ? element.it.headingRows : 0;
  const line = row < heading ? element.head.children[row] : element.body.children[row - heading];
  return line ? line.children[column] : undefined;
}

function isTyped(element, cell) {
  return cell.tagName === "TD" && Boolean(element.it.typed[cell.column]);
}

/// Makes a cell the current one. The range goes up to it where `extends_` says so, and otherwise begins with it.
function setCurrent(element, row, column, extends_ = false) {
  const last = element.it.rows.length - 1, right = (element.it.rows[0] || []).length - 1;
  row = Math.max(Math.min(row, last), Math.min(element.it.headingRows, last));
  column = Math.max(0, Math.min(column, right));
  element.current = [row, column];
  if (!extends_ || element.it.selectsRows) element.corner = [row, column];
  for (const old of element.querySelectorAll(".current")) {
    old.classList.remove("current");
    old.removeAttribute("id");
  }
  showRange(element);
  const cell = cellAt(element, row, column);
  if (!cell) return;
  cell.classList.add("current");
  cell.id = `${element.id}.cell`;
  element.setAttribute("aria-activedescendant", cell.id);
}

/// The first and last row and column of the range: all of a row where rows are selected.
function rangeOf(element) {
  const [[row, column], [toRow, toColumn]] = [element.corner, element.current];
  const columns = element.it.selectsRows ? [0, element.it.rows[0].length - 1] : [column, toColumn].sort((a, b) => a - b);
  return { rows: [row, toRow].sort((a, b) => a - b), columns };
}

function cellsOf(element, { rows, columns }) {
  const lines = [];
  for (let row = rows[0]; row <= rows[1]; ++row) {
    lines.push([]);
    for (let column = columns[0]; column <= columns[1]; ++column) lines.at(-1).push(cellAt(element, row, column));
  }
  return lines;
}

/// A range of more than one cell is seen.
function showRange(element) {
  for (const old of element.querySelectorAll(".chosen")) {
    old.classList.remove("chosen");
    old.removeAttribute("aria-selected");
  }
  if (String(element.corner) === String(element.current)) return;
  for (const cell of cellsOf(element, rangeOf(element)).flat()) {
    if (!cell) continue;
    cell.classList.add("chosen");
    cell.setAttribute("aria-selected", "true");
  }
}

/// Columns are parted by tabs, as spreadsheets take them.
function textOfRange(element) {
  const lines = cellsOf(element, rangeOf(element));
  return lines.map((cells) => cells.map((cell) => (cell ? cell.textContent : "")).join("\t")).join("\n");
}

/// Moves the current cell, into sight, and selects its row where rows are selected.
function moveTo(element, row, column, extends_ = false) {
  setCurrent(element, row, column, extends_);
  const cell = cellAt(element, ...element.current);
  if (!cell) return;
  cell.scrollIntoView({ block: "nearest", inline: "nearest" });
  if (element.it.selectsRows) element.does("select", element.current[0]);
}

function gridKey(element, event) {
  if (event.target.tagName === "INPUT") return;
  const [row, column] = element.current;
  const page = Math.max(1, Math.floor(element.clientHeight / 24) - 1);
  const moves = { ArrowDown: [1, 0], ArrowUp: [-1, 0], ArrowRight: [0, 1], ArrowLeft: [0, -1], PageDown: [page, 0],
                  PageUp: [-page, 0], Home: [0, -column], End: [0, 1e6] };
  const cell = cellAt(element, row, column);
  if (moves[event.key] && !event.altKey) {
    event.preventDefault();
    moveTo(element, row + moves[event.key][0], column + moves[event.key][1], event.shiftKey);
  } else if (event.key.toLowerCase() === "a" && (event.ctrlKey || event.metaKey) && !element.it.selectsRows) {
    event.preventDefault();
    setCurrent(element, 0, 0);
    setCurrent(element, 1e9, 1e9, true);
  } else if (!cell || event.ctrlKey || event.altKey || event.metaKey) {
    return;
  } else if (isTyped(element, cell) && (event.key === "Enter" || event.key === "F2")) {
    event.preventDefault();
    event.stopPropagation();
    beginEntry(element, "");
  } else if (isTyped(element, cell) && event.key.length === 1 && event.key !== " ") {
    event.preventDefault();
    beginEntry(element, event.key);
  } else if (event.key === "Enter" || event.key === " ") {
    event.preventDefault();
    event.stopPropagation();
    element.does(event.key === "Enter" ? "double" : "click", row, column);
  }
}

/// Lays an entry over the current cell. The form is told that the cell is edited, and what was typed when it is left.
function beginEntry(element, typed) {
  const [row, column] = element.current;
  const cell = cellAt(element, row, column);
  const input = make("input", { type: "text", class: "cell-entry", spellcheck: false, value: typed || cell.textContent });
  const entry = { input, row, column };
  const leave = (text, down, right, moves) => {
    if (element.entry !== entry) return;
    element.entry = null;
    input.remove();
    // An entry that is given up is an empty one, which the form answers with what stood there.
    element.does("double", row, column);
    element.does("enter", row, column, text);
    if (moves) {
      element.focus();
      moveTo(element, row + down, column + right);
    }
  };
  input.onkeydown = (event) => {
    const moves = { Enter: [1, 0], ArrowDown: [1, 0], ArrowUp: [-1, 0], Tab: [0, 1] }[event.key];
    if (event.key !== "Escape" && !moves) return;
    event.preventDefault();
    event.stopPropagation();
    if (moves) leave(input.value, ...moves, true);
    else leave("", 0, 0, true);
  };
  input.commit = () => leave(input.value, 0, 0, false);
  input.onblur = () => {
    if (input.isConnected) input.commit();
  };
  element.entry = entry;
  cell.append(input);
  input.focus();
  if (!typed) input.select();
}

/// The table was shown anew below an open entry.
function reopenEntry(element, entry) {
  const cell = cellAt(element, entry.row, entry.column);
  if (!cell) return;
  cell.append(entry.input);
  entry.input.focus();
}

/// Enters lines into the first cell of the range and those below, what tabs part into the columns beside.
function paste(element, text) {
  if (element.entry) element.entry.input.remove();
  element.entry = null;
  const { rows: [row], columns } = rangeOf(element);
  const column = element.it.selectsRows ? element.current[1] : columns[0];
  textOf(text).replace(/\n$/, "").split("\n").forEach((line, down) =>
    line.split("\t").forEach((entered, right) => {
      const cell = cellAt(element, row + down, column + right);
      if (!cell || !isTyped(element, cell)) return;
      element.does("double", row + down, column + right);
      element.does("enter", row + down, column + right, entered);
    }));
}

// Some browsers tell the document, and not the table that has the keys, of what is copied and pasted.
document.addEventListener("copy", (event) => {
  const grid = document.activeElement;
  if (!grid.matches(".grid") || !cellAt(grid, ...grid.current)) return;
  event.clipboardData.setData("text/plain", textOfRange(grid));
  event.preventDefault();
});
document.addEventListener("paste", (event) => {
  const text = event.clipboardData.getData("text/plain"), grid = document.activeElement.closest(".grid");
  // Into an open entry goes one line, as into any.
  if (!grid || (document.activeElement !== grid && !text.includes("\n"))) return;
  event.preventDefault();
  paste(grid, text);
});
