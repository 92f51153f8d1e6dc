#!/usr/bin/env python3
"""Prints how many seconds the desktop program takes from its start until its menu is painted.

    bench/time_start.py PROGRAM [--window-manager jwm]

The program runs on a display of its own (Xvfb). Its menu is painted when the screen looks, where the menu stands, for
the first time as it does in the end.
"""

import argparse
import ctypes
import os
import subprocess
import tempfile
import time

IN_THE_END = 1.5  # seconds, by which nothing moves any more
COLUMNS = (100, 180, 260, 340)  # of the screen, which cross the menu
TOP, HEIGHT, WIDTH = 60, 880, 4


class Image(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int), ("format", ctypes.c_int),
                ("data", ctypes.c_void_p)]


class Screen:
    """What a display shows."""

    def __init__(self, display):
        self.x = ctypes.CDLL("libX11.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XOpenDisplay.argtypes = [ctypes.c_char_p]
        self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        self.x.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        self.x.XGetImage.restype = ctypes.POINTER(Image)
        self.x.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int, ctypes.c_uint,
                                     ctypes.c_uint, ctypes.c_ulong, ctypes.c_int]
        self.x.XDestroyImage.argtypes = [ctypes.c_void_p]
        self.display = None
        for _ in range(200):
            self.display = self.x.XOpenDisplay(display.encode())
            if self.display:
                break
            time.sleep(0.05)
        else:
            raise SystemExit("the display %s does not open" % display)
        self.root = self.x.XDefaultRootWindow(self.display)

    def look(self):
        seen = []
        for column in COLUMNS:
            image = self.x.XGetImage(self.display, self.root, column, TOP, WIDTH, HEIGHT, 0xFFFFFFFF, 2)
            seen.append(ctypes.string_at(image.contents.data, 4 * WIDTH * HEIGHT))
            self.x.XDestroyImage(ctypes.cast(image, ctypes.c_void_p))
        return seen


def time_start(program, screen, environment):
    begin = time.monotonic()
    running = subprocess.Popen([program], env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    changes = []
    while time.monotonic() - begin < IN_THE_END:
        seen = screen.look()
        if not changes or changes[-1][1] != seen:
            changes.append((time.monotonic() - begin, seen))
        time.sleep(0.002)
    running.kill()
    running.wait()
    if len(changes) < 2:
        raise SystemExit("%s shows nothing" % program)
    return changes[-1][0]


def main():
    p = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    p.add_argument("program")
    p.add_argument("--window-manager")
    args = p.parse_args()
    number, told = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(told), "-screen", "0", "1600x1000x24"], pass_fds=[told],
                              stderr=subprocess.DEVNULL)
    others = [server]
    try:
        display = ":" + os.read(number, 20).decode().strip()
        with tempfile.TemporaryDirectory() as runtime:
            environment = dict(os.environ, DISPLAY=display, QT_QPA_PLATFORM="xcb", XDG_RUNTIME_DIR=runtime)
            screen = Screen(display)
            if args.window_manager:
                others.insert(0, subprocess.Popen([args.window_manager], env=environment, stdout=subprocess.DEVNULL,
                                                  stderr=subprocess.DEVNULL))
                time.sleep(1)  # until it is there
            print("%.3f" % time_start(args.program, screen, environment))
    finally:
        for process in others:
            process.kill()
            process.wait()


if __name__ == "__main__":
    main()
