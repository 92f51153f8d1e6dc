// The controls of a form: each kind is made once and brought up to date with what the program tells of it.
"use strict";

/// What makes the element of a control, and shows in it what the program told; `does` hands a deed to the program.
const kinds = {
  label: {
    make: () => make("span", { class: "label" }),
    show(element, it) {
      element.textContent = textOf(it.text);
      colour(element, it.fore);
    },
  },

  button: {
    make: (does) => make("button", { type: "button", onclick: () => does("press") }),
    show(element, it) {
      const said = caption(it.text);
      element.replaceChildren(...said.parts);
      element.dataset.key = said.key;
    },
  },

  option: {
    make: (does, it) => switchElement("radio", does, it),
    show: showSwitch,
  },
  check: {
    make: (does, it) => switchElement("checkbox", does, it),
    show: showSwitch,
  },

  text: {
    make(does) {
      const element = make("input", { type: "text", spellcheck: false, autocomplete: "off" });
      element.commit = () => {
        if (element.readOnly || element.value === element.shown) return;
        element.shown = element.value;
        does("type", element.value);
      };
      element.onchange = element.commit;
      const opens = () => element.dataset.opens === "true" && !element.disabled;
      element.onclick = () => {
        if (opens()) does("press");
      };
      element.onkeydown = (event) => {
        if (!element.readOnly || !opens() || (event.key !== " " && event.key !== "Enter")) return;
        event.preventDefault();
        event.stopPropagation();
        does("press");
      };
      return element;
    },
    show(element, it) {
      element.readOnly = it.readOnly;
      element.dataset.opens = it.opens;
      if (element.shown !== it.text || element !== document.activeElement) element.value = it.text;
      element.shown = it.text;
      element.title = it.tip || it.text;
    },
  },

  combo: {
    make(does) {
      const line = make("input", { type: "text", spellcheck: false, autocomplete: "off", role: "combobox",
                                    aria: { expanded: "false" } });
      const items = make("select", { tabIndex: -1, aria: { hidden: "true" } });
      const element = make("span", { class: "combo" }, line, items);
      element.line = line;
      line.commit = () => {
        if (line.value === line.shown) return;
        line.shown = line.value;
        does("type", line.value);
      };
      line.onchange = line.commit;
      line.onkeydown = (event) => {
        const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
        if (!step || items.options.length === 0) return;
        event.preventDefault();
        const at = [...items.options].findIndex((option) => option.value === line.value);
        const next = Math.min(Math.max(at + step, 0), items.options.length - 1);
        line.value = items.options[next].value;
        line.commit();
      };
      items.onchange = () => {
        line.value = items.value;
        line.commit();
        line.focus();
      };
      return element;
    },
    show(element, it) {
      const [line, items] = element.children;
      if (items.shown !== it.items.join("\n")) {
        items.shown = it.items.join("\n");
        items.replaceChildren(...it.items.map((item) => make("option", { value: item }, item)));
        line.size = Math.min(Math.max(5, ...it.items.map((item) => item.length + 2)), 40);
      }
      line.value = line.shown = it.text;
      items.value = it.text;
      line.disabled = items.disabled = !it.enabled;
    },
  },

  list: {
    make(does) {
      const element = make("select", { size: 5, ondblclick: () => does("double") });
      element.onchange = () => does("select", element.selectedIndex);
      return element;
    },
    show(element, it) {
      if (element.shown !== it.items.join("\n")) {
        element.shown = it.items.join("\n");
        element.replaceChildren(...it.items.map((item) => make("option", {}, item)));
      }
      element.selectedIndex = it.selected;
    },
  },

  pane: {
    make(does) {
      const element = make("textarea", { readOnly: true, spellcheck: false });
      element.commit = () => {
        if (element.readOnly || element.value === element.shown) return;
        const ends = element.crlf ? element.value.replaceAll("\n", "\r\n") : element.value;
        element.shown = element.value;
        does("type", ends);
      };
      element.onblur = () => {
        element.commit();
        element.readOnly = true;
      };
      // A text that is read: a stray key changes nothing, F2 edits.
      const edit = () => (element.readOnly = !(element.dataset.edits === "true"));
      element.ondblclick = edit;
      element.onkeydown = (event) => {
        if (event.key === "F2") edit();
      };
      return element;
    },
    show(element, it) {
      element.classList.toggle("fixed", it.fixedPitch);
      element.wrap = it.wraps ? "soft" : "off";
      element.dataset.edits = !it.readOnly;
      element.title = it.readOnly ? it.tip : `${it.tip} (F2 edits this text)`.trim();
      if (it.more !== undefined) {
        const atEnd = element.scrollTop + element.clientHeight >= element.scrollHeight - 4;
        element.value += textOf(it.more);
        if (atEnd) element.scrollTop = element.scrollHeight;
      } else if (it.textIsNew) {
        element.crlf = it.text.includes("\r\n");
        element.value = textOf(it.text);
        element.scrollTop = 0;
        if (element !== document.activeElement) element.setSelectionRange(0, 0); // where who comes by Tab begins to read
      }
      element.shown = element.value;
    },
  },

  canvas: {
    make: () => make("div", { class: "canvas", role: "img" }),
    show(element, it) {
      if (element.shown === it.svg) return;
      element.shown = it.svg;
      showDrawing(element, it.svg);
    },
  },

  grid: { make: makeGrid, show: showGrid },
};

function switchElement(type, does, it) {
  const input = make("input", { type, name: type === "radio" ? `${it.form}.${it.group}` : "" });
  input.onclick = () => does("press");
  return make("label", { class: "switch" }, input, make("span"));
}

function showSwitch(element, it) {
  const said = caption(it.text);
  element.lastChild.replaceChildren(...said.parts);
  element.dataset.key = said.key;
  element.firstChild.checked = it.value;
  element.firstChild.disabled = !it.enabled;
}

/// A control that was told for the first time.
function makeControl(form, it) {
  const kind = kinds[it.kind];
  if (!kind) return null;
  const element = kind.make((deed, ...more) => deeds.put(deed, form, it.name, ...more), { ...it, form });
  element.dataset.name = it.name;
  element.id = `${form}.${it.name}`;
  return element;
}

function showControl(element, it) {
  element.hidden = !it.visible;
  element.title = it.tip;
  if ("disabled" in element) element.disabled = !it.enabled;
  kinds[it.kind].show(element, it);
}

/// Hands over what is typed and not left yet.
function commitTyped() {
  const active = document.activeElement;
  if (active && active.commit) active.commit();
}
