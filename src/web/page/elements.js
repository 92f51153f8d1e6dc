// Small things that all parts of the page make.
"use strict";

/// An element with properties, which may have `class`, `aria` and `data` in them, and children: elements or texts.
function make(tag, properties = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(properties)) {
    if (name === "class") element.className = value;
    else if (name === "role") element.setAttribute("role", value);
    else if (name === "aria") for (const [key, of] of Object.entries(value)) element.setAttribute(`aria-${key}`, of);
    else if (name === "data") Object.assign(element.dataset, value);
    else element[name] = value;
  }
  element.append(...children.filter((child) => child !== null && child !== undefined));
  return element;
}

/// A caption as it is read: runs of blanks part lines, and & stands before the letter that presses it.
function caption(text) {
  const lines = text.trim().split(/ {4,}/).map((line) => line.replace(/\s+/g, " ").trim()).join("\n");
  const ampersand = "\0", shown = (part) => part.replaceAll(ampersand, "&"); // two of them are one to be read
  const marked = lines.replaceAll("&&", ampersand), at = marked.search(/&./);
  if (at < 0) return { key: "", parts: [shown(marked)], plain: shown(marked) };
  const before = shown(marked.slice(0, at)), letter = marked[at + 1], behind = shown(marked.slice(at + 2));
  return { key: letter.toLowerCase(), parts: [before, make("u", {}, letter), behind], plain: before + letter + behind };
}

/// Colours that the program gives, black being none; the style sheet lightens them on a dark page.
function colour(element, fore, back = "") {
  const given = (name, value) => {
    element.classList.toggle(name, Boolean(value));
    element.style.setProperty(`--${name}`, value);
  };
  given("fore", fore === "#000000" ? "" : fore);
  given("back", back);
}

function textOf(text) {
  return text.replaceAll("\r", "");
}

/// Runs a script, as if the page had it.
function addScript(text) {
  document.body.append(make("script", { textContent: text }));
}
