// Starts the program: what it tells is drawn, and what is done goes to it, until it ends.
"use strict";

const program = {
  ended: false,
  touched: false, // something was done that would be lost with the page
};

/// A line in the footer, which is read out.
function say(text) {
  document.getElementById("said").textContent = text;
}

/// What the module tells, in its order.
const told = {
  forms: windows.show,
  front: windows.toFront,
  ask: (question) => questions.ask(question),
  wrote: (path) => files.wrote(path),
  arrange: windows.arrange,
  beep: () => {},
  ended() {
    program.ended = true;
    windows.all.forEach((window) => window.element && (window.element.hidden = true));
    tellEnd("The program has ended", "What was saved is still in the list of files. Load the page again to begin anew.");
  },
};

/// What cannot be drawn must not end the calculation that told of it.
function toPage(message) {
  for (const [what, value] of Object.entries(message)) {
    try {
      told[what](value);
    } catch (failure) {
      console.error(failure);
    }
  }
}

/// In the place of the windows, when there are none.
function tellEnd(title, text) {
  const again = make("button", { type: "button", onclick: () => location.reload() }, "Begin anew");
  document.getElementById("area").append(make("div", { class: "end", role: "alert" }, make("h2", {}, title),
                                              make("p", {}, text), again));
}

/// The module waits for the page by stopping in the middle of its stack: the browser must know how to.
function canWait() {
  return typeof WebAssembly === "object" && "Suspending" in WebAssembly && "promising" in WebAssembly;
}

async function start(moduleBytes) {
  if (!canWait()) {
    tellEnd("This browser is too old", "Merlane needs a browser that lets WebAssembly wait: Chrome, Edge or Opera from " +
                                       "version 137 on, or a Firefox of 2026.");
    return;
  }
  let run;
  const module = await Merlane({
    toPage,
    fromPage: deeds.next,
    print: (text) => console.log(text),
    printErr: (text) => console.warn(text),
    instantiateWasm(imports, receive) {
      const env = imports.env;
      env.merlane_from_page = new WebAssembly.Suspending(env.merlane_from_page);
      moduleBytes().then((bytes) => WebAssembly.instantiate(bytes, imports)).then(({ instance, module }) => {
        run = WebAssembly.promising(instance.exports.merlane_run);
        receive(instance, module);
      }).catch((failure) => tellEnd("The program could not be started", String(failure)));
      return {};
    },
  });
  files.system = module.FS;
  module.FS.mkdir(files.folder);
  for (const [name, text] of Object.entries(examples)) module.FS.writeFile(files.path(name), text);
  files.show();
  try {
    await run();
  } catch (failure) {
    console.error(failure);
    tellEnd("The program has come to grief", `${failure}. The files of the list below can still be downloaded.`);
  }
}

for (const event of ["input", "click"])
  document.addEventListener(event, (it) => (program.touched ||= it.target.closest(".window") !== null), true);
window.addEventListener("beforeunload", (event) => {
  if (!(program.touched && !program.ended) && !files.anyLeft()) return;
  event.preventDefault();
  event.returnValue = true; // as some browsers want it
});
document.getElementById("files-all").onclick = () => files.downloadAll();
document.getElementById("files-folder").onclick = () => files.chooseFolder();
document.addEventListener("dragover", (event) => event.preventDefault());
document.addEventListener("drop", (event) => {
  event.preventDefault();
  files.bring(event.dataTransfer.files).then((names) => names.length && say(`Brought here: ${names.join(", ")}`));
});
