#!/usr/bin/env python3
"""An installation: complete, at home wherever it is moved to, and removed without rest.

    installed.py PROJECT BUILD
"""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT, BUILD = (os.path.abspath(path) for path in sys.argv[1:3])

EXPECTED = [
    "bin/qir-editor", "bin/qirdb", "lib/qir/components/QIRTBase.so",
    "share/qir/samples/PUMP.DDB", "share/qir/samples/PUMP-2.DDB", "share/qir/samples/PANEL.WDB",
    "share/qir/samples/USERS.UDB", "share/qir/samples/STAFF.IDB", "share/qir/samples/PLANT.SDB",
    "share/bash-completion/completions/qirdb", "share/zsh/site-functions/_qirdb",
    "share/fish/vendor_completions.d/qirdb.fish",
    "share/man/man1/qir-editor.1", "share/man/man1/qirdb.1", "share/man/man1/qirdb-diff.1",
    "share/doc/qir/user-guide.md", "share/doc/qir/qirdb.md", "share/doc/qir/file-format.md", "share/doc/qir/LICENSE",
    "share/doc/qir/pictures/compare-2.png",
    "share/doc/qir/example-component/CMakeLists.txt", "share/doc/qir/example-component/ExampleComponent.json",
    "share/icons/hicolor/scalable/mimetypes/application-x-qir-database.svg",
]
# Sources that the page on components leads to.
SOURCES = ["share/doc/qir/db/QirDatabase.h", "share/doc/qir/example-component/ExampleComponent.cpp"]
# Each ends with one of these, whatever name the project is published under.
EXPECTED_ENDS = [".desktop", ".metainfo.xml", "-symbolic.svg"]


def files_below(folder):
    return sorted(os.path.relpath(os.path.join(path, name), folder)
                  for path, _, names in os.walk(folder) for name in names)


def run(*command, **environment):
    return subprocess.run(command, env=dict(os.environ, **environment), text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, timeout=300, check=False)


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="qir-installed-")
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.first = os.path.join(cls.folder, "first")
        done = run("cmake", "--install", BUILD, "--prefix", cls.first)
        assert done.returncode == 0, done.stdout
        cls.manifest = os.path.join(cls.folder, "manifest")
        shutil.copy(os.path.join(BUILD, "install_manifest.txt"), cls.manifest)
        cls.installed = files_below(cls.first)
        # Somewhere else, a blank in its name, and nothing at all where it was.
        cls.moved = os.path.join(cls.folder, "an other place")
        os.rename(cls.first, cls.moved)

    def program(self, name, *arguments):
        state = os.path.join(self.folder, "state")
        return run(os.path.join(self.moved, "bin", name), *arguments, QIR_COMPONENT_PATH="", XDG_STATE_HOME=state,
                   QT_QPA_PLATFORM="offscreen")

    def test_everything_is_there(self):
        for name in EXPECTED + SOURCES:
            self.assertIn(name, self.installed)
        for end in EXPECTED_ENDS:
            self.assertTrue(any(name.endswith(end) for name in self.installed), end)
        for command in self.program("qirdb", "--help").stdout.split("Subcommands:")[1].split("\n\n")[0].splitlines()[1:]:
            if command.startswith("  ") and command[2] != " ":
                self.assertIn(f"share/man/man1/qirdb-{command.split()[0]}.1", self.installed)

    def test_the_guide_is_there_as_a_page_with_its_pictures(self):
        if run("/usr/bin/python3", "-c", "import markdown").returncode != 0:
            self.skipTest("not run: python3-markdown is missing")
        with open(os.path.join(self.moved, "share/doc/qir/guide.html"), encoding="utf-8") as file:
            page = file.read()
        pictures = [name for name in self.installed if name.startswith("share/doc/qir/pictures/")]
        self.assertEqual(page.count("data:image/png"), len(pictures))

    def test_nothing_of_the_sources_or_the_build_is_there(self):
        for name in self.installed:
            self.assertRegex(name, r"^(bin|lib/qir/components|share)/")
            if name not in SOURCES:
                self.assertNotRegex(name, r"\.(a|o|h|cpp|cmake|in)$")

    def test_no_text_names_the_place_of_the_first_installation_or_of_the_sources(self):
        for name in self.installed:
            if not name.startswith("share/"):
                continue
            with open(os.path.join(self.moved, name), "rb") as file:
                content = file.read()
            for place in (self.first, PROJECT):
                self.assertNotIn(place.encode(), content, name)

    def test_the_companion_reads_a_sample_from_the_moved_place(self):
        sample = os.path.join(self.moved, "share/qir/samples/PUMP.DDB")
        done = self.program("qirdb", "tables", sample)
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertIn("Parameters", done.stdout)

    def test_the_editor_shows_a_sample_from_the_moved_place(self):
        picture = os.path.join(self.folder, "picture.png")
        sample = os.path.join(self.moved, "share/qir/samples/PUMP.DDB")
        done = self.program("qir-editor", "--picture", picture, "--", sample)
        self.assertEqual(done.returncode, 0, done.stdout)
        with open(picture, "rb") as file:
            self.assertEqual(file.read(8), b"\x89PNG\r\n\x1a\n")

    def test_without_the_component_neither_works(self):
        # What shows that the tests above have used the one that was moved.
        component = os.path.join(self.moved, "lib/qir/components/QIRTBase.so")
        os.rename(component, component + ".away")
        self.addCleanup(os.rename, component + ".away", component)
        done = self.program("qirdb", "tables", os.path.join(self.moved, "share/qir/samples/PUMP.DDB"))
        self.assertEqual(done.returncode, 2, done.stdout)

    @unittest.skipUnless(shutil.which("mandoc"), "not run: mandoc is missing")
    def test_the_manual_pages_are_well_formed(self):
        pages = [os.path.join(self.moved, name) for name in self.installed if name.startswith("share/man/")]
        done = run("mandoc", "-T", "lint", "-W", "warning", *pages)
        told = [line for line in done.stdout.splitlines() if "missing date" not in line]
        self.assertEqual(told, [])

    def test_the_editors_manual_page_has_the_options_that_it_knows(self):
        with open(os.path.join(self.moved, "share/man/man1/qir-editor.1"), encoding="utf-8") as file:
            page = file.read().replace("\\-", "-")
        told = self.program("qir-editor", "--help").stdout.split("Arguments:")[0]
        options = [word.rstrip(",") for word in told.split() if word.startswith("--")]
        self.assertIn("--compare", options)
        for option in options:
            self.assertIn(option, page)

    def test_z_it_is_removed_without_rest(self):
        foreign = os.path.join(self.moved, "share", "doc", "other.txt")
        with open(foreign, "w", encoding="utf-8") as file:
            file.write("of somebody else\n")
        uninstall = ["cmake", f"-DPREFIX={self.moved}", f"-DINSTALLED={self.first}", f"-DMANIFEST={self.manifest}",
                     "-P", os.path.join(PROJECT, "cmake", "Uninstall.cmake")]
        done = run(*uninstall)
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertEqual(files_below(self.moved), ["share/doc/other.txt"])
        self.assertEqual(os.listdir(self.moved), ["share"])
        os.remove(foreign)
        self.assertEqual(run(*uninstall).returncode, 0)


if __name__ == "__main__":
    result = unittest.main(argv=sys.argv[:1], exit=False, verbosity=2).result
    sys.exit(1 if not result.wasSuccessful() else 77 if result.skipped else 0)
