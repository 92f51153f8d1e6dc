// The files of the analysis: brought to the page from the computer, and back again. They lie in the module's memory.
"use strict";

const files = {
  folder: "/analysis",
  system: null, // of files, the module's
  named: new Set(), // by the user in a question: downloaded as soon as they are written
  written: new Map(), // by name: whether they have left the page since
  target: null, // a folder of the computer, where the browser can write to one

  path: (name) => `${files.folder}/${name}`,

  names() {
    const names = files.system.readdir(files.folder).filter((name) => !name.startsWith("."));
    return names.filter((name) => files.system.isFile(files.system.stat(files.path(name)).mode)).sort();
  },

  bytes: (name) => files.system.readFile(files.path(name)),

  /// Takes files of the computer; returns their names.
  async bring(chosen) {
    const names = [];
    for (const file of chosen) {
      files.system.writeFile(files.path(file.name), new Uint8Array(await file.arrayBuffer()), { canOwn: true });
      names.push(file.name);
    }
    files.show();
    return names;
  },

  /// The program has written a file.
  async wrote(path) {
    const name = path.slice(files.folder.length + 1);
    files.written.set(name, false);
    if (files.target) await files.putIntoFolder(name);
    else if (files.named.delete(name)) files.download(name);
    files.show();
    say(`Saved: ${name}`);
  },

  download(name) {
    files.hand(name, new Blob([files.bytes(name)]));
    files.written.set(name, true);
  },

  hand(name, blob) {
    const link = make("a", { href: URL.createObjectURL(blob), download: name });
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 60000);
  },

  downloadAll() {
    const names = files.names();
    files.hand("merlane-files.zip", zipOf(names.map((name) => [name, files.bytes(name)])));
    for (const name of files.written.keys()) files.written.set(name, true);
    files.show();
  },

  async chooseFolder() {
    files.target = await showDirectoryPicker({ mode: "readwrite" }).catch(() => null);
    if (!files.target) return;
    for (const name of files.written.keys()) await files.putIntoFolder(name);
    files.show();
  },

  async putIntoFolder(name) {
    try {
      const handle = await files.target.getFileHandle(name, { create: true });
      const stream = await handle.createWritable();
      await stream.write(files.bytes(name));
      await stream.close();
      files.written.set(name, true);
    } catch (failure) {
      files.target = null;
      say(`The folder could not be written to (${failure.message}): ${name} is downloaded instead.`);
      files.download(name);
    }
  },

  anyLeft: () => [...files.written.values()].includes(false),

  /// Shows the list of files, if it is open.
  show() {
    const list = document.getElementById("files-list");
    document.getElementById("files-count").textContent = files.names().length ? ` (${files.names().length})` : "";
    list.replaceChildren(...files.names().map((name) => {
      const button = make("button", { type: "button", title: `Download ${name}`, onclick: () => { files.download(name); files.show(); } },
                          "Download");
      const left = files.written.get(name) === false ? " (new)" : "";
      return make("li", {}, make("span", {}, name + left), button);
    }));
    document.getElementById("files-all").disabled = files.names().length === 0;
    document.getElementById("files-folder").hidden = typeof showDirectoryPicker === "undefined";
    document.getElementById("files-folder").textContent = files.target ? `Saving to ${files.target.name}` : "Save to a folder…";
  },
};

/// An archive of files as they stand, without compression.
function zipOf(entries) {
  const table = Array.from({ length: 256 }, (_, n) => {
    for (let k = 0; k < 8; ++k) n = n & 1 ? 0xedb88320 ^ (n >>> 1) : n >>> 1;
    return n >>> 0;
  });
  const sum = (bytes) => {
    let crc = 0xffffffff;
    for (const byte of bytes) crc = table[(crc ^ byte) & 0xff] ^ (crc >>> 8);
    return (crc ^ 0xffffffff) >>> 0;
  };
  const record = (...fields) => {
    const bytes = new DataView(new ArrayBuffer(fields.reduce((size, [width]) => size + width, 0)));
    let at = 0;
    for (const [width, value] of fields) {
      if (width === 2) bytes.setUint16(at, value, true);
      else bytes.setUint32(at, value, true);
      at += width;
    }
    return new Uint8Array(bytes.buffer);
  };
  const now = new Date();
  const day = ((now.getFullYear() - 1980) << 9) | ((now.getMonth() + 1) << 5) | now.getDate();
  const time = (now.getHours() << 11) | (now.getMinutes() << 5) | (now.getSeconds() >> 1);
  const parts = [], directory = [];
  let offset = 0;
  for (const [name, bytes] of entries) {
    const named = new TextEncoder().encode(name);
    const about = [[2, 20], [2, 0x800], [2, 0], [2, time], [2, day], [4, sum(bytes)], [4, bytes.length], [4, bytes.length],
                   [2, named.length], [2, 0]];
    const local = record([4, 0x04034b50], ...about);
    directory.push(record([4, 0x02014b50], [2, 20], ...about, [2, 0], [2, 0], [2, 0], [4, 0], [4, offset]), named);
    parts.push(local, named, bytes);
    offset += local.length + named.length + bytes.length;
  }
  const size = directory.reduce((sum, part) => sum + part.length, 0);
  return new Blob([...parts, ...directory,
                   record([4, 0x06054b50], [2, 0], [2, 0], [2, entries.length], [2, entries.length], [4, size], [4, offset], [2, 0])],
                  { type: "application/zip" });
}
