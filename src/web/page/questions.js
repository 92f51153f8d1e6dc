// What the program asks: messages, lines of text and files. One question at a time, before all windows.
"use strict";

const questions = {
  /// Asks, and hands the answer to the program.
  async ask(question) {
    const asks = { message: askMessage, failure: askMessage, line: askLine, open: askOpen, save: askSave }[question.kind];
    const before = document.activeElement;
    const answer = await asks(question);
    if (before && before.isConnected) before.focus({ preventScroll: true });
    deeds.put("answer", ...(answer === null ? [] : [answer]));
  },
};

/// A dialog that returns what `resolve` is called with. `escape` is what Escape means; undefined: nothing.
function dialogOf(title, content, buttons, escape, classes = "") {
  return new Promise((resolve) => {
    const heading = make("h2", { id: "question-title" }, title);
    const dialog = make("dialog", { class: classes, aria: { labelledby: heading.id } }, heading, ...content);
    const said = dialog.querySelector(".said");
    if (said) said.id = "question-text";
    if (said) dialog.setAttribute("aria-describedby", said.id);
    const end = (value) => {
      dialog.remove();
      resolve(value);
    };
    const row = make("div", { class: "buttons" });
    for (const { text, value, isDefault, name } of buttons) {
      const said = caption(text);
      const button = make("button", { type: "button", data: { key: said.key, answer: name || text } }, ...said.parts);
      button.onclick = () => {
        const chosen = typeof value === "function" ? value() : value;
        if (chosen !== undefined) end(chosen);
      };
      if (isDefault) button.autofocus = true;
      if (isDefault) button.classList.add("default");
      row.append(button);
    }
    dialog.append(row);
    dialog.oncancel = (event) => {
      event.preventDefault();
      if (escape !== undefined) end(escape);
    };
    dialog.onkeydown = (event) => { // a key that ends the question does nothing more to what has the keys behind it
      if (event.key === "Escape") {
        event.preventDefault();
        if (escape !== undefined) end(escape);
      } else if (event.key === "Enter" && event.target.matches("input[type=text]")) {
        event.preventDefault();
        row.querySelector(".default").click();
      } else if (event.key.length === 1 && !event.ctrlKey && !event.target.matches("input,select,textarea")) {
        const found = [...row.children].find((button) => button.dataset.key === event.key.toLowerCase());
        if (!found) return;
        event.preventDefault();
        found.click();
      }
    };
    dialog.onclose = () => dialog.isConnected && dialog.showModal(); // some browsers close it at the second Escape
    dialog.finish = end;
    document.body.append(dialog);
    dialog.showModal();
    const first = dialog.querySelector("[data-first]") || row.querySelector(".default");
    if (first) first.focus();
    if (first && first.select) first.select();
  });
}

function icon(style) {
  const [sign, name] = { 16: ["✕", "critical"], 32: ["?", "question"], 48: ["!", "warning"], 0: ["", "none"] }[style & 0x70]
    || ["i", "information"];
  return sign ? make("span", { class: `icon ${name}`, aria: { hidden: "true" } }, sign) : null;
}

function askMessage(question) {
  const answers = { ok: ["&OK", 1], cancel: ["&Cancel", 2], yes: ["&Yes", 6], no: ["&No", 7] };
  const offered = { 1: ["ok", "cancel"], 3: ["yes", "no", "cancel"], 4: ["yes", "no"] }[question.style & 7] || ["ok"];
  const secondIsDefault = (question.style & 256) !== 0;
  const buttons = offered.map((name, i) => ({ text: answers[name][0], value: answers[name][1], name,
                                              isDefault: i === (secondIsDefault ? 1 : 0) }));
  if (question.offer) buttons.push({ text: question.offer, value: 8, name: "offer" });
  // A question that offers no way out but its answers is not dismissed, unless the default is the cautious answer.
  const asksYesOrNo = (question.style & 7) === 4;
  const escape = offered.includes("cancel") ? 2 : asksYesOrNo ? (secondIsDefault ? 7 : undefined) : 1;
  const text = make("div", {}, make("p", { class: "said" }, textOf(question.text)));
  if (question.details) text.append(make("pre", { class: "details", tabIndex: 0, role: "group", aria: { label: "Details" } }, textOf(question.details)));
  return dialogOf(question.title, [make("div", { class: "message", role: "alert" }, icon(question.style), text)], buttons,
                  escape, question.kind === "failure" ? "failure" : "");
}

function askLine(question) {
  const entry = make("input", { type: "text", value: question.default, spellcheck: false, autocomplete: "off",
                                data: { first: "" }, aria: { label: textOf(question.text) } });
  return dialogOf(question.title, [make("p", { class: "said" }, textOf(question.text)), entry],
                  [{ text: "OK", value: () => entry.value, isDefault: true, name: "ok" },
                   { text: "Cancel", value: null, name: "cancel" }], null, "line");
}

/// The pairs of a filter: what they are called, and a test of names.
function filtersOf(filter) {
  const parts = filter.split("|"), filters = [];
  for (let i = 0; i + 1 < parts.length; i += 2) {
    const patterns = parts[i + 1].split(";").map((pattern) => pattern.trim()).filter(Boolean);
    const tests = patterns.map((pattern) => pattern === "*.*" || pattern === "*" ? /^/ : new RegExp(
      `^${pattern.replace(/[.+^${}()|[\]\\]/g, "\\$&").replaceAll("*", ".*").replaceAll("?", ".")}$`, "i"));
    filters.push({ text: parts[i].split("(")[0].trim(), patterns, fits: (name) => tests.some((test) => test.test(name)) });
  }
  return filters;
}

function askOpen(question) {
  const filters = filtersOf(question.filter);
  const list = make("select", { size: 8, class: "files", data: { first: "" }, aria: { label: "Files" } });
  const kindOfFile = make("select", { aria: { label: "Kind of file" } },
                          ...filters.map((filter, i) => make("option", { value: i }, `${filter.text} (${filter.patterns.join(" ")})`)));
  kindOfFile.selectedIndex = Math.min(Math.max(question.filterIndex - 1, 0), filters.length - 1);
  const fill = (selected) => {
    const filter = filters[kindOfFile.selectedIndex];
    const names = files.names().filter((name) => !filter || filter.fits(name) || name === selected);
    list.replaceChildren(...names.map((name) => make("option", { value: name }, name)));
    list.value = selected && names.includes(selected) ? selected : names.includes(question.start) ? question.start : names[0] || "";
  };
  fill();
  kindOfFile.onchange = () => fill();
  const input = make("input", { type: "file", multiple: true, hidden: true });
  const take = async (chosen) => {
    const names = await files.bring(chosen);
    if (names.length === 1) return dialog().finish(files.path(names[0]));
    if (names.length > 0) fill(names[0]);
  };
  const dialog = () => list.closest("dialog");
  input.onchange = () => take(input.files);
  const choose = make("button", { type: "button", data: { answer: "computer" } }, "From this computer…");
  choose.onclick = () => input.click();
  const zone = make("div", { class: "zone" }, choose, " or drop files here", input);
  zone.ondragover = (event) => event.preventDefault();
  zone.ondrop = (event) => {
    event.preventDefault();
    take(event.dataTransfer.files);
  };
  const open = () => (list.value ? files.path(list.value) : undefined);
  const takeIt = () => {
    if (list.value) dialog().finish(open());
  };
  list.ondblclick = takeIt;
  list.onkeydown = (event) => {
    if (event.key !== "Enter") return;
    event.preventDefault();
    takeIt();
  };
  if (list.options.length === 0) {
    choose.dataset.first = "";
    delete list.dataset.first;
  }
  return dialogOf(question.title, [zone, make("p", { class: "said" }, "Files of this analysis:"), list, kindOfFile],
                  [{ text: "Open", value: open, isDefault: true, name: "open" },
                   { text: "Cancel", value: null, name: "cancel" }], null, "open");
}

/** What the program will add to the name of a file: nothing where it has what it need have. */
function addedTo(name, { extension, adding }) {
  if (adding === "where none" && name.includes(".", 1)) return "";
  return adding !== "always" && name.endsWith(extension) ? "" : extension;
}

async function askSave(question) {
  const start = question.start.split("/").pop();
  for (let proposed = start;;) {
    const entry = make("input", { type: "text", value: proposed, spellcheck: false, autocomplete: "off",
                                  data: { first: "" }, aria: { label: "File name" } });
    const name = await dialogOf(question.title, [make("p", { class: "said" }, "Save as (it is downloaded too):"), entry],
                                [{ text: "Save", value: () => entry.value.trim().replaceAll("/", "-") || undefined,
                                   isDefault: true, name: "save" },
                                 { text: "Cancel", value: null, name: "cancel" }], null, "line");
    if (name === null) return null;
    const added = addedTo(name, question);
    if (!files.names().includes(name + added) ||
        await dialogOf(question.title, [make("p", { class: "said" }, `${name + added} already exists.\nDo you want to replace it?`)],
                       [{ text: "&Yes", value: true, name: "yes" }, { text: "&No", value: false, isDefault: true, name: "no" }],
                       false)) {
      files.named.add(name + added);
      return files.path(name);
    }
    proposed = name;
  }
}
