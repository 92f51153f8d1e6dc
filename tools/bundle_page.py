#!/usr/bin/env python3
"""Puts the page and its module together.

    bundle_page.py BUILD_FOLDER OUT_FOLDER

Writes OUT_FOLDER/merlane.html, all in one file, and OUT_FOLDER/site, the same in pieces with what makes a browser keep
them. The date in the title is that of the last commit, so that the same sources give the same bytes.
"""

import gzip
import hashlib
import json
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


def version():
    return re.search(r"project\(merlane VERSION ([\d.]+)", (SOURCE / "CMakeLists.txt").read_text()).group(1)


def date():
    seconds = os.environ.get("SOURCE_DATE_EPOCH")
    if seconds is None:
        log = subprocess.run(["git", "log", "-1", "--format=%ct"], cwd=SOURCE, capture_output=True, text=True)
        seconds = log.stdout if log.returncode == 0 else time.time()
    return time.strftime("%Y-%m-%d", time.gmtime(int(seconds)))


def filled(links, style, scripts):
    text = (PAGE / "page.html").read_text()
    for name, value in (("VERSION", version()), ("DATE", date()), ("LINKS", links), ("STYLE", style), ("SCRIPTS", scripts)):
        text = text.replace(f"@{name}@", value)
    return text


def script(text):
    return "<script>\n" + text.replace("</script", "<\\/script") + "</script>\n"


def page_script():
    examples = {name: (SOURCE / "examples" / name).read_text() for name in EXAMPLES}
    return f"const examples = {json.dumps(examples)};\n" + "".join((PAGE / name).read_text() for name in SCRIPTS)


def as_text(packed):
    """Bytes as a text of a script, as unpack.js reads it: seven bits to a character, in UTF-8 a byte. One that cannot stand
    in quotes goes, with the seven bits behind it, into a character of two bytes."""
    unfit = [0, 10, 13, 34, 60, 92]
    bits = "".join(f"{byte:08b}" for byte in packed)
    bits += "0" * (-len(bits) % 7)
    sevens = iter([int(bits[i:i + 7], 2) for i in range(0, len(bits), 7)])
    return "".join(chr(128 + (unfit.index(seven) << 7) + next(sevens, 0)) if seven in unfit else chr(seven)
                   for seven in sevens)


def one_file(glue, packed):
    scripts = gzip.compress((glue + page_script() + """start(() => unpacked(moduleText, moduleSize).arrayBuffer());
""").encode(), 9, mtime=0)
    start = f"""const moduleText = "{as_text(packed)}", moduleSize = {len(packed)};
unpacked("{as_text(scripts)}", {len(scripts)}).text().then((text) => {{
  const script = document.createElement("script");
  script.textContent = text;
  document.body.append(script);
}});
"""
    return filled("", (PAGE / "page.css").read_text(), script((PAGE / "unpack.js").read_text()) + script(start))


def write_site(folder, glue, packed):
    folder.mkdir(parents=True, exist_ok=True)
    start = """start(() => fetch("merlane.wasm.gz")
  .then((response) => new Response(response.body.pipeThrough(new DecompressionStream("gzip"))).arrayBuffer()));
if ("serviceWorker" in navigator) navigator.serviceWorker.register("worker.js");
"""
    pieces = {
        "index.html": filled('<link rel="manifest" href="manifest.json">\n<link rel="icon" href="merlane.svg">',
                             (PAGE / "page.css").read_text(),
                             "".join(f'<script src="{name}"></script>\n' for name in ("module.js", "page.js"))).encode(),
        "module.js": glue.encode(),
        "page.js": (page_script() + start).encode(),
        "merlane.wasm.gz": packed,
        "merlane.svg": (SOURCE / "packaging/merlane.svg").read_bytes(),
        "manifest.json": json.dumps({
            "name": f"Merlane {version()}", "short_name": "Merlane", "start_url": "index.html", "display": "standalone",
            "icons": [{"src": "merlane.svg", "sizes": "any", "type": "image/svg+xml"}]}, indent=1).encode(),
    }
    # Other pieces are another version, whatever they are called.
    content = hashlib.sha256(b"".join(pieces.values())).hexdigest()[:16]
    pieces["worker.js"] = ((PAGE / "worker.js").read_text().replace("@VERSION@", content)
                           .replace("@PIECES@", json.dumps(["./", *pieces]))).encode()
    for name, text in pieces.items():
        (folder / name).write_bytes(text)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    build, out = map(pathlib.Path, sys.argv[1:])
    glue = (build / "merlane-web.js").read_text()
    packed = gzip.compress((build / "merlane-web.wasm").read_bytes(), 9, mtime=0)
    write_site(out / "site", glue, packed)
    page = one_file(glue, packed).encode()
    (out / "merlane.html").write_bytes(page)
    if len(page) > MOST_BYTES:
        sys.exit(f"merlane.html has {len(page)} bytes, more than {MOST_BYTES}")


if __name__ == "__main__":
    main()
