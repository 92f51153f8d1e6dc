// Menu bars with their menus, as the arrows, Enter, Escape and underlined letters go through them.
"use strict";

class MenuBar {
  constructor(controls, isMain) {
    this.controls = controls;
    this.element = make("div", { class: "menubar", role: "menubar", hidden: true });
    if (isMain) this.element.id = "menus";
    this.element.onkeydown = (event) => this.key(event);
    document.addEventListener("pointerdown", (event) => this.element.contains(event.target) || this.close());
  }

  show() {
    const entries = this.controls.entries();
    this.element.hidden = entries.length === 0;
    const text = JSON.stringify(entries.map((it) => [it.name, it.text, it.enabled, it.visible, it.tip]));
    if (text === this.shown) return;
    this.shown = text;
    const below = (name) => entries.filter((it) => it.parent === name);
    const item = (it, inBar) => {
      const said = caption(it.text), children = below(it.name);
      const button = make("button", { type: "button", role: "menuitem", tabIndex: -1, title: it.tip,
                                      disabled: !it.enabled, data: { key: said.key, name: it.name } }, ...said.parts);
      const menu = children.length > 0 ? make("div", { class: "menu", role: "menu", hidden: true,
                                                       aria: { label: said.plain } },
                                              ...children.map((child) => item(child, false))) : null;
      if (menu) button.setAttribute("aria-haspopup", "menu");
      if (menu) button.setAttribute("aria-expanded", "false");
      button.onclick = () => {
        if (menu) return this.open(button, menu);
        this.close();
        commitTyped();
        deeds.put("press", this.controls.form, it.name);
      };
      if (menu && !inBar) button.append(make("span", { class: "sub", aria: { hidden: "true" } }, "▸"));
      const element = make("div", { class: inBar ? "bar-entry" : "entry" }, button, menu);
      button.onpointerenter = () => {
        if (inBar && this.element.querySelector(".menu:not([hidden])") && menu) this.open(button, menu);
        if (!inBar && menu) this.open(button, menu);
      };
      element.hidden = !it.visible;
      return element;
    };
    this.element.replaceChildren(...below("").map((it) => item(it, true)));
    const first = this.element.querySelector("button:not([disabled])");
    if (first) first.tabIndex = 0;
  }

  open(button, menu) {
    if (button.disabled) return;
    const above = button.closest(".menu");
    for (const other of (above || this.element).querySelectorAll(".menu")) this.showMenu(other, other === menu);
    const first = menu.querySelector(":scope > .entry:not([hidden]) > button:not([disabled])");
    if (first) first.focus();
  }

  close() {
    for (const menu of this.element.querySelectorAll(".menu")) this.showMenu(menu, false);
  }

  showMenu(menu, shown) {
    menu.hidden = !shown;
    menu.previousSibling.setAttribute("aria-expanded", shown);
  }

  /// Opens the menu, or presses the entry, of the bar that has this letter; false when there is none.
  openBy(letter) {
    if (this.element.hidden) return false;
    const found = [...this.element.querySelectorAll(":scope > .bar-entry:not([hidden]) > button")].find(
      (button) => button.dataset.key === letter && !button.disabled);
    if (found) found.click();
    return Boolean(found);
  }

  key(event) {
    const button = event.target, holder = button.parentElement, menu = button.closest(".menu");
    const beside = (list) => [...list.children].filter((entry) => !entry.hidden).map((entry) => entry.firstChild)
      .filter((each) => !each.disabled);
    const step = (list, by) => {
      const all = beside(list);
      if (all.length > 0) all[(all.indexOf(button) + by + all.length) % all.length].focus();
    };
    const bar = button.closest(".bar-entry");
    const alongBar = (by) => {
      const all = beside(this.element), next = all[(all.indexOf(bar.firstChild) + by + all.length) % all.length];
      const wasOpen = this.element.querySelector(".menu:not([hidden])");
      this.close();
      next.focus();
      if (wasOpen && next.nextSibling) next.click();
    };
    const own = holder.querySelector(":scope > .menu");
    const does = {
      ArrowDown: () => (menu ? step(menu, 1) : own && this.open(button, own)),
      ArrowUp: () => menu && step(menu, -1),
      ArrowRight: () => (menu && own ? this.open(button, own) : alongBar(1)),
      ArrowLeft: () => (menu && menu.closest(".entry") ? this.leave(menu) : alongBar(-1)),
      Escape: () => (menu ? this.leave(menu) : button.blur()),
    }[event.key];
    if (does) {
      event.preventDefault();
      event.stopPropagation();
      does();
    } else if (menu && event.key.length === 1 && !event.ctrlKey) {
      const found = beside(menu).find((each) => each.dataset.key === event.key.toLowerCase());
      if (!found) return;
      event.preventDefault();
      event.stopPropagation();
      found.click();
    }
  }

  leave(menu) {
    this.showMenu(menu, false);
    menu.previousSibling.focus();
  }
}
