#!/usr/bin/env python3
"""Puts the page and its modules together.

    bundle_page.py BUILD_FOLDER UNWINDING_BUILD_FOLDER OUT_FOLDER

The first module is for browsers in which WebAssembly can wait, the second for the others (src/web/page/start.js). Writes
OUT_FOLDER/merlane.html, all in one file with the first, OUT_FOLDER/merlane-safari.html, the same with the second, and
OUT_FOLDER/site, the same in pieces with both and with what makes a browser keep them. The date in the title is that of the
last commit, so that the same sources give the same bytes.
"""

import gzip
import hashlib
import json
import lzma
import os
import pathlib
import re
import subprocess
import sys
import time

SOURCE = pathlib.Path(__file__).resolve().parents[1]
PAGE = SOURCE / "src/web/page"
SCRIPTS = ["elements.js", "deeds.js", "grid.js", "drawings.js", "controls.js", "menus.js", "windows.js", "files.js", "questions.js", "start.js"]
EXAMPLES = ["first_fit.dat"]  # a first fit needs no file of one's own
MOST_BYTES = 1_200_000
SCRIPT_BYTES = 1 << 15  # of what is packed, in a script of the page


def version():
    return re.search(r"project\(merlane VERSION ([\d.]+)", (SOURCE / "CMakeLists.txt").read_text()).group(1)


def date():
    seconds = os.environ.get("SOURCE_DATE_EPOCH")
    if seconds is None:
        log = subprocess.run(["git", "log", "-1", "--format=%ct"], cwd=SOURCE, capture_output=True, text=True)
        seconds = log.stdout if log.returncode == 0 else time.time()
    return time.strftime("%Y-%m-%d", time.gmtime(int(seconds)))


def filled(charset, links, style, scripts):
    text = (PAGE / "page.html").read_text()
    for name, value in (("VERSION", version()), ("DATE", date()), ("CHARSET", charset), ("LINKS", links), ("STYLE", style),
                        ("SCRIPTS", scripts)):
        text = text.replace(f"@{name}@", value)
    return text


def script(text):
    return "<script>\n" + text.replace("</script", "<\\/script") + "</script>\n"


def page_script():
    examples = {name: (SOURCE / "examples" / name).read_text() for name in EXAMPLES}
    return f"const examples = {json.dumps(examples)};\n" + "".join((PAGE / name).read_text() for name in SCRIPTS)


def packed(*pieces):
    """As unpack.js unpacks it."""
    return lzma.compress(b"".join(pieces), lzma.FORMAT_RAW, filters=[
        {"id": lzma.FILTER_LZMA1, "preset": 9 | lzma.PRESET_EXTREME, "dict_size": 1 << 24, "lc": 3, "lp": 0, "pb": 0}])


def quoted(bytes_):
    """Bytes as a text of a script, in a page whose character set has a character for each of them."""
    for unfit, written in ((b"\\", b"\\\\"), (b'"', b'\\"'), (b"\n", b"\\n"), (b"\r", b"\\r"), (b"\0", b"\\x00"),
                           (b"</", b"<\\/"), (b"<!", b"<\\!")):
        bytes_ = bytes_.replace(unfit, written)
    return b'"' + bytes_ + b'"'


def in_scripts(bytes_):
    """Each of them short, since a browser gathers the whole text of a script before it runs it, and keeps that for long."""
    return b"".join(b"<script>takePacked(" + quoted(bytes_[begin:begin + SCRIPT_BYTES]) + b")</script>\n"
                    for begin in range(0, len(bytes_), SCRIPT_BYTES))


def one_file(way, glue, module):
    pieces = [page_script().encode(), glue, module]
    start = f"""unpackPage({[len(piece) for piece in pieces]}, (glue, module) => start({{ ways: ["{way}"], glue, module }}));"""
    head, end = filled("windows-1252", "", (PAGE / "page.css").read_text(), script((PAGE / "unpack.js").read_text()) +
                       "@PACKED@" + script(start)).encode("ascii").split(b"@PACKED@")
    return head + in_scripts(packed(*pieces)) + end


def write_site(folder, modules):
    folder.mkdir(parents=True, exist_ok=True)
    start = """const unzipped = (response) => new Response(response.body.pipeThrough(new DecompressionStream("gzip")));
start({
  ways: ["waiting", "unwinding"],
  glue: (way) => fetch(`${way}.js`).then((response) => response.text()),
  module: (way) => fetch(`${way}.wasm.gz`).then((response) => unzipped(response).arrayBuffer()),
});
if ("serviceWorker" in navigator) navigator.serviceWorker.register("worker.js");
"""
    pieces = {
        "index.html": filled("utf-8", '<link rel="manifest" href="manifest.json">\n<link rel="icon" href="merlane.svg">',
                             (PAGE / "page.css").read_text(), '<script src="page.js"></script>\n').encode(),
        "page.js": (page_script() + start).encode(),
        "merlane.svg": (SOURCE / "packaging/merlane.svg").read_bytes(),
        "manifest.json": json.dumps({
            "name": f"Merlane {version()}", "short_name": "Merlane", "start_url": "index.html", "display": "standalone",
            "icons": [{"src": "merlane.svg", "sizes": "any", "type": "image/svg+xml"}]}, indent=1).encode(),
    }
    for way, (glue, module) in modules.items():
        pieces |= {f"{way}.js": glue, f"{way}.wasm.gz": gzip.compress(module, 9, mtime=0)}
    # Other pieces are another version, whatever they are called.
    content = hashlib.sha256(b"".join(pieces.values())).hexdigest()[:16]
    pieces["worker.js"] = ((PAGE / "worker.js").read_text().replace("@VERSION@", content)
                           .replace("@PIECES@", json.dumps(["./", *pieces]))).encode()
    for name, text in pieces.items():
        (folder / name).write_bytes(text)


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    *builds, out = map(pathlib.Path, sys.argv[1:])
    modules = {way: ((build / "merlane-web.js").read_bytes(), (build / "merlane-web.wasm").read_bytes())
               for way, build in zip(("waiting", "unwinding"), builds)}
    write_site(out / "site", modules)
    for name, (way, module) in zip(("merlane.html", "merlane-safari.html"), modules.items()):
        page = one_file(way, *module)
        (out / name).write_bytes(page)
        if len(page) > MOST_BYTES:
            sys.exit(f"{name} has {len(page)} bytes, more than {MOST_BYTES}")


if __name__ == "__main__":
    main()
