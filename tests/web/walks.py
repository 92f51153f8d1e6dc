#!/usr/bin/env python3
"""Plays kept analyses on the page itself, in browsers, as a person would: by clicks, keys and files.

    walks.py PAGE [--browsers NAMES] [--pictures FOLDER] [WALK...]

PAGE is out/merlane.html, opened as a file. A walk is one of tests/batch/analyses or examples, played up to where a batch
file can do what a person cannot, an interrupt at a given turn. Where the batch file saves a text, a plot or a file, what
the page has must be the bytes that are kept. Besides, what only a page does: see the walks that are functions below.
A browser may be told as one in which WebAssembly cannot wait, as chromium-unwinding. Such a one, and WebKit, which is one,
are given the page beside, out/merlane-safari.html.
Prints what fails, and ends with 1 when anything does; a picture of the page is left where it failed.
"""

import argparse
import contextlib
import functools
import http.server
import json
import pathlib
import re
import shlex
import sys
import tempfile
import threading
import time
import traceback
import zipfile

from browser import Browser, BrowserBroke, wait_for

SOURCE = pathlib.Path(__file__).resolve().parents[2]
ANALYSES = SOURCE / "tests/batch/analyses"
# A first fit, an import and a workbook, fits, standard errors, profiles and posteriors, plots, priors whose windows cover
# each other, ranking, failures.
PLAYED = ["examples/first_fit", "examples/field_book", "tests/batch/analyses/workbook", "tests/batch/analyses/estimates",
          "tests/batch/analyses/detail_plots", "tests/batch/analyses/priors", "tests/batch/analyses/ranking", "tests/batch/analyses/failures_on_the_way"]
ANSWERS = {"reply", "enter", "file"}
EXPORTS = {"export", "show", "clock", "seed"}  # what a page has not, or shows anyway


def with_script(page_file, script, folder):
    """A copy of the page in the folder, with a script that runs before its own."""
    copy = folder / page_file.name
    copy.write_bytes(page_file.read_bytes().replace(b"<head>", f"<head><script>{script}</script>".encode(), 1))
    return copy


class Page:
    """What a person sees of the program, and does with it."""

    def __init__(self, browser, address):
        self.browser = browser
        browser.open(address)
        wait_for(lambda: self.run("return document.querySelector('.window:not([hidden])') !== null"), "the menu")

    def run(self, script, *given):
        return self.browser.run(script, *given)

    def settle(self, seconds=120):
        """Returns when the program waits; true when it has asked something."""
        state = wait_for(lambda: self.run(
            """if (document.querySelector('.end')) return program.ended ? 'ended' : document.querySelector('.end').innerText;
               if (document.querySelector('dialog[open]')) return 'asks';
               return deeds.wake !== null && deeds.queue.length === 0 ? 'waits' : null"""), "the program", seconds)
        if state not in ("asks", "waits", "ended"):
            raise AssertionError(state)
        return state == "asks"

    def question(self):
        return self.run("""const d = document.querySelector('dialog[open]');
                           return {title: d.querySelector('h2').innerText, text: d.innerText,
                                   answers: [...d.querySelectorAll('[data-answer]')].map((b) => b.dataset.answer)}""")

    def answer(self, name):
        self.browser.click(f"dialog[open] [data-answer={name}]")

    def enter(self, text):
        self.run("document.querySelector('dialog[open] input[type=text]').value = arguments[0]", text)
        self.answer("save" if "save" in self.question()["answers"] else "ok")

    def place_of(self, name):
        """(form, control) of a name of a batch file, which may go without its form."""
        if "." in name:
            return name.split(".")
        return [self.run("""for (const [form, window] of windows.all)
                              if (window.isOpen && window.isOpen() && window.controls.told.has(arguments[0])) return form;""",
                         name), name]

    def element(self, name):
        form, control = self.place_of(name)
        return f'[id="{form}.{control}"]'

    def uncover(self, selector):
        """Goes round the windows by F6, as a person would, while another one stands before it."""
        for _ in range(20):
            if not self.run("""const it = document.querySelector(arguments[0]), box = it.getBoundingClientRect();
                               const hit = document.elementFromPoint(box.x + box.width / 2, box.y + box.height / 2);
                               const before = hit && hit.closest('.window');
                               return before !== null && before !== it.closest('.window')""", selector):
                return
            self.browser.keys("F6")
        raise AssertionError(f"{selector} stays covered")

    def press(self, name):
        form, control = self.place_of(name)
        if self.run("return windows.all.get(arguments[0]).controls.told.get(arguments[1]).kind", form, control) != "entry":
            self.uncover(self.element(name))
            self.browser.click(self.element(name))
            return
        # An entry of a menu: each menu above it is opened.
        path = self.run("""const told = windows.all.get(arguments[0]).controls.told, path = [];
                           for (let name = arguments[1]; name; name = told.get(name).parent) path.unshift(name);
                           return path""", form, control)
        bar = "#menus" if form == "frmMain" else f"[data-form={form}] .menubar"
        self.uncover(bar)
        for entry in path:
            self.browser.click(f"{bar} [data-name={entry}]")

    def type_into(self, name, text):
        self.run("""const element = document.querySelector(arguments[0]), line = element.line || element;
                    line.focus(); line.value = arguments[1]; line.commit();""", self.element(name), text)

    def type_into_cell(self, name, row, column, text):
        """By the keys, as into a spreadsheet."""
        self.run("""const grid = document.querySelector(arguments[0]); grid.focus();
                    moveTo(grid, arguments[1], arguments[2])""", self.element(name), row, column)
        self.browser.keys("F2")
        self.run("document.activeElement.value = arguments[0]", text)
        self.browser.keys("Enter")

    def file(self, name):
        """The bytes of a file of the analysis, or none."""
        numbers = self.run("try { return Array.from(files.bytes(arguments[0])) } catch { return null }", name)
        return None if numbers is None else bytes(numbers)


class Play:
    """A batch file on a page."""

    def __init__(self, page, batch, look, until=None):
        """Up to a line that is `until`, if any."""
        self.page = page
        self.batch = batch
        self.kept = ANALYSES / f"{batch.stem}.kept"
        self.look = look
        self.lines = [shlex.split(line, comments=True) for line in batch.read_text().splitlines()]
        self.lines = [line for line in self.lines if line and line[0] not in EXPORTS]
        self.ends_asked = until is not None
        if until:
            del self.lines[self.lines.index(until.split()):]
        self.saved = []
        self.at = 0

    def run(self):
        while True:
            asked = self.page.settle()
            line = self.lines[self.at] if self.at < len(self.lines) else None
            if asked and line is None and self.ends_asked:
                break
            if asked:
                self.answer(line)
            elif line is None or line[0] == "interrupt":
                break
            else:
                self.at += 1
                self.do(*line)
        self.check_saved()

    def answer(self, line):
        question = self.page.question()
        title = line[line.index("at") + 1] if line and "at" in line else None
        fits = line is not None and line[0] in ANSWERS and title in (None, question["title"])
        if question["answers"][:1] == ["ok"] and len(question["answers"]) < 3 and "cancel" not in question["answers"]:
            # A message that offers nothing else; the line may be for it, or for the question after it.
            takes = fits and line[0] == "reply" and line[1] in question["answers"]
            self.at += takes
            self.page.answer(line[1] if takes else "ok")
            return
        if not fits:
            raise AssertionError(f'"{question["title"]}" is asked, where {line} stands:\n{question["text"]}')
        self.at += 1
        given = line[1] if len(line) > 1 and line[1] != "at" else None
        if line[0] == "reply":
            self.page.answer(given)
        elif given is None or (line[0] == "file" and given == "cancel"):
            self.page.answer("cancel")
        elif line[0] == "enter" or "save" in question["answers"]:
            self.page.enter(given)
            self.saved += [given] if line[0] == "file" else []
            self.replace()
        else:
            self.open(given)

    def replace(self):
        if self.page.settle() and "already exists" in self.page.question()["text"]:
            self.page.answer("yes")

    def open(self, name):
        """A file of the computer is brought to the page, with the covariances beside it if there are any; one that was
        saved before is there."""
        path = (self.batch.parent / name).resolve()
        together = [file for file in (path, path.with_suffix(".cov")) if file.is_file()]
        if together:
            self.page.browser.give("dialog[open] input[type=file]", "\n".join(map(str, together)))
        if len(together) == 1:
            wait_for(lambda: not self.page.run("return document.querySelector('dialog[open] input[type=file]') !== null"),
                     "the file")
            return
        wait_for(lambda: self.page.run("""const list = document.querySelector('dialog[open] select.files');
                                          list.value = arguments[0]; return list.value === arguments[0]""", path.name),
                 f"{path.name} in the list")
        self.page.answer("open")

    def do(self, verb, name, *more):
        page = self.page
        if verb in ("press", "choose"):
            page.press(name)
        elif verb in ("tick", "untick"):
            page.run("""const box = document.querySelector(arguments[0] + ' input');
                        if (box.checked !== arguments[1]) box.click()""", page.element(name), verb == "tick")
        elif verb == "set":
            page.type_into(name, more[0])
        elif verb == "type":
            page.type_into_cell(name, int(more[0]), int(more[1]), more[2])
        elif verb == "select":
            page.run("""const list = document.querySelector(arguments[0]), row = arguments[1];
                        if (list.matches('select')) { list.selectedIndex = row - 1; list.onchange(); }
                        else moveTo(list, row + list.it.headingRows - 1, 0)""", page.element(name), int(more[0]))
        elif verb in ("click", "doubleclick"):
            event = "click" if verb == "click" else "dblclick"
            page.run("""const it = document.querySelector(arguments[0]);
                        const target = arguments.length > 2 ? cellAt(it, arguments[2], arguments[3]) : it;
                        target.dispatchEvent(new MouseEvent(arguments[1], {bubbles: true}))""",
                     page.element(name), event, *map(int, more))
        elif verb == "close":
            page.run("windows.all.get(arguments[0]).close()", name)
        elif verb == "save-text":
            self.same(more[0], page.run("return document.querySelector(arguments[0]).value", page.element(name)).encode())
        elif verb == "save-plot":
            self.look(more[0].split(".")[0])
            self.same(more[0], page.run("""const told = windows.all.get(arguments[0]).controls.told;
                                           return told.get('picGraph').svg""", name).encode())
        else:
            raise AssertionError(f"a page cannot {verb}")

    def same(self, name, found):
        wanted = (self.kept / name).read_bytes()
        # Lines of a text on a page end in their own way, and what a call takes is the machine's.
        plain = lambda text: re.sub(rb"about [\d.]+ seconds", b"about some seconds", text.replace(b"\r", b""))
        if plain(found) != plain(wanted):
            raise AssertionError(f"{name} is not what is kept: {len(found)} bytes, and {len(wanted)}")

    def check_saved(self):
        for name in self.saved:
            written = self.page.file(name)
            kept = self.kept / name
            if written is None or not kept.is_file():
                raise AssertionError(f"{name} was not saved")
            # What names its own path names the page's folder.
            wanted = kept.read_bytes().replace(b"OUT/", b"/analysis/")
            if written != wanted:
                raise AssertionError(f"{name} is not what is kept")


def closing_in_the_middle(page, _):
    """The tab does not close silently on what would be lost."""
    page.press("frmMenu.cmdInitialize")
    page.settle()
    warns = page.run("""const event = new Event('beforeunload', {cancelable: true});
                        window.dispatchEvent(event); return event.defaultPrevented""")
    if not warns:
        raise AssertionError("the page closes without a warning")


def interrupted(page, look):
    """A calculation that would take minutes heeds what is pressed within 150 ms."""
    Play(page, ANALYSES / "detail_plots.batch", look, until="press frmMenu.cmdUserSummary").run()
    page.press("frmMenu.cmdUserSummary")
    page.settle()
    page.enter("1000000")
    wait_for(lambda: page.run("return windows.all.has('frmAbort') && windows.all.get('frmAbort').isOpen()"), "the way out")
    time.sleep(1)
    look("calculating")
    page.run("""const begun = performance.now();
                document.getElementById('frmAbort.cmdAbort').click();
                const look = setInterval(() => {
                  if (!document.querySelector('dialog[open]') && !(deeds.wake && deeds.queue.length === 0)) return;
                  window.heeded = performance.now() - begun;
                  clearInterval(look);
                }, 5)""")
    heeded = wait_for(lambda: page.run("return window.heeded || null"), "an end")
    if heeded > 150:
        raise AssertionError(f"it was heeded after {heeded:.0f} ms")


class QuietServer(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


@contextlib.contextmanager
def served(page_file):
    """The address of the page in pieces while a server has it."""
    handler = functools.partial(QuietServer, directory=page_file.parent / "site")
    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        yield f"http://127.0.0.1:{server.server_port}/"
        server.shutdown()


def without_the_net(browser, page_file, look):
    """The page in pieces can be installed and is kept by the browser: with the server gone it still opens, and fits."""
    with served(page_file) as place:
        Page(browser, place)
        wait_for(lambda: browser.run("return navigator.serviceWorker.controller !== null"), "the worker")
        wanted = {"name", "short_name", "start_url", "display", "icons"}
        browser.run("""fetch(document.querySelector('link[rel=manifest]').href).then((found) => found.text())
                         .then((text) => (window.manifest = text))""")
        lacking = wanted - json.loads(wait_for(lambda: browser.run("return window.manifest || null"), "the manifest")).keys()
        if lacking:
            raise AssertionError(f"it cannot be installed without {lacking}")
    Play(Page(browser, place), SOURCE / "examples/first_fit.batch", look).run()
    look("offline")


def straight_to_a_folder(browser, page_file, look):
    """Where the browser can write to a folder of the computer, what is saved goes there; elsewhere that is not offered. The
    folder is one of the browser's own, since nobody is there to choose another."""
    with served(page_file) as place:
        page = Page(browser, place)
        if not page.run("return typeof showDirectoryPicker !== 'undefined'"):
            if page.run("return !document.getElementById('files-folder').hidden"):
                raise AssertionError("a folder is offered, where the browser cannot write to one")
            return
        page.run("window.showDirectoryPicker = () => navigator.storage.getDirectory()")
        page.browser.click("#files summary")
        page.browser.click("#files-folder")
        wait_for(lambda: page.run("return files.target !== null"), "the folder")
        page.browser.click("#files summary")
        Play(page, SOURCE / "examples/first_fit.batch", look).run()
        name = "first_fit_estimates.alg"
        read = """return files.target.getFileHandle(arguments[0]).then((it) => it.getFile()).then((it) => it.arrayBuffer())
                    .then((it) => Array.from(new Uint8Array(it)), () => null)"""
        found = wait_for(lambda: page.run(read, name), name)
        if bytes(found) != page.file(name):
            raise AssertionError(f"{name} is another one in the folder")
        if page.run("return files.anyLeft()") or any(page.browser.downloads.iterdir()):
            raise AssertionError("what is in the folder is thought to be left, or downloaded too")


def several_files_dropped(page, look):
    """Files that are dropped on the page, several at once, are there to be opened."""
    page.run("""const dropped = new DataTransfer();
                for (const [name, text] of arguments[0]) dropped.items.add(new File([text], name));
                document.getElementById('area').dispatchEvent(
                  new DragEvent('drop', { dataTransfer: dropped, bubbles: true, cancelable: true }))""",
             [["one.dat", "1"], ["two.alg", "2"], ["three.pri", "3"]])
    wait_for(lambda: page.file("three.pri") == b"3", "three.pri")
    if (page.file("one.dat"), page.file("two.alg")) != (b"1", b"2"):
        raise AssertionError("not all files were brought")
    if "one.dat, two.alg, three.pri" not in page.run("return document.getElementById('said').textContent"):
        raise AssertionError("it is not told what was brought")


def its_title(page, _):
    """The version and the date of the page stand in its title."""
    title = page.run("return document.title")
    if not re.fullmatch(r"Merlane \d+\.\d+\.\d+ \(20\d\d-\d\d-\d\d\)", title):
        raise AssertionError(f"the title is {title}")


def nothing_packed_is_kept(page, _):
    """Of the texts in which the page brings its module, none is left once the program runs."""
    size = page.run("return [...document.scripts].reduce((sum, script) => sum + script.textContent.length, 0)")
    if size > 400_000:
        raise AssertionError(f"the scripts of the page keep {size} characters")


def windows_keep_their_places(page, look):
    """A window that stood where it was opened stands there again when the page has been wide and narrow in between."""
    Play(page, SOURCE / "examples/first_fit.batch", look, until="press frmMenu.cmdOneFunction").run()
    page.press("frmMenu.cmdParEstimate")
    page.settle()
    places = lambda: page.run("return [...document.querySelectorAll('.window:not([hidden])')].map((it) => it.style.cssText)")
    before = places()
    for width in ("700px", ""):
        page.run("document.body.style.width = arguments[0]; window.dispatchEvent(new Event('resize'))", width)
        if (places() == before) != (width == ""):
            raise AssertionError(f"from {before} to {places()}")


def names_and_roles(page, look):
    """Whatever takes the keys has a name and a role that can be read out, in the window of algorithm data, with its table,
    and in a question."""
    play = Play(page, SOURCE / "examples/first_fit.batch", look, until="press frmMenu.cmdOneFunction")
    play.run()
    page.press("frmMenu.cmdEditAlg")
    page.settle()
    nameless = lambda: page.run("""
      const named = (it) => it.getAttribute('aria-label') || it.textContent.trim() || (it.labels && it.labels.length) ||
        (it.getAttribute('aria-labelledby') || '').split(' ').some((id) => (document.getElementById(id) || it).textContent);
      const takesKeys = 'button, input, select, textarea, summary, [tabindex]:not([tabindex="-1"])';
      return [...document.querySelectorAll(takesKeys)].filter((it) => it.offsetParent !== null && it.tabIndex >= 0)
        .filter((it) => !named(it) || (it.matches('div, span, pre') && !it.getAttribute('role')))
        .map((it) => it.id || it.outerHTML.slice(0, 80))""")
    if nameless():
        raise AssertionError(f"without a name or a role: {nameless()}")
    grid = "document.getElementById('frmAlgo.grdVS')"
    page.run(f"{grid}.focus(); moveTo({grid}, 15, 1)")
    browser = page.browser
    browser.keys("ArrowDown")
    at = page.run(f"""const at = document.getElementById({grid}.getAttribute('aria-activedescendant'));
                      return [{grid}.getAttribute('role'), at.getAttribute('role'), at.row, at.column]""")
    if at != ["grid", "gridcell", 16, 1]:
        raise AssertionError(f"the current cell is told as {at}")
    page.press("frmAlgo.cmdFinish")
    while page.settle():
        page.answer("ok")
    page.press("frmMenu.cmdQuit")
    page.settle()
    told = page.run("""const dialog = document.querySelector('dialog[open]');
                       const said = (name) => document.getElementById(dialog.getAttribute(name)).textContent;
                       return [said('aria-labelledby'), said('aria-describedby'), document.activeElement.matches('dialog *')]""")
    if told != ["Exit Tolvane", "Do you want to quit Tolvane?", True] or nameless():
        raise AssertionError(f"the question is told as {told}; nameless: {nameless()}")


def by_keys_alone(page, look):
    """The menus, a question and a window, without the mouse."""
    browser = page.browser
    browser.keys("b", holding=["Alt"])
    wait_for(lambda: page.run("return document.querySelector('.menu:not([hidden])') !== null"), "the menu of Alt+B") \
        if page.run("return document.querySelector('#menus [data-name=mnuAbout]').nextSibling !== null") else page.settle()
    page.settle()
    look("keys")
    browser.keys("Escape")
    page.settle()
    browser.keys("i", holding=["Alt"])
    wait_for(lambda: page.run("return windows.front().name") == "frmInitialize", "the window of Alt+I")
    browser.keys("Escape")
    wait_for(lambda: page.run("return windows.front().name") == "frmMenu", "the menu, behind Escape")


def an_analysis_by_keys(page, look):
    """A whole analysis without the mouse: data, a fit, its covariances, a summary, what is saved, and the end."""
    browser = page.browser

    def elsewhere():
        """What has the keys, when that is neither in the question nor in the window in front."""
        return page.run("""const front = document.querySelector('dialog[open]') || windows.front().element;
                           return front.contains(document.activeElement) ? null : document.activeElement.outerHTML""")

    def settle():
        asked = page.settle()
        if elsewhere():
            raise AssertionError(f"the keys go elsewhere: {elsewhere()[:200]}")
        return asked

    def go_to(selector):
        """Forwards to the end of the window, then backwards."""
        for holding in ((), ["Shift"]):
            for _ in range(60):
                if page.run("return document.activeElement.matches(arguments[0])", selector):
                    return
                browser.keys("Tab", holding=holding)
                if elsewhere():
                    break
        raise AssertionError(f"{selector} is not come to by Tab")

    def press(name):
        go_to(page.element(name))
        browser.keys("Enter")
        return settle()

    def write(name, text):
        go_to(f"{page.element(name)}, {page.element(name)} *")
        browser.keys(*text)

    def answer(*keys, title=None):
        while settle() and page.question()["answers"] == ["ok"]:  # only tells something
            browser.keys("Enter")
        if not page.settle() or title not in (None, page.question()["title"]):
            raise AssertionError(f"{keys} is no answer to {page.settle() and page.question()}")
        browser.keys(*keys)
        settle()

    def close():
        go_to(".window.front .closer:not(.sizer)")
        browser.keys("Enter")
        settle()

    def agree():
        while settle():
            browser.keys("Enter")

    press("frmMenu.cmdInitialize")
    press("frmInitialize.cmdLoadData")
    answer("Enter", title="Load brood survival data file")  # the one in the list
    agree()
    for name, text in (("cboBroodCovs", "3"), ("cboStartYear", "1995"), ("cboEndYear", "1997")):
        write(f"frmInitialize.{name}", text)
    press("frmInitialize.cmdDone")
    agree()

    press("frmMenu.cmdLoadAlg")
    answer("y", title="Load algorithm data")
    page.run("document.querySelector('dialog input[type=file]').onclick = (it) => (window.chooses = !it.preventDefault())")
    go_to("dialog [data-answer=computer]")
    browser.keys("Enter")
    wait_for(lambda: page.run("return window.chooses"), "the browser's own question")
    browser.give("dialog input[type=file]", str(SOURCE / "examples/first_fit.alg"))
    wait_for(lambda: not page.run("return document.querySelector('dialog[open] input[type=file]') !== null"), "the file")
    agree()

    press("frmMenu.cmdOneFunction")
    look("evaluated")
    browser.keys("Escape")
    settle()
    press("frmMenu.cmdSimplex")
    answer("y", title="Just checking")
    agree()
    browser.keys("F6")  # from the menu
    close()
    press("frmMenu.cmdSaveAlg")
    answer(*"first_fit_estimates.alg", "Enter", title="Save algorithm data in...")

    press("frmMenu.cmdCovariance")
    answer("n", title="Covariance calculator")
    agree()
    press("frmAlgo.cmdFinish")
    for text in ("1", "0.1", "0.01"):
        answer(*text, "Enter", title="Covariance calculator")
    answer("y", title="Covariance calculator")
    answer(*"0.5", "Enter", title="Enter constant")
    answer("n", title="Calculate optimistic SEs only?")
    look("covariances")
    press("frmCovDisplay.cmdFinish")

    press("frmMenu.cmdUserSummary")
    answer(*"20", "Enter")
    answer("y", title="Choose among output options")
    agree()
    look("summary")
    press("frmSummary.cmdSaveSummary")
    answer("Enter")
    close()
    press("frmMenu.cmdQuit")
    answer("y", title="Exit Tolvane")
    while not page.run("return program.ended"):
        page.settle()
        browser.keys("n")
    kept = (ANALYSES / "first_fit.kept/first_fit_estimates.alg").read_bytes()
    if page.file("first_fit_estimates.alg") != kept:
        raise AssertionError("another fit was saved")


def a_range_of_cells(page, look):
    """Values and steps of four parameters are copied from a table and pasted to the next four, by the keys."""
    Play(page, SOURCE / "examples/first_fit.batch", look, until="press frmMenu.cmdOneFunction").run()
    page.press("frmMenu.cmdEditAlg")
    page.settle()
    browser = page.browser
    cells = lambda row: page.run("""const grid = document.getElementById('frmAlgo.grdVS');
        return [0, 1, 2, 3].map((down) => [1, 2].map((column) => cellAt(grid, arguments[0] + down, column).textContent))""", row)
    stand_at = lambda row: page.run("""const grid = document.getElementById('frmAlgo.grdVS'); grid.focus();
                                       moveTo(grid, arguments[0], 1)""", row)
    wanted = cells(15)
    page.run("document.addEventListener('paste', (event) => (window.pasted = event.clipboardData.getData('text/plain')))")
    stand_at(15)
    browser.keys("ArrowDown", "ArrowDown", "ArrowDown", "ArrowRight", holding=["Shift"])
    look("chosen")
    browser.keys("c", holding=["Control"])
    stand_at(19)
    if cells(19) == wanted:
        raise AssertionError("there is nothing to be changed")
    browser.keys("v", holding=["Control"])
    wait_for(lambda: cells(19) == wanted, "what was pasted")
    pasted = page.run("return window.pasted")
    if pasted != "\n".join("\t".join(cells) for cells in wanted):
        raise AssertionError(f"{pasted!r} was copied")
    look("pasted")


def all_files_as_zip(page, look):
    """What is downloaded as one archive are the files of the analysis, and a file that is saved is downloaded by itself."""
    Play(page, SOURCE / "examples/first_fit.batch", look).run()
    downloads = page.browser.downloads
    saved = downloads / "first_fit_estimates.alg"
    wait_for(lambda: saved.is_file() and saved.stat().st_size, saved.name)
    page.browser.click("#files summary")
    look("files")
    page.browser.click("#files-all")
    archive = downloads / "merlane-files.zip"
    wait_for(lambda: archive.is_file() and zipfile.is_zipfile(archive), archive.name)
    with zipfile.ZipFile(archive) as files:
        held = {name: files.read(name) for name in files.namelist()}
    if held != {name: page.file(name) for name in page.run("return files.names()")}:
        raise AssertionError(f"the archive holds {list(held)}")
    if held[saved.name] != saved.read_bytes():
        raise AssertionError(f"{saved.name} is another one alone")


def a_name_that_is_taken(page, look):
    """A file's place is not taken unasked, and it is asked for under the name that it gets: the report of a bootstrap gets
    an extension where it has none."""
    def kept():
        return page.file("kept.txt"), [name for name in page.run("return files.names()") if name.startswith("kept")]

    def asked_about(name):
        asked = page.question()["text"] if page.settle() else ""
        if f"{name} already exists" not in asked:
            raise AssertionError(f"it is not asked whether to replace {name}, but: {asked}")

    play = Play(page, ANALYSES / "bootstrap.batch", look, until="file simplex.bpv")
    play.run()
    page.run("files.system.writeFile(files.path('kept.txt'), 'mine')")
    page.enter("kept.txt")
    asked_about("kept.txt")
    look("asked")
    page.answer("no")
    page.settle()
    page.enter("report")
    page.settle()
    if kept() != (b"mine", ["kept.txt"]) or page.file("report.bpv") is None:
        raise AssertionError(f"the report is elsewhere: {page.run('return files.names()')}")
    page.answer("yes")
    page.settle()
    page.enter("kept.txt")
    asked_about("kept.txt")
    page.answer("yes")
    page.settle()
    text, names = kept()
    if not text.startswith(b"    Year,    Code,") or names != ["kept.txt"]:
        raise AssertionError(f"the second report is not kept.txt: {names}, {text[:40]}")


def all_free_parameters(page, look):
    """A walk that asks for one value after the other, deep in calls, goes on behind each answer."""
    Play(page, SOURCE / "examples/first_fit.batch", look, until="press frmMenu.cmdOneFunction").run()
    page.press("frmMenu.cmdEditAlg")
    page.settle()
    page.run("""cellAt(document.getElementById('frmAlgo.grdVS'), 0, 1).dispatchEvent(
                  new MouseEvent('dblclick', {bubbles: true}))""")
    page.settle()
    page.press("frmEditVS.cmdFree")
    page.settle()
    page.answer("cancel")  # nothing is saved before
    for parameter in (15, 17):
        if not page.settle(20) or f"#{parameter}" not in page.question()["text"]:
            raise AssertionError(f"parameter {parameter} is not asked for")
        page.enter("0.03")


def a_beep(page, look):
    """What the program says by a sound is seen, too."""
    page.run("told.beep()")
    if page.run("return getComputedStyle(document.getElementById('top')).animationName") != "beeps":
        raise AssertionError("nothing lights up")
    wait_for(lambda: page.run("return !document.getElementById('top').matches('.beeps')"), "the end of it")


def narrow(page, look):
    """All can be reached on a screen of 360 pixels, as far as a first fit goes, and nothing lies beyond its edge."""
    play = Play(page, SOURCE / "examples/first_fit.batch", look)
    step = play.do

    def do(*line):
        step(*line)
        page.settle()
        look(f"{play.at:02}")
        lost = page.run("""return [...document.querySelectorAll('.window.front :is(button, input), dialog :is(button, input)')]
          .filter((it) => it.offsetParent !== null && it.getBoundingClientRect().right > innerWidth + 1)
          .map((it) => it.id || it.textContent)""")
        if lost:
            raise AssertionError(f"beyond the edge: {lost}")

    play.do = do
    play.run()


WALKS = {pathlib.Path(name).name: name for name in PLAYED} | {
    walk.__name__: walk for walk in (interrupted, without_the_net, straight_to_a_folder, several_files_dropped, its_title,
                                       nothing_packed_is_kept, windows_keep_their_places,
                                       names_and_roles, closing_in_the_middle, by_keys_alone, an_analysis_by_keys, a_range_of_cells,
                                       a_name_that_is_taken, all_free_parameters, all_files_as_zip, a_beep, narrow)}
# WebKit knows no other way than to unwind, and does all of it; the others show that they can.
BROWSERS = {"chromium": list(WALKS), "firefox": list(WALKS), "webkit": list(WALKS),
            "chromium-unwinding": ["first_fit", "all_free_parameters", "interrupted"], "firefox-unwinding": ["first_fit"]}


def walk(name, browser_name, page_file, pictures):
    what = WALKS[name]
    size = (360, 740) if name == "narrow" else (1400, 900)
    program, _, unwinding = browser_name.partition("-")
    with Browser(program, *size) as browser, tempfile.TemporaryDirectory() as folder:
        look = lambda picture: pictures and browser.picture(pictures / f"{browser_name}_{name}_{picture}.png")
        if unwinding or program == "webkit":
            page_file = page_file.with_name("merlane-safari.html")
        if unwinding:
            page_file = with_script(page_file, "delete WebAssembly.Suspending", pathlib.Path(folder))
        try:
            if what in (without_the_net, straight_to_a_folder):
                what(browser, page_file, look)
            elif callable(what):
                what(Page(browser, page_file.as_uri()), look)
            else:
                Play(Page(browser, page_file.as_uri()), SOURCE / f"{what}.batch", look).run()
            look("end")
            complaints = browser.driver.complaints()
            if complaints:
                raise AssertionError(f"the browser complains: {complaints}")
            return True
        except BrowserBroke:
            raise
        except (AssertionError, RuntimeError):
            browser.picture((pictures or pathlib.Path(".")) / f"failed_{browser_name}_{name}.png")
            print(f"{browser_name} {name}: {traceback.format_exc(limit=-2)}", flush=True)
            return False


def walk_or_again(name, browser_name, page_file, pictures):
    """The process of WebKit that draws the page has been seen to end by a check of its own, once in some hundred walks. That
    is told, and gone once more: what a page brings about comes again."""
    try:
        return walk(name, browser_name, page_file, pictures)
    except BrowserBroke as broke:
        print(f"{browser_name} {name}: {broke}; once more", flush=True)
    try:
        return walk(name, browser_name, page_file, pictures)
    except BrowserBroke as broke:
        print(f"{browser_name} {name}: {broke}", flush=True)
        return False


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("page", type=pathlib.Path)
    parser.add_argument("walks", nargs="*", help="when none is named, those that are for the browser")
    parser.add_argument("--browsers", default=",".join(BROWSERS))
    parser.add_argument("--pictures", type=pathlib.Path)
    given = parser.parse_intermixed_args()
    page_file = given.page.resolve()
    failed = 0
    for browser_name in given.browsers.split(","):
        for name in given.walks or BROWSERS[browser_name]:
            begun = time.monotonic()
            well = walk_or_again(name, browser_name, page_file, given.pictures)
            failed += not well
            print(f'{browser_name} {name}: {"well" if well else "FAILED"}, {time.monotonic() - begun:.1f} s', flush=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
