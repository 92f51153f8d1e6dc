#!/usr/bin/env python3
"""Tests of tools/check_rooms.py: it finds each kind of violation in a small tree, and none where there is none."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "tools" / "check_rooms.py"


class CheckRooms(unittest.TestCase):
    def run_on(self, files):
        """Exit status and output for a tree of these files."""
        with tempfile.TemporaryDirectory() as folder:
            for name, text in files.items():
                path = pathlib.Path(folder) / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
            done = subprocess.run([sys.executable, SCRIPT, folder], capture_output=True, text=True)
            return done.returncode, done.stdout

    def test_downward_includes_pass(self):
        status, output = self.run_on({"base/text.h": "#include <string>\n",
                                      "model/catalogue.cpp": '#include "base/text.h"\n#include "model/catalogue.h"\n',
                                      "ui/window.cpp": "#include <QWidget>\n",
                                      "app/merlane.cpp": '#include <QApplication>\n#include "ui/window.h"\n'})
        self.assertEqual((status, output), (0, ""))

    def test_later_room_is_caught(self):
        status, output = self.run_on({"minimise/simplex.cpp": '\n#include "uncertainty/covariance.h"\n'})
        self.assertEqual(status, 1)
        self.assertIn("simplex.cpp:2: minimise must not include uncertainty", output)

    def test_qt_outside_the_windows_is_caught(self):
        for name in ("forms/desk.cpp", "app/merlane_batch.cpp"):
            status, output = self.run_on({name: "#include <QtWidgets>\n"})
            self.assertEqual(status, 1)
            self.assertIn("<QtWidgets>", output)

    def test_batch_and_windows_do_not_know_each_other(self):
        self.assertEqual(self.run_on({"batch/host.cpp": '#include "ui/window.h"\n'})[0], 1)

    def test_types_of_the_same_name_are_caught(self):
        files = {"data/sheet.h": "struct Sheet {\n};\n", "import/sheet.h": "class Sheet;\n\nclass Sheet : public Base {\n"}
        status, output = self.run_on(files)
        self.assertEqual(status, 1)
        self.assertIn("sheet.h:3: Sheet is defined in data/sheet.h, too", output)

    def test_types_that_are_nested_or_only_announced_pass(self):
        self.assertEqual(self.run_on({"data/one.h": "struct Sheet {\n  struct Row {\n  };\n};\n",
                                      "data/two.h": "struct Sheet;\nstruct Table {\n  struct Row {\n  };\n};\n"}), (0, ""))

    def test_include_of_no_room_is_caught(self):
        self.assertEqual(self.run_on({"base/text.cpp": '#include "text.h"\n'})[0], 1)

    def test_missing_folder_is_no_success(self):
        done = subprocess.run([sys.executable, SCRIPT, "/no/such/folder"], capture_output=True)
        self.assertNotEqual(done.returncode, 0)


if __name__ == "__main__":
    unittest.main()
