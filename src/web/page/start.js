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

/// A short sound; and the bar of the page lights up, for who does not hear it.
function beep() {
  const bar = document.getElementById("top");
  bar.classList.add("beeps");
  bar.onanimationend = () => bar.classList.remove("beeps");
  const sound = new AudioContext(), tone = sound.createOscillator();
  tone.connect(sound.destination);
  tone.onended = () => sound.close();
  tone.start();
  tone.stop(sound.currentTime + 0.12);
}

/// What the module tells, in its order.
const told = {
  forms: windows.show,
  front: windows.toFront,
  ask: (question) => questions.ask(question),
  wrote: (path) => files.wrote(path),
  arrange: windows.arrange,
  beep,
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

/// How the module waits for the page in the middle of its stack: the browser keeps the stack until a promise is kept, or,
/// where it does not know how to, a larger module unwinds its stack and is called anew.
function wayToWait(ways) {
  const waits = "Suspending" in WebAssembly && "promising" in WebAssembly;
  return ways.find((way) => way === "unwinding" || waits);
}

/// Bytes that are of no more use are given back at once, where the browser can do that, and not when it gets round to it.
function letGo(bytes) {
  (ArrayBuffer.isView(bytes) ? bytes.buffer : bytes).transfer?.(0);
}

/// `pieces.glue` and `pieces.module` give what the compiler made for one of `pieces.ways`, of which the first is the best.
async function start(pieces) {
  const way = wayToWait(pieces.ways);
  if (!way) {
    tellEnd("This browser needs the other file", "It does not let WebAssembly wait, as Chrome and Edge do from version 137 " +
                                                 "on, and Firefox of 2026. Please open merlane-safari.html.");
    return;
  }
  addScript(await pieces.glue(way));
  let suspended;
  const module = await Merlane({
    toPage,
    fromPage: deeds.next,
    print: (text) => console.log(text),
    printErr: (text) => console.warn(text),
    async instantiateWasm(imports, receive) {
      const env = imports.env;
      if (way === "waiting") env.merlane_from_page = new WebAssembly.Suspending(env.merlane_from_page);
      try {
        const bytes = await pieces.module(way);
        const { instance, module } = await WebAssembly.instantiate(bytes, imports);
        letGo(bytes);
        if (way === "waiting") suspended = WebAssembly.promising(instance.exports.merlane_run);
        receive(instance, module);
      } catch (failure) {
        tellEnd("The program could not be started", String(failure));
      }
    },
  });
  const run = suspended || (() => module.ccall("merlane_run", null, [], [], { async: true }));
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
