#!/usr/bin/env python3
"""Tests of tools/check_host_functions.py: it finds a call of the host's functions in a library, and none where only
exact ones are called.

    check_host_functions_test.py COMPILER LIBM"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "tools" / "check_host_functions.py"
COMPILER, LIBM = sys.argv[1], sys.argv[2]


class CheckHostFunctions(unittest.TestCase):
    def run_on(self, *values):
        """Exit status and output for an object whose functions return these values of double x."""
        with tempfile.TemporaryDirectory() as folder:
            source, compiled = pathlib.Path(folder) / "f.cpp", pathlib.Path(folder) / "f.o"
            functions = [f"double f{i}(double x) {{ return {value}; }}\n" for i, value in enumerate(values)]
            source.write_text("#include <cmath>\n" + "".join(functions))
            subprocess.run([COMPILER, "-O2", "-c", source, "-o", compiled], check=True)
            done = subprocess.run([sys.executable, SCRIPT, LIBM, compiled], capture_output=True, text=True)
            return done.returncode, done.stdout

    def test_exact_functions_pass(self):
        self.assertEqual(self.run_on("std::sqrt(x) + std::fmod(x, 7) + std::floor(x)"), (0, ""))

    def test_each_function_whose_digits_are_the_hosts_is_caught(self):
        names = ["exp", "log", "sin", "cos", "tan", "atan", "expm1", "log1p", "log10", "cbrt", "erf", "lgamma"]
        status, output = self.run_on(*[f"std::{name}(x)" for name in names], "std::pow(x, 0.3)",
                                     "std::exp(static_cast<float>(x))")
        self.assertEqual(status, 1)
        self.assertEqual(sorted(line.split(": ")[1] for line in output.splitlines()), sorted([*names, "pow", "expf"]))

    def test_missing_library_is_no_success(self):
        done = subprocess.run([sys.executable, SCRIPT, LIBM, "/no/such/library.a"], capture_output=True)
        self.assertNotEqual(done.returncode, 0)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
