// The windows of the forms in the work area, laid out as the program says, and what the keys do in them.
"use strict";

const windows = {
  all: new Map(), // by the name of the form
  highest: 1,
  opened: 0,

  /// Takes what is new of the forms.
  show(news) {
    for (const form of news) {
      let window = windows.all.get(form.form);
      if (!window) windows.all.set(form.form, (window = form.form === "frmMain" ? new MainWindow() : new FormWindow(form)));
      window.take(form);
    }
  },

  toFront(name) {
    const window = windows.all.get(name);
    if (window && window.raise) window.raise();
  },

  /// The window in front, which has the keys.
  front() {
    const open = [...windows.all.values()].filter((window) => window.isOpen && window.isOpen());
    return open.reduce((front, window) => (!front || window.height() > front.height() ? window : front), null);
  },

  /// The next window has the keys.
  goOn() {
    const open = [...windows.all.values()].filter((window) => window.isOpen && window.isOpen());
    const lowest = open.reduce((low, window) => (!low || window.height() < low.height() ? window : low), null);
    if (!lowest) return;
    lowest.raise();
    lowest.focusFirst();
  },

  /// The window in front has the keys whenever the program waits, also when what had them is gone or does nothing now.
  keepKeys() {
    const front = windows.front(), has = document.activeElement;
    if (!front || document.querySelector("dialog[open]")) return;
    if (has === document.body || !windows.takesKeys(has)) front.focusAgain();
  },

  takesKeys(element) {
    return element && element.isConnected && !element.disabled && element.offsetParent !== null;
  },

  /// The area has another size: what still stands where it was opened takes the room that there is now.
  refit() {
    for (const window of windows.all.values()) if (window.isOpen && window.isOpen() && window.standsAsPlaced()) window.place();
  },

  arrange(how) {
    const open = [...windows.all.values()].filter((window) => window.isOpen && window.isOpen());
    const area = document.getElementById("area");
    const wide = area.clientWidth, high = area.clientHeight, share = 1 / Math.max(1, open.length);
    open.forEach((window, i) => {
      if (how === "cascade") window.placeAt(26 * i, 26 * i, wide * 0.7, high * 0.7);
      if (how === "rows") window.placeAt(0, high * share * i, wide, high * share);
      if (how === "columns") window.placeAt(wide * share * i, 0, wide * share, high);
    });
  },
};

/// The controls of a form by name, with what the program told of them last.
class Controls {
  constructor(form) {
    this.form = form;
    this.elements = new Map();
    this.told = new Map();
  }

  take(news) {
    for (const it of news) {
      const before = this.told.get(it.name) || {};
      const now = { ...before, ...it, more: it.more, textIsNew: it.text !== undefined };
      if (it.more !== undefined) now.text = before.text + it.more;
      this.told.set(it.name, now);
      if (it.kind === "entry" || it.kind === "status") continue;
      let element = this.elements.get(it.name);
      if (!element) {
        element = makeControl(this.form, it);
        if (!element) continue;
        this.elements.set(it.name, element);
      }
      showControl(element, now);
    }
  }

  entries() {
    return [...this.told.values()].filter((it) => it.kind === "entry");
  }
}

class FormWindow {
  constructor(form) {
    this.name = form.form;
    this.layout = form.layout;
    this.controls = new Controls(form.form);
    this.title = make("h2", { id: `${this.name}.title` });
    this.closer = make("button", { type: "button", class: "closer", title: this.layout.escape === "close" ? "Close (Escape)" : "Close", aria: { label: "Close" } }, "×");
    this.closer.onclick = () => this.close();
    const sizer = make("button", { type: "button", class: "closer sizer", title: "Full size", aria: { label: "Full size" } }, "▢");
    sizer.onclick = () => this.element.classList.toggle("full");
    const bar = make("header", {}, this.title, sizer, this.closer);
    this.menus = new MenuBar(this.controls, false);
    this.groups = []; // seen while one of their controls is
    this.content = make("div", { class: "content" });
    this.pinned = make("div", { class: "pinned" });
    this.element = make("section", { class: "window", role: "dialog", hidden: true,
                                     aria: { labelledby: this.title.id }, data: { form: this.name, place: this.layout.place } },
                        bar, this.menus.element, this.content, this.pinned);
    this.closer.hidden = sizer.hidden = this.layout.stays;
    this.element.addEventListener("pointerdown", () => this.raise(), true);
    this.element.addEventListener("focusin", (event) => {
      this.last = event.target;
      this.raise();
    });
    this.element.onkeydown = (event) => this.key(event);
    this.drag(bar);
    document.getElementById("area").append(this.element);
  }

  take(news) {
    if (news.controls) this.controls.take(news.controls);
    if (!this.laidOut && news.controls) this.layOut();
    if (news.controls && this.controls.entries().length > 0) this.menus.show();
    if (news.title !== undefined) this.title.textContent = this.title.title = news.title; // which may be cut
    if (news.takesInput !== undefined) this.element.classList.toggle("rests", !news.takesInput);
    for (const group of this.groups)
      group.hidden = ![...group.querySelectorAll("[data-name]")].some((element) => !element.hidden);
    if (news.visible !== undefined) this.setVisible(news.visible);
    const wanted = news.focus && this.controls.elements.get(news.focus);
    if (wanted) (wanted.line || wanted).focus();
  }

  setVisible(visible) {
    if (this.element.hidden === !visible) return;
    this.element.hidden = !visible;
    if (!visible) {
      const next = windows.front();
      if (next) next.raise();
      return;
    }
    if (!this.placed) this.place();
    this.raise();
    this.focusFirst();
  }

  focusFirst() {
    if (this.name === "frmMenu" && windows.takesKeys(this.last)) return this.last.focus();
    const first = this.element.querySelector(
      ".content :is(button,input,select,textarea,.grid):not([disabled]):not([hidden]), .pinned button:not([disabled])");
    if (first) first.focus({ preventScroll: true });
  }

  focusAgain() {
    if (windows.takesKeys(this.last)) this.last.focus({ preventScroll: true });
    else this.focusFirst();
  }

  isOpen() {
    return !this.element.hidden;
  }

  height() {
    return Number(this.element.style.zIndex);
  }

  raise() {
    const above = this.layout.place === "above" ? 50000 : 0; // whatever comes to the front
    if (this.height() !== windows.highest + above) this.element.style.zIndex = ++windows.highest + above;
    for (const other of document.querySelectorAll(".window")) other.classList.toggle("front", other === this.element);
  }

  close() {
    commitTyped();
    deeds.put("close", this.name);
  }

  // Layout.

  layOut() {
    this.laidOut = true;
    for (const box of this.layout.parts) {
      const element = this.draw(box);
      if (!element) continue;
      if (box.kind === "pinned") this.pinned.append(...element.childNodes);
      else this.content.append(element);
    }
    const drawing = this.controls.elements.get("picGraph");
    if (drawing) {
      showDrawing(drawing, drawing.shown);
      this.pinned.prepend(savePictureButton(this.name, () => this.controls.told.get("picGraph")));
    }
    for (const element of this.content.querySelectorAll(".row"))
      for (const label of element.querySelectorAll(":scope > .label")) this.nameBy(label);
    for (const label of this.content.querySelectorAll(":is(.column,.group,.scrolled) > .label")) this.nameBy(label);
    for (const element of this.content.querySelectorAll("input:not([type]),input[type=text],select:not([aria-hidden]),textarea,.grid,.canvas"))
      if (!element.hasAttribute("aria-labelledby")) element.setAttribute("aria-labelledby", this.title.id);
  }

  /// A field is called what the label before it says.
  nameBy(label) {
    const field = label.nextElementSibling;
    const target = field && (field.line || (field.matches("input,select,textarea,.grid") ? field : null));
    if (!target || target.hasAttribute("aria-labelledby")) return;
    label.id = label.id || `${this.name}.${label.dataset.name}`;
    target.setAttribute("aria-labelledby", label.id);
  }

  draw(box) {
    if (box.kind === "control") return this.drawControl(box);
    const parts = (box.parts || []).map((part) => this.draw(part)).filter(Boolean);
    const drawn = box.kind === "group" ? this.drawGroup(box, parts)
                  : box.kind === "stage" ? this.drawStage(box, parts) : make("div", { class: box.kind }, ...parts);
    if (box.look) drawn.classList.add(box.look);
    return this.sized(drawn, box);
  }

  drawControl(box) {
    const element = this.controls.elements.get(box.name);
    if (!element) return null;
    if (box.look) element.classList.add(box.look);
    return this.sized(element, box);
  }

  drawGroup(box, parts) {
    const group = make("fieldset", { class: "group" }, box.name ? make("legend", {}, box.name) : null, ...parts);
    this.groups.push(group);
    return group;
  }

  drawStage(box, parts) {
    this.stages = (this.stages || 0) + 1;
    return make("div", { class: "stage", role: "group", aria: { label: box.name } },
                make("h3", {}, make("span", { class: "badge", aria: { hidden: "true" } }, String(this.stages)), box.name),
                ...parts);
  }

  sized(element, box) {
    if (box.grows) element.style.flex = `${box.grows} 1 0`;
    if (box.grows) element.classList.add("grows");
    if (box.lines) element.style.minHeight = `calc(${box.lines} * 1.35em + ${box.kind === "control" ? 16 : 0}px)`;
    if (box.columns) element.style.minWidth = `${box.columns}ch`;
    return element;
  }

  // Place.

  place() {
    this.placed = true;
    const area = document.getElementById("area");
    const wide = area.clientWidth, high = area.clientHeight;
    const menu = windows.all.get("frmMenu");
    const beside = menu && menu !== this && menu.placed && menu.element.offsetWidth < wide / 2 ? 442 : 0;
    const wanted = [this.layout.columns * 7.6 + 60, this.layout.lines * 17 + 90];
    if (this.layout.place === "whole") return this.placeAt(0, 0, wide, high);
    if (this.layout.place === "left") return this.placeAt(8, 8, Math.min(426, wide - 16), this.name === "frmMenu" ? 0 : high - 16);
    const room = wide - beside, size = [Math.min(wanted[0], room - 8), Math.min(wanted[1], high - 8)];
    this.turn ??= windows.opened++; // kept, so that it stands where it stood when the area is as before
    const step = 26 * (this.turn % 6);
    const left = this.layout.place === "above" ? 8 : beside + Math.min(Math.max(0, (room - size[0]) / 2 + step), room - size[0]);
    const top = this.layout.place === "above" ? 8 : Math.min(Math.max(0, (high - size[1]) / 3 + step), high - size[1]);
    this.placeAt(left, top, size[0], this.layout.lines > 1 ? size[1] : 0);
  }

  /// A height of 0: as much as it needs.
  placeAt(left, top, width, height) {
    this.element.classList.remove("full");
    Object.assign(this.element.style, { left: `${left}px`, top: `${top}px`, width: `${width}px`,
                                        height: height ? `${height}px` : "auto" });
    this.stands = this.where();
  }

  where() {
    const { left, top, width, height } = this.element.style;
    return [left, top, width, height].join();
  }

  standsAsPlaced() {
    return this.stands === this.where();
  }

  drag(bar) {
    bar.onpointerdown = (event) => {
      if (event.target.closest("button") || this.element.classList.contains("full")) return;
      const { left, top } = this.element.getBoundingClientRect(), area = this.element.parentElement.getBoundingClientRect();
      const from = [event.clientX - left + area.left, event.clientY - top + area.top];
      bar.setPointerCapture(event.pointerId);
      bar.onpointermove = (move) => {
        this.element.style.left = `${Math.min(Math.max(60 - this.element.offsetWidth, move.clientX - from[0]), area.width - 60)}px`;
        this.element.style.top = `${Math.min(Math.max(0, move.clientY - from[1]), area.height - 30)}px`;
      };
      bar.onpointerup = () => (bar.onpointermove = null);
    };
    bar.ondblclick = (event) => {
      if (!event.target.closest("button")) this.element.classList.toggle("full");
    };
  }

  // Keys.

  key(event) {
    if (event.defaultPrevented) return;
    const target = event.target;
    if (event.key === "Tab" && this.layout.lastByTab.length > 0) this.tab(event);
    if (event.key === "F4" && event.ctrlKey && !this.closer.hidden) {
      event.preventDefault();
      return this.close();
    }
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    if (event.key === "Escape") {
      if (this.layout.escape === "close") return this.close();
      if (this.press(this.layout.escape)) event.preventDefault();
    } else if (event.key === "Enter" && !target.matches("button,textarea:not([readonly])")) {
      commitTyped();
      if (this.press(this.layout.enter)) event.preventDefault();
    }
  }

  /// Goes past what Tab shall come to last, and to that before the buttons below.
  tab(event) {
    const stops = [...this.element.querySelectorAll(
      ".content :is(button,input,select,textarea,.grid):not([tabindex='-1']), .pinned button")];
    const seen = stops.filter((stop) => !stop.disabled && stop.offsetParent !== null);
    const turn = (stop) => (this.pinned.contains(stop) ? 2 : this.layout.lastByTab.includes(stop.dataset.name) ? 1 : 0);
    seen.sort((one, other) => turn(one) - turn(other));
    const at = seen.indexOf(document.activeElement), next = seen[at + (event.shiftKey ? -1 : 1)];
    if (at < 0 || !next) return;
    event.preventDefault();
    next.focus();
  }

  press(name) {
    const button = name && this.controls.elements.get(name);
    if (!button || button.disabled || button.hidden) return false;
    commitTyped();
    button.click();
    return true;
  }

  /// The control that Alt with this letter presses; null when there is none.
  pressedBy(letter) {
    return [...this.element.querySelectorAll("[data-key]")].find(
      (element) => element.dataset.key === letter && !element.disabled && element.offsetParent !== null);
  }
}

/// The frame of the page: its title, menus and footer, whose lines begin with what the status bars tell.
class MainWindow {
  constructor() {
    this.controls = new Controls("frmMain");
    this.menus = new MenuBar(this.controls, true);
    document.getElementById("menus").replaceWith(this.menus.element);
  }

  take(news) {
    if (news.layout) this.layOut(news.layout);
    if (news.controls) {
      this.controls.take(news.controls);
      this.menus.show();
      for (const it of news.controls) if (it.kind === "status") this.showStatus(it);
    }
    if (news.title !== undefined) document.getElementById("program").textContent = news.title;
  }

  layOut(layout) {
    const lines = document.querySelectorAll("footer .lines"), last = lines.length - 1;
    const live = { role: "status", aria: { live: "polite" } }; // the last line tells what is going on
    layout.parts.forEach((line, i) =>
      lines[i].prepend(...line.parts.map((bar) =>
        make("span", { id: bar.name, class: bar.grows ? "grows" : "", ...(i === last ? live : {}) }))));
  }

  showStatus(it) {
    const place = document.getElementById(it.name);
    if (!place) return;
    const texts = it.panels.filter(Boolean);
    if (place.textContent !== texts.join("   ")) place.textContent = texts.join("   ");
  }
}

window.addEventListener("resize", windows.refit);
document.addEventListener("keydown", (event) => {
  if (event.key !== "F6" || document.querySelector("dialog[open]")) return;
  event.preventDefault();
  commitTyped();
  windows.goOn();
});

// Alt with an underlined letter: in the window in front first, then in its menus, then in the menus above.
document.addEventListener("keydown", (event) => {
  if (!event.altKey || event.ctrlKey || event.metaKey || event.key.length !== 1 || document.querySelector("dialog[open]")) return;
  const letter = event.key.toLowerCase();
  const front = windows.front(), main = windows.all.get("frmMain");
  const pressed = front && front.pressedBy(letter);
  if (pressed) {
    event.preventDefault();
    commitTyped();
    const target = pressed.matches("button") ? pressed : pressed.firstChild;
    target.focus();
    target.click();
  } else if ((front && front.menus.openBy(letter)) || (main && main.menus.openBy(letter))) {
    event.preventDefault();
  }
});
