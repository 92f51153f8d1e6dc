"""Browsers that are driven without a display: Chromium and WebKit by the distribution's drivers, Firefox by what it has built
in."""

import base64
import json
import os
import pathlib
import socket
import subprocess
import tempfile
import time
import urllib.error
import urllib.request

ELEMENT = "element-6066-11e4-a52e-4f735466cecf"
KEYS = {"Enter": "\ue007", "Escape": "\ue00c", "Tab": "\ue004", "ArrowDown": "\ue015", "ArrowUp": "\ue013",
        "ArrowRight": "\ue014", "ArrowLeft": "\ue012", "Alt": "\ue00a", "Control": "\ue009",
        "Shift": "\ue008", "F2": "\ue032", "F6": "\ue036"}
LONGEST = 120  # s, for one answer of a browser


def free_port():
    with socket.socket() as listening:
        listening.bind(("127.0.0.1", 0))
        return listening.getsockname()[1]


def wait_for(condition, what, seconds=60):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.03)
    raise AssertionError(f"waited in vain for {what}")


class BrowserBroke(RuntimeError):
    """The browser, or the process of it that draws the page, has ended."""


class WebDriver:
    """Takes commands by the WebDriver protocol, from a program that starts the browser."""

    PATHS = {"Navigate": "/url", "ExecuteScript": "/execute/sync", "FindElement": "/element",
             "ElementClick": "/element/{id}/click", "ElementSendKeys": "/element/{id}/value", "PerformActions": "/actions",
             "Log": "/se/log", "SetWindowRect": "/window/rect"}

    def __init__(self, program, wanted, environment=None):
        self.port = free_port()
        self.process = subprocess.Popen([program, f"--port={self.port}"], env=environment, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        wait_for(self.is_ready, program)
        begun = self.ask("POST", "/session", {"capabilities": {"alwaysMatch": wanted}})
        self.session = f'/session/{begun["sessionId"]}'

    def is_ready(self):
        try:
            return self.ask("GET", "/status")["ready"]
        except OSError:
            return False

    def ask(self, method, path, body=None):
        data = json.dumps(body or {}).encode() if method == "POST" else None
        request = urllib.request.Request(f"http://127.0.0.1:{self.port}{path}", data, method=method,
                                         headers={"Content-Type": "application/json"})
        try:
            with urllib.request.urlopen(request, timeout=LONGEST) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as failure:
            message = json.load(failure)["value"]["message"][:600]
            raise (BrowserBroke if "page crash" in message else RuntimeError)(message) from None

    def send(self, command, **given):
        if command == "TakeScreenshot":
            return self.ask("GET", self.session + "/screenshot")
        return self.ask("POST", self.session + self.PATHS[command].format(**given), given)

    def complaints(self):
        return []

    def end(self):
        try:
            self.ask("DELETE", self.session)
        finally:
            self.process.terminate()
            self.process.wait()


class ChromiumDriver(WebDriver):
    def __init__(self, width, height, downloads, _):
        wanted = {"browserName": "chrome", "unhandledPromptBehavior": "ignore", "goog:loggingPrefs": {"browser": "ALL"},
                  "goog:chromeOptions": {
                      "args": ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                               f"--window-size={width},{height}"],
                      "prefs": {"download.default_directory": str(downloads)}}}
        if width < 500:  # narrower than its windows can be
            wanted["goog:chromeOptions"]["mobileEmulation"] = {
                "deviceMetrics": {"width": width, "height": height, "pixelRatio": 1, "touch": False}}
        super().__init__("chromedriver", wanted)

    def complaints(self):
        return [entry["message"] for entry in self.send("Log", type="browser") if entry["level"] == "SEVERE"]


class WebKitDriver(WebDriver):
    """The small browser that comes with the library, on a display of its own."""

    def __init__(self, width, height, downloads, folder):
        reading, writing = os.pipe()
        self.display = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1600x1200x24"],
                                        pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as told:
            display = ":" + told.readline().strip()
        (folder / ".config").mkdir()
        (folder / ".config/user-dirs.dirs").write_text(f'XDG_DOWNLOAD_DIR="{downloads}"\n')
        browser, = pathlib.Path("/usr/lib").glob("*/webkit2gtk-4.1/MiniBrowser")
        wanted = {"unhandledPromptBehavior": "ignore",
                  "webkitgtk:browserOptions": {"binary": str(browser), "args": ["--automation"]}}
        super().__init__("WebKitWebDriver", wanted, {**os.environ, "DISPLAY": display, "HOME": str(folder),
                                                     "XDG_CONFIG_HOME": str(folder / ".config"), "LIBGL_ALWAYS_SOFTWARE": "1"})
        self.send("SetWindowRect", width=width, height=height)

    def end(self):
        try:
            super().end()
        finally:
            self.display.terminate()
            self.display.wait()


class FirefoxDriver:
    """Takes commands by Marionette, the same ones over a socket of its own."""

    def __init__(self, width, height, downloads, folder):
        port = free_port()
        profile = folder / "profile"
        profile.mkdir()
        settings = {"marionette.port": port, "browser.download.dir": str(downloads), "browser.download.folderList": 2,
                    "browser.download.alwaysOpenPanel": False,  # which takes the keys
                    "browser.shell.checkDefaultBrowser": False, "datareporting.policy.dataSubmissionEnabled": False,
                    "browser.aboutwelcome.enabled": False, "app.update.enabled": False, "toolkit.telemetry.enabled": False}
        (profile / "user.js").write_text("".join(f"user_pref({json.dumps(name)}, {json.dumps(value)});\n"
                                                 for name, value in settings.items()))
        self.process = subprocess.Popen(
            ["firefox", "--headless", "--marionette", "--no-remote", "--profile", str(profile), f"--width={width}",
             f"--height={height}"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.socket = wait_for(lambda: self.connected(port), "Firefox")
        self.bytes = b""
        self.number = 0
        self.take()  # its greeting
        self.send("NewSession", capabilities={"alwaysMatch": {"unhandledPromptBehavior": "ignore"}})

    @staticmethod
    def connected(port):
        try:
            return socket.create_connection(("127.0.0.1", port), LONGEST)
        except OSError:
            return None

    def take(self):
        """The next message: its length, a colon, and JSON."""
        while b":" not in self.bytes:
            self.bytes += self.socket.recv(1 << 16)
        length, _, rest = self.bytes.partition(b":")
        while len(rest) < int(length):
            rest += self.socket.recv(1 << 20)
        self.bytes = rest[int(length):]
        return json.loads(rest[:int(length)])

    def send(self, command, **given):
        if command == "ExecuteScript":  # among the page's own names, which are not seen from where scripts are run
            inner = f"JSON.stringify((function () {{ {given['script']} }}).apply(null, {json.dumps(given['args'])}) ?? null)"
            given["script"] = f"return window.eval({json.dumps(inner)})"
            return json.loads(self.tell(command, given))
        return self.tell(command, given)

    def tell(self, command, given):
        self.number += 1
        message = json.dumps([0, self.number, f"WebDriver:{command}", given]).encode()
        self.socket.sendall(str(len(message)).encode() + b":" + message)
        _, _, failure, result = self.take()
        if failure:
            raise RuntimeError(failure["message"][:600])
        return result.get("value") if isinstance(result, dict) else result

    def complaints(self):
        return []

    def end(self):
        self.socket.close()
        self.process.terminate()
        self.process.wait()


DRIVERS = {"chromium": ChromiumDriver, "firefox": FirefoxDriver, "webkit": WebKitDriver}


class Browser:
    """Use as a context: the driver and the browser go with it."""

    def __init__(self, name, width=1400, height=900):
        self.name = name
        self.folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.downloads = pathlib.Path(self.folder.name) / "downloads"
        self.downloads.mkdir()
        self.driver = DRIVERS[name](width, height, self.downloads, pathlib.Path(self.folder.name))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.driver.end()
        self.folder.cleanup()

    def open(self, address):
        self.driver.send("Navigate", url=address)

    def run(self, script, *given):
        """The value of a script's `return`."""
        return self.driver.send("ExecuteScript", script=script, args=list(given))

    def find(self, selector):
        return self.driver.send("FindElement", using="css selector", value=selector)[ELEMENT]

    def click(self, selector):
        self.driver.send("ElementClick", id=self.find(selector))

    def give(self, selector, text):
        """Types into an element, or names a file to it."""
        self.driver.send("ElementSendKeys", id=self.find(selector), text=text)

    def keys(self, *keys, holding=()):
        """Presses keys one after the other, while others are held."""
        actions = [{"type": "keyDown", "value": KEYS.get(key, key)} for key in holding]
        for key in keys:
            actions += [{"type": kind, "value": KEYS.get(key, key)} for kind in ("keyDown", "keyUp")]
        actions += [{"type": "keyUp", "value": KEYS.get(key, key)} for key in holding]
        self.driver.send("PerformActions", actions=[{"type": "key", "id": "keys", "actions": actions}])

    def picture(self, path):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(base64.b64decode(self.driver.send("TakeScreenshot", full=False)))
