#!/usr/bin/env python3
"""What a desktop is told: entry, types of files, icons, description.

    desktop_data.py PROJECT BUILD

A check whose tool the machine lacks is not run, and said to be so: exit status 77.
"""
import glob
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT, BUILD = (os.path.abspath(path) for path in sys.argv[1:3])
MADE = os.path.join(BUILD, "packaging", "made")
MIME = os.path.join(PROJECT, "packaging", "qir-editor.mime.xml")
TYPE = "application/x-qir-database"
HEAD = b"0000000192QIR0"


def the_one(pattern):
    found = glob.glob(os.path.join(MADE, pattern))
    assert len(found) == 1, found
    return found[0]


def run(*command, **environment):
    done = subprocess.run(command, env=dict(os.environ, **environment), text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, timeout=120, check=False)
    return done.returncode, done.stdout


def needs(*programs):
    missing = [program for program in programs if shutil.which(program) is None]
    return unittest.skipIf(missing, "not run: missing " + ", ".join(missing))


class Entry(unittest.TestCase):
    @needs("desktop-file-validate")
    def test_it_is_valid(self):
        self.assertEqual(run("desktop-file-validate", the_one("*.desktop")), (0, ""))

    def test_it_opens_a_file_whatever_its_name_and_offers_to_compare(self):
        with open(the_one("*.desktop"), encoding="utf-8") as file:
            lines = file.read().splitlines()
        self.assertIn("Exec=qir-editor -- %f", lines)
        self.assertIn("Name=Compare two files", lines)
        self.assertIn("Exec=qir-editor --compare", lines)
        self.assertIn(f"MimeType={TYPE};", lines)

    def test_its_name_is_the_one_that_the_program_tells(self):
        name = os.path.basename(the_one("*.desktop"))[:-len(".desktop")]
        with open(os.path.join(BUILD, "bin", "qir-editor"), "rb") as program:
            self.assertIn(name.encode("utf-16-le"), program.read())


class Description(unittest.TestCase):
    def validate(self, path):
        status, told = run("appstreamcli", "validate", "--no-net", "--explain", path)
        self.assertEqual(status, 0, told)
        self.assertNotRegex(told, r"(?m)^[WE]: ")

    @needs("appstreamcli")
    def test_it_is_valid(self):
        self.validate(the_one("*.metainfo.xml"))

    @needs("appstreamcli")
    def test_it_is_valid_with_pictures_too_where_the_project_has_an_address(self):
        with tempfile.TemporaryDirectory() as folder:
            script = os.path.join(folder, "CMakeLists.txt")
            with open(script, "w", encoding="utf-8") as file:
                file.write("cmake_minimum_required(VERSION 3.25)\nproject(qir VERSION 1.2.3 LANGUAGES NONE)\n"
                           "include(GNUInstallDirs)\nset(QIR_APPLICATION_ID org.example.Other)\n"
                           "set(QIR_CONTACT \"Somebody <somebody@example.org>\")\n"
                           "set(QIR_WEB_ADDRESS https://www.example.org/qir)\n"
                           f"add_subdirectory(\"{PROJECT}/packaging\" packaging)\n")
            status, told = run("cmake", "-G", "Ninja", "-S", folder, "-B", os.path.join(folder, "build"))
            self.assertEqual(status, 0, told)
            path = os.path.join(folder, "build", "packaging", "made", "org.example.Other.metainfo.xml")
            with open(path, encoding="utf-8") as file:
                self.assertIn("https://www.example.org/qir/docs/pictures/", file.read())
            self.validate(path)


@needs("update-mime-database", "gio")
class Types(unittest.TestCase):
    """As a user of the desktop has them: ours beside those of the system."""

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="qir-types-")
        self.addCleanup(shutil.rmtree, self.folder)
        packages = os.path.join(self.folder, "data", "mime", "packages")
        os.makedirs(packages)
        shutil.copy(MIME, os.path.join(packages, "org.example.QirEditor.xml"))
        self.assertEqual(self.update(), (0, ""))

    def update(self):
        data = os.path.join(self.folder, "data")
        return run("update-mime-database", os.path.join(data, "mime"), XDG_DATA_HOME=data)

    def type_of(self, name, content):
        path = os.path.join(self.folder, name)
        with open(path, "wb") as file:
            file.write(content)
        _, told = run("gio", "info", "-a", "standard::content-type", path, XDG_DATA_HOME=os.path.join(self.folder, "data"))
        return told.split("standard::content-type:")[1].strip()

    def test_each_extension_in_any_case_is_ours(self):
        for extension in ("DDB", "WDB", "UDB", "IDB", "SDB"):
            for name in (f"A.{extension}", f"a.{extension.lower()}", f"a.{extension.capitalize()}"):
                self.assertEqual(self.type_of(name, HEAD + bytes(200)), TYPE, name)

    def test_the_bytes_tell_a_file_of_any_other_name(self):
        self.assertEqual(self.type_of("backup", HEAD + bytes(200)), TYPE)
        self.assertEqual(self.type_of("backup.0001", b"0000000192QIR1" + bytes(200)), TYPE)

    def test_a_file_of_a_foreign_name_and_content_is_not_ours(self):
        self.assertNotEqual(self.type_of("notes.txt", b"QIR stands here, but not at its place\n"), TYPE)
        self.assertNotEqual(self.type_of("backup", b"0000000192RIQ0" + bytes(200)), TYPE)

    def test_without_ours_nothing_is_known(self):
        # What shows that the tests above have seen ours.
        os.remove(os.path.join(self.folder, "data", "mime", "packages", "org.example.QirEditor.xml"))
        self.update()
        self.assertNotEqual(self.type_of("A.DDB", HEAD + bytes(200)), TYPE)


class Icons(unittest.TestCase):
    @needs("rsvg-convert")
    def test_the_pictures_are_those_of_the_drawings(self):
        kept = os.path.join(PROJECT, "packaging", "icons")
        with tempfile.TemporaryDirectory() as folder:
            status, told = run(os.path.join(PROJECT, "tools", "icons"), folder)
            self.assertEqual(status, 0, told)
            names = sorted(os.listdir(folder))
            self.assertEqual(names, sorted(name for name in os.listdir(kept) if name.endswith(".png")))
            for name in names:
                with open(os.path.join(folder, name), "rb") as made, open(os.path.join(kept, name), "rb") as file:
                    self.assertEqual(made.read(), file.read(), f"{name}: tools/icons draws it anew")


if __name__ == "__main__":
    result = unittest.main(argv=sys.argv[:1], exit=False, verbosity=2).result
    sys.exit(1 if not result.wasSuccessful() else 77 if result.skipped else 0)
