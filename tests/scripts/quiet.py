#!/usr/bin/env python3
"""What ./run prints on a machine that has nothing installed yet: at most ten lines, and everything where it fails.

    quiet.py PROJECT

The programs that it calls are stand-ins that print a lot.
"""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT = os.path.abspath(sys.argv.pop(1))

APT = """#!/bin/sh
echo "$@" >>"$CALLS"
i=0; while [ $i -lt 300 ]; do echo "apt says $i"; echo "apt warns $i" >&2; i=$((i + 1)); done
case "$APT_FAILS" in
  always) exit 100 ;;
  once) [ "$1" = update ] && touch "$CALLS.updated"; [ "$1" = update ] || [ -e "$CALLS.updated" ] || exit 100 ;;
esac
"""
CMAKE = """#!/bin/sh
echo "cmake $@" >>"$CALLS"
i=0; while [ $i -lt 300 ]; do echo "[$i/300] Building"; i=$((i + 1)); done
[ -z "$BUILD_FAILS" ] || { echo "the reason why it fails"; exit 1; }
[ "$1" = --preset ] && mkdir -p build/release && touch build/release/build.ninja
if [ "$1" = --build ]; then
  mkdir -p "$2/bin" && printf '#!/bin/sh\\n[ "$1" = -- ] || echo "$QT_QPA_PLATFORM: $@" >>"$CALLS"\\necho started\\n' >"$2/bin/qir-editor" && chmod +x "$2/bin/qir-editor"
fi
exit 0
"""


class Run(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="qir-scripts-")
        self.addCleanup(shutil.rmtree, self.folder)
        self.project = os.path.join(self.folder, "project")
        os.makedirs(os.path.join(self.project, "tools"))
        for name in ("run", "packages.txt", "tools/install-packages"):
            shutil.copy(os.path.join(PROJECT, name), os.path.join(self.project, name))
        self.programs = os.path.join(self.folder, "programs")
        os.makedirs(self.programs)
        # Nothing is installed; whoever runs this may install.
        self.stand_in("dpkg-query", "#!/bin/sh\nexit 0\n")
        self.stand_in("id", "#!/bin/sh\necho 0\n")
        self.stand_in("apt-get", APT)
        self.stand_in("cmake", CMAKE)

    def stand_in(self, name, text):
        path = os.path.join(self.programs, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(path, 0o755)

    def run_it(self, *arguments, **environment):
        environment = dict(os.environ, PATH=self.programs + ":" + os.environ["PATH"], DISPLAY=":none",
                           CALLS=os.path.join(self.folder, "calls"), **environment)
        return subprocess.run([os.path.join(self.project, "run"), *arguments], env=environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60, check=False)

    def calls(self):
        with open(os.path.join(self.folder, "calls"), encoding="utf-8") as file:
            return file.read()

    def test_a_first_run_prints_at_most_ten_lines(self):
        done = self.run_it()
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertLessEqual(len(done.stdout.splitlines()), 10, done.stdout)
        self.assertIn("Installing: ", done.stdout)
        self.assertTrue(done.stdout.endswith("started\n"))
        self.assertIn("install -y", self.calls())

    def test_old_package_lists_are_fetched_without_a_word(self):
        done = self.run_it(APT_FAILS="once")
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertLessEqual(len(done.stdout.splitlines()), 10, done.stdout)
        self.assertIn("update", self.calls())

    def test_all_is_shown_where_installing_fails(self):
        done = self.run_it(APT_FAILS="always")
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("apt says 299", done.stdout)
        self.assertIn("apt warns 299", done.stdout)

    def test_all_is_shown_where_building_fails(self):
        done = self.run_it(BUILD_FAILS="yes")
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("the reason why it fails", done.stdout)

    def test_options_of_the_editor_reach_it_and_a_name_is_no_option(self):
        self.run_it("--left", "A.DDB", "--right", "B.DDB")
        self.assertIn("--left A.DDB --right B.DDB\n", self.calls())
        self.assertEqual(self.run_it("A.DDB").returncode, 0)
        self.assertNotRegex(self.calls(), r"(?m)^\w*: A\.DDB$")

    def test_a_picture_is_drawn_offscreen_of_the_file_or_of_a_sample(self):
        done = self.run_it("--picture", "OUT.png", "A.DDB")
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertIn("\noffscreen: --picture OUT.png -- A.DDB\n", self.calls())
        self.run_it("--picture", "OUT.png")
        self.assertRegex(self.calls(), r"\noffscreen: --picture OUT.png -- /\S+/samples/PUMP.DDB\n")
        done = self.run_it("--picture")
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("--picture needs a file name", done.stdout)

    def test_only_what_the_editor_needs_is_built(self):
        self.run_it()
        self.assertRegex(self.calls(), r"(?m)^cmake --build \S+ --target qir-editor samples$")

    def test_a_later_run_prints_nothing_of_its_own(self):
        self.run_it()
        # All is installed now.
        self.stand_in("dpkg-query", "#!/bin/sh\nawk '$1 ~ /^(build|run)$/ { print \"ii\", $2 }' "
                      + os.path.join(self.project, "packages.txt") + "\n")
        self.assertEqual(self.run_it().stdout, "started\n")


unittest.main()
