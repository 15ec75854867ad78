#!/usr/bin/env python3
"""The first hour of a new user, with what is installed and nothing else: a database made from a CSV file, a second version
of it in a branch of git, two differences carried across and one taken back, and branches merged without and with a conflict.
The menus and buttons are pressed with the mouse. What is on disk is looked at with the companion after each step.

  session_tour.py PROGRAMS SAMPLES BUILD [--packages FOLDER] [--pictures FOLDER]

It is installed from BUILD, or unpacked from the packages in a FOLDER. --pictures keeps a numbered picture of each step.
"""
import argparse
import glob
import json
import os
import shutil
import subprocess
import sys

import desktop
from accessibles import Tree, missing, start_bus

MAIN = r"^QIR Database Editor\*?$"
FILE_DIALOGS = "^(File DDB,WDB,UDB,SDB,IDB|New Database)$"
TABLE = "Pumps"
RECORDS = [["P-1", 1500, 5.5], ["P-2", 900, 3], ["P-3", 1450, 4], ["P-4", 950, 2.5]]
# What the overhaul changes: record, field and value.
OVERHAUL = [(1, "Speed", 1600), (2, "Power", 7.5), (4, "Speed", 990)]


def install(arguments, folder):
    """Puts the programs below `folder` and gives the folder in which a shell would find them."""
    if not arguments.packages:
        subprocess.run(["cmake", "--install", arguments.build, "--prefix", folder], check=True, stdout=subprocess.DEVNULL)
        return os.path.join(folder, "bin")
    packages = glob.glob(os.path.join(arguments.packages, "*.deb"))
    assert packages, f"no package in {arguments.packages}"
    for package in packages:
        subprocess.run(["dpkg-deb", "-x", package, folder], check=True)
    return os.path.join(folder, "usr", "bin")


class Tour:
    """A person at the desktop, in a folder of their own."""

    def __init__(self, screen, arguments):
        self.screen, self.arguments, self.pictures = screen, arguments, 0
        self.installed = os.path.join(screen.folder, "installed")
        programs = install(arguments, self.installed)
        self.place = os.path.join(screen.folder, "plant")
        os.mkdir(self.place)
        self.file = os.path.join(self.place, "PLANT.DDB")
        self.environment = dict(screen.environment, PATH=programs + os.pathsep + os.environ["PATH"],
                                GIT_CONFIG_NOSYSTEM="1", GIT_TERMINAL_PROMPT="0", GIT_PAGER="cat", GIT_EDITOR="true")
        for name in ("QIR_COMPONENT_PATH", "LD_LIBRARY_PATH", "XDG_CONFIG_HOME", "GIT_DIR", "GIT_WORK_TREE"):
            self.environment.pop(name, None)
        for program in ("qirdb", "qir-editor"):
            assert shutil.which(program, path=self.environment["PATH"]) == os.path.join(programs, program), program

    def run(self, *command, expected=0, text=None):
        """What a command line says, with its trouble."""
        done = subprocess.run(command, env=self.environment, cwd=self.place, text=True, input=text, timeout=120,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        assert done.returncode == expected, f"{' '.join(command)} ended with {done.returncode}:\n{done.stdout}"
        return done.stdout

    def records(self, path):
        """What the file holds."""
        told = self.run("qirdb", "dump", "--format", "json", path).splitlines()
        return [json.loads(line) for line in told[1:]]

    def differences(self, *files):
        """In how many cells two files differ."""
        return self.run("qirdb", "diff", *files, expected=1).count(TABLE + ": record ")

    def picture(self, name):
        self.screen.still()
        self.pictures += 1
        if self.arguments.pictures:
            self.screen.picture("root", os.path.join(self.arguments.pictures, f"{self.pictures:02}-{name}.png"))

    # The mouse and the keys

    def start(self, *files):
        self.editor = subprocess.Popen(["qir-editor", "--language", "en", *files], cwd=self.place,
                                       env=dict(self.environment, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                                                DBUS_SESSION_BUS_ADDRESS=os.environ["DBUS_SESSION_BUS_ADDRESS"]))
        self.screen.children.append(self.editor)
        self.window = self.screen.window(MAIN)
        self.screen.focus(self.window)
        self.tree = Tree(self.screen)
        with open(f"/proc/{self.editor.pid}/maps", encoding="utf-8") as file:
            taken = {line.split()[-1] for line in file if "qir" in os.path.basename(line.split()[-1]).lower()}
        assert taken and all(path.startswith(self.installed) for path in taken), taken

    def shown(self, role, name):
        """The control that shows, and does so to the mouse too: it is where it was at the last look."""
        places = [None]

        def found():
            for accessible in self.tree.of_role(role):
                if accessible.name == name and "enabled" in self.tree.states(accessible):
                    place = accessible.queryComponent().getExtents(0)
                    places.append((place.x + place.width // 2, place.y + place.height // 2))
                    return places[-1] == places[-2] and places[-1]
            return False
        return desktop.wait_until(found, f"{role} '{name}'", 60)

    def press(self, role, name):
        """Goes down on it and up again after the time that a finger takes."""
        x, y = map(str, self.shown(role, name))
        self.screen.output("xdotool", "mousemove", x, y, "mousedown", "1", "sleep", "0.08", "mouseup", "1")

    def menu(self, name, item):
        self.press("menu item", name)
        self.press("menu item", item)

    def choose_file(self, path, picture):
        self.screen.focus(self.screen.window(FILE_DIALOGS))
        self.screen.type(path)
        self.picture(picture)
        self.screen.key("Return")
        self.screen.no_window(FILE_DIALOGS)
        self.screen.focus(self.window)

    def wait_for_red(self, number):
        """Waits until so many cells of the left table are said to differ."""
        table = self.tree.named("table", "Left table").queryTable()
        desktop.wait_until(lambda: number == sum(table.getAccessibleAt(row, column).name.endswith(", differs")
                                                 for row in range(table.nRows) for column in range(table.nColumns)),
                           f"{number} red cells", 60)

    def leave(self):
        self.screen.key("ctrl+q")
        assert self.editor.wait(60) == 0, "the editor has failed"


def make_database(tour):
    tour.start()
    tour.picture("started")
    tour.press("menu item", "File")
    tour.picture("file-menu")
    tour.press("menu item", "New Database...")
    tour.choose_file(tour.file, "new-database")
    desktop.wait_until(lambda: os.path.exists(tour.file), "the new file", 60)
    tour.picture("made")
    lines = ["Name[text:20],Speed[long],Power[double]", *(",".join(map(str, record)) for record in RECORDS)]
    tour.run("qirdb", "import", "PLANT.DDB", TABLE, "-", text="\n".join(lines) + "\n")
    tour.shown("push button", "Reload")
    tour.picture("imported-outside")
    tour.press("push button", "Reload")
    tour.tree.named("list item", TABLE)
    assert tour.records("PLANT.DDB") == RECORDS
    tour.picture("reloaded")


def make_a_second_version(tour):
    tour.run("sh", "-ec", "git init -q -b main; git config user.name N; git config user.email n@example.org\n"
             "qirdb install-git; git add PLANT.DDB .gitattributes; git commit -q -m 'The plant'; git checkout -q -b overhaul")
    for record, field, value in OVERHAUL:
        tour.run("qirdb", "set", "PLANT.DDB", TABLE, str(record), field, str(value))
    tour.run("git", "commit", "-q", "-a", "-m", "The overhaul")
    shutil.copyfile(tour.file, os.path.join(tour.place, "OVERHAUL.DDB"))
    tour.run("git", "checkout", "-q", "main")
    tour.picture("branch-left")
    assert tour.records("PLANT.DDB") == RECORDS
    assert tour.differences("PLANT.DDB", "OVERHAUL.DDB") == len(OVERHAUL)


def carry_across(tour):
    screen = tour.screen
    tour.menu("Mode", "Two Databases")
    screen.key("F6")
    tour.picture("two-panes")
    tour.menu("File", "Open...")
    tour.choose_file(os.path.join(tour.place, "OVERHAUL.DDB"), "open-the-second")
    tour.press("list item", TABLE + " !")
    tour.wait_for_red(3)
    tour.picture("side-by-side")
    screen.key("F8")
    tour.picture("first-difference")
    screen.key("alt+Left")
    tour.wait_for_red(2)
    tour.picture("first-carried")
    screen.key("F8")
    tour.picture("second-difference")
    screen.key("alt+Left")
    tour.wait_for_red(1)
    tour.picture("second-carried")
    screen.key("F6", "ctrl+z")  # in the pane that was changed
    tour.wait_for_red(2)
    tour.picture("second-undone")
    assert tour.records("PLANT.DDB") == RECORDS, "written before it was saved"
    overhaul = tour.records("OVERHAUL.DDB")
    screen.key("ctrl+s")
    wanted = [["P-1", 1600, 5.5], *RECORDS[1:]]
    desktop.wait_until(lambda: tour.records("PLANT.DDB") == wanted, "the one difference in the file", 60)
    assert tour.records("OVERHAUL.DDB") == overhaul, "the other file was written"
    assert tour.differences("PLANT.DDB", "OVERHAUL.DDB") == 2
    tour.picture("saved")
    tour.leave()
    told = tour.run("git", "diff")
    assert f"{TABLE}: record 1, field 2 (Speed): 1500 | 1600" in told and told.count(" | ") == 1, told
    tour.run("git", "commit", "-q", "-a", "-m", "One of the overhaul")


def change(tour, branch, record, field, value):
    """A change of one cell, committed in a branch."""
    tour.run("git", "checkout", "-q", branch)
    tour.run("qirdb", "set", "PLANT.DDB", TABLE, str(record), field, str(value))
    tour.run("git", "commit", "-q", "-a", "-m", f"{field} {value}")


def merge(tour):
    tour.run("git", "branch", "night")
    change(tour, "night", 2, "Speed", 880)
    change(tour, "main", 3, "Power", 4.5)
    tour.run("git", "merge", "-q", "--no-edit", "night")
    assert tour.records("PLANT.DDB") == [["P-1", 1600, 5.5], ["P-2", 880, 3], ["P-3", 1450, 4.5], RECORDS[3]]
    change(tour, "night", 4, "Power", 2.75)
    change(tour, "main", 4, "Power", 2.25)
    told = tour.run("git", "merge", "-q", "--no-edit", "night", expected=1)
    assert "PLANT.DDB.conflicts.json" in told and 'table "Pumps", record 4, field "Power"' in told, told
    assert tour.records("PLANT.DDB")[3] == ["P-4", 950, 2.25], "ours until it is decided"
    tour.start("PLANT.DDB")
    tour.picture("opened-in-conflict")
    tour.menu("File", "Merge Conflicts...")
    tour.screen.window("^Merge Conflicts$")
    tour.picture("conflicts")
    tour.press("push button", "Take Theirs")
    tour.screen.window(r"^\?$")
    tour.picture("theirs-taken")
    assert tour.records("PLANT.DDB")[3] == ["P-4", 950, 2.25], "written before it was said"
    tour.press("push button", "Yes")  # save, and remove the list
    desktop.wait_until(lambda: tour.records("PLANT.DDB")[3] == ["P-4", 950, 2.75], "theirs in the file", 60)
    tour.screen.no_window(r"^\?$")
    tour.picture("conflict-saved")
    assert not os.path.exists(tour.file + ".conflicts.json"), "the list of the conflicts is left"
    tour.screen.focus(tour.window)
    tour.leave()
    tour.run("git", "add", "PLANT.DDB")
    tour.run("git", "commit", "-q", "--no-edit")
    tour.run("git", "merge-base", "--is-ancestor", "night", "main")
    assert tour.run("git", "status", "--porcelain").split() == ["??", "OVERHAUL.DDB"]
    assert tour.records("PLANT.DDB")[3] == ["P-4", 950, 2.75]


def parsed():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    for name in ("programs", "samples", "build", "--packages", "--pictures"):
        parser.add_argument(name)
    return parser.parse_args()


def session(screen):
    start_bus(screen)
    tour = Tour(screen, parsed())
    for part in (make_database, make_a_second_version, carry_across, merge):
        part(tour)


if __name__ == "__main__":
    if missing():
        print(f"not run: {missing()} is missing")
        sys.exit(desktop.NOT_RUN)
    desktop.run(session, "git", "dpkg-deb" if parsed().packages else "cmake")
