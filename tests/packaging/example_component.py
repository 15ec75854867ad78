#!/usr/bin/env python3
"""The example of docs/component.md: under 300 lines, and it serves companion and editor.

    example_component.py PROJECT PROGRAMS COMPONENT-FOLDER
"""
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT, PROGRAMS, COMPONENT = (os.path.abspath(path) for path in sys.argv[1:4])


class Example(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="qir-example-")
        self.addCleanup(shutil.rmtree, self.folder)

    def path(self, name):
        return os.path.join(self.folder, name)

    def run_it(self, program, *arguments, status=0):
        environment = dict(os.environ, QIR_COMPONENT_PATH=COMPONENT, QT_QPA_PLATFORM="offscreen",
                           XDG_STATE_HOME=self.path("state"))
        done = subprocess.run([os.path.join(PROGRAMS, program), *arguments], env=environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=300, check=False)
        self.assertEqual(done.returncode, status, done.stdout)
        return done.stdout

    def make(self, name, csv):
        with open(self.path("table.csv"), "w", encoding="utf-8") as file:
            file.write(csv)
        self.run_it("qirdb", "create", self.path(name))
        self.run_it("qirdb", "import", self.path(name), "Pumps", self.path("table.csv"))

    def test_it_has_fewer_than_300_lines(self):
        with open(os.path.join(PROJECT, "docs/example-component/ExampleComponent.cpp"), encoding="utf-8") as file:
            self.assertLess(len(file.readlines()), 300)

    def test_the_lines_of_the_page_build_it_alone_and_use_it(self):
        with open(os.path.join(PROJECT, "docs/component.md"), encoding="utf-8") as file:
            lines = re.search(r"To try it:\n\n((?:    .+\n)+)", file.read()).group(1).split("\n    ")
        self.assertEqual(len(lines), 2)
        os.symlink(os.path.join(PROJECT, "docs"), self.path("docs"))
        os.makedirs(self.path("build/release"))
        os.symlink(PROGRAMS, self.path("build/release/bin"))
        for line in lines:
            done = subprocess.run(["bash", "-ec", line], cwd=self.folder, text=True, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, timeout=600, check=False,
                                  env=dict(os.environ, XDG_STATE_HOME=self.path("state")))
            self.assertEqual(done.returncode, 0, done.stdout)
        with open(self.path("A.DDB"), encoding="utf-8") as file:
            self.assertEqual(json.load(file), [])  # no other component writes that

    def test_what_the_companion_imports_stands_in_its_file_and_comes_back(self):
        self.make("A.DDB", "Name[text:20],Speed[long],Flow[double]\nMain,1200,0.25\nSpare,1000000,-3\n")
        with open(self.path("A.DDB"), encoding="utf-8") as file:
            tables = json.load(file)
        self.assertEqual([table["table"] for table in tables], ["Pumps"])
        self.assertEqual(tables[0]["records"], [["Main", 1200, 0.25], ["Spare", 1000000, -3]])
        lines = self.run_it("qirdb", "dump", "--format", "json", self.path("A.DDB")).splitlines()
        self.assertEqual([json.loads(line) for line in lines[1:]], [["Main", 1200, 0.25], ["Spare", 1000000, -3]])

    def test_differences_are_told(self):
        self.make("A.DDB", "Name[text:20],Speed[long]\nMain,1200\nSpare,900\n")
        self.make("B.DDB", "Name[text:20],Speed[long]\nMain,1250\nSpare,900\n")
        told = self.run_it("qirdb", "diff", "--json", self.path("A.DDB"), self.path("B.DDB"), status=1)
        cells = [line for line in map(json.loads, told.splitlines()) if "left" in line]
        self.assertEqual([(cell["record"], cell["left"], cell["right"]) for cell in cells], [(1, 1200, 1250)])

    def test_an_error_is_told_and_changes_nothing(self):
        self.make("A.DDB", "Name[text:20]\nMain\n")
        told = self.run_it("qirdb", "get", self.path("A.DDB"), "Valves", "1", "1", status=2)
        self.assertIn("Valves", told)

    def test_the_window_shows_its_file(self):
        self.make("A.DDB", "Name[text:20],Speed[long]\nMain,1200\nSpare,900\n")
        picture = self.path("A.png")
        self.run_it("qir-editor", "--picture", picture, "--", self.path("A.DDB"))
        with open(picture, "rb") as file:
            self.assertEqual(file.read(8), b"\x89PNG\r\n\x1a\n")

    def test_a_file_that_is_none_of_its_own_is_not_opened(self):
        with open(self.path("A.DDB"), "w", encoding="utf-8") as file:
            file.write("no database")
        self.run_it("qirdb", "tables", self.path("A.DDB"), status=2)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
