#!/usr/bin/python3 -I
"""The units for systemd: systemd understands them, and the program what they start.

Its argument is the program.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
UNITS = PROJECT / "packaging/systemd"
SERVICES = sorted(UNITS.glob("*.service"))


class SystemdTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        # An image of a machine, with the program at its place.
        self.units = self.folder / "usr/lib/systemd/system"
        shutil.copytree(UNITS, self.units)
        (self.folder / "usr/bin").mkdir()
        (self.folder / "usr/bin/mailserver-log").touch(0o755)

    def analyze(self, *arguments, **environment):
        return subprocess.run(["systemd-analyze", "--no-pager", *arguments], text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                              env={**os.environ, **environment}).stdout

    def test_systemd_understands_every_line(self):
        for unit in self.units.glob("*.service"):
            unit.write_text(unit.read_text().replace("/usr/bin/mailserver-log", str(PROGRAM)))
        names = [str(unit) for unit in self.units.glob("*.*") if unit.is_file()]
        self.assertEqual(len(names), len(SERVICES) + 2)
        said = self.analyze("verify", "--man=no", *names, SYSTEMD_UNIT_PATH=f"{self.units}:")
        self.assertNotIn("mailserver-log", said)

    def test_the_program_knows_its_options(self):
        for service in SERVICES:
            command = re.search("^ExecStart=/usr/bin/mailserver-log (.*)$", service.read_text(),
                                re.MULTILINE)[1].split()
            help_text = subprocess.run([PROGRAM, command[0], "--help"], check=True,
                                       capture_output=True, text=True).stdout
            self.assertTrue(set(command[1:]) <= set(re.split(r"[\s,]+", help_text)), service.name)

    def test_the_page_tells_how_exposed_they_are(self):
        page = (PROJECT / "docs/services.md").read_text()
        for service in SERVICES:
            said = self.analyze(f"--root={self.folder}", "--offline=true", "security",
                                service.name)
            exposure = re.search(r"Overall exposure level for \S+: ([0-9.]+)", said)
            self.assertIsNotNone(exposure, said)
            self.assertRegex(page, rf"\| `{service.stem}` \|.*\| {exposure[1]} \|")


if __name__ == "__main__":
    unittest.main()
