#!/usr/bin/env python3
"""Steps taken back and made again, the history, finding and replacing, going to a cell, what is stored otherwise, the keys
of editing and a whole block pasted, all with real keys. The saved files are checked with the companion."""
import csv
import json
import os
import signal
import subprocess
import sys

import desktop

programs, samples = sys.argv[1:3]
EDITOR = os.path.join(programs, "qir-editor")
COMPANION = os.path.join(programs, "qirdb")
MAIN = r"^QIR Database Editor\*?$"
ASKING = r"^\?$"
TELLING = "^!$"
NUMBER, TEXT, BYTE = range(3)


def make_database(folder):
    """20 records of a number, a text and a byte; gives the file and its records."""
    records = [[10 * i, f"text {i}", i] for i in range(1, 21)]
    table = os.path.join(folder, "table.csv")
    with open(table, "w", encoding="utf-8", newline="") as file:
        csv.writer(file).writerows([["Number[long]", "Text[text:40]", "Byte[byte]"], *records])
    path = os.path.join(folder, "CELLS.DDB")
    subprocess.run([COMPANION, "create", path], check=True)
    subprocess.run([COMPANION, "import", path, "Cells", table], check=True)
    return path, records


def stored(path):
    """The records in the file, or None while it cannot be read."""
    result = subprocess.run([COMPANION, "dump", "--format", "json", path], stdout=subprocess.PIPE,
                            stderr=subprocess.DEVNULL, text=True, check=False)
    return [json.loads(line) for line in result.stdout.splitlines()[1:]] if result.returncode == 0 else None


class Editor:
    """A running editor with the database open, its grid focused."""

    def __init__(self, screen, path, records):
        self.screen, self.path, self.records = screen, path, records
        self.process, self.window = None, None
        self.open()

    def open(self):
        self.process = self.screen.start(EDITOR, "--language", "en", self.path)
        self.window = self.screen.window(MAIN)
        self.screen.focus(self.window)
        self.key("Tab")

    def key(self, *keys):
        self.screen.key(*keys)

    def go(self, row, column):
        self.key("ctrl+Home", *["Down"] * (row - 1), *["Right"] * column)

    def type_over(self, row, column, text):
        self.go(row, column)
        self.key("F2", "ctrl+a")
        self.screen.type(text)
        self.key("Return")

    def dialog(self, title, *keys, text=""):
        """Types into the window of that title and presses keys, which close it."""
        window = self.screen.window(title)
        self.screen.focus(window)
        if text:
            self.screen.type(text)
        self.key(*keys)
        desktop.wait_until(lambda: window not in self.screen.windows(title), f"the window '{title}' to go")
        self.screen.focus(self.window)

    def expect(self, what, **changes):
        """Saves, and waits until the file holds the records as they were with these changes, record and column by the
        name rROWcCOLUMN."""
        wanted = [list(record) for record in self.records]
        for cell, value in changes.items():
            row, column = cell[1:].split("c")
            wanted[int(row) - 1][int(column)] = value
        self.key("ctrl+s")
        try:
            desktop.wait_until(lambda: stored(self.path) == wanted, what)
        except desktop.Failed as failure:
            found = stored(self.path) or []
            other = [(i + 1, record) for i, record in enumerate(found) if i >= len(wanted) or record != wanted[i]]
            raise desktop.Failed(f"{failure}; {len(found)} records, otherwise: {other}") from None
        return wanted


def taking_back(editor):
    editor.type_over(1, NUMBER, "7")
    editor.type_over(2, TEXT, "typed")
    editor.key("ctrl+z")
    editor.expect("one step taken back", r1c0=7)
    editor.key("ctrl+z", "ctrl+shift+z", "ctrl+y")
    editor.expect("both made again across the save", r1c0=7, r2c1="typed")
    editor.go(3, TEXT)
    editor.key("F2")
    editor.screen.type("xyz")
    editor.key("ctrl+z", "ctrl+z", "Return")  # the text's own
    editor.expect("the text undone in its editor", r1c0=7, r2c1="typed")
    editor.key("ctrl+z", "ctrl+z", "ctrl+z", "ctrl+z")
    editor.expect("all taken back")


def history_after_a_crash(editor):
    editor.type_over(1, NUMBER, "7")
    editor.type_over(2, TEXT, "typed")
    editor.process.send_signal(signal.SIGKILL)
    editor.process.wait()
    editor.screen.no_window(MAIN)
    editor.process = editor.screen.start(EDITOR, "--language", "en", editor.path)
    notice = editor.screen.window(TELLING)
    editor.screen.focus(notice)
    editor.key("Return")
    editor.screen.no_window(TELLING)
    editor.window = editor.screen.window(MAIN)
    editor.screen.focus(editor.window)
    editor.key("Tab", "alt+e", "h")
    editor.dialog("^History$", "End", "Up", "Return")
    editor.key("alt+e", "h")
    editor.dialog("^History$", "End", "Return")
    editor.expect("what the journal had", r1c0=7, r2c1="typed")
    editor.key("alt+e", "h")
    editor.dialog("^History$", "Home", "Return")
    editor.expect("the state as opened")
    editor.type_over(4, NUMBER, "8")
    editor.key("alt+f", "v")
    editor.dialog(ASKING, "alt+y")
    editor.key("ctrl+z")  # the way back is a step
    editor.expect("the way back to what is saved taken back", r4c0=8)
    editor.key("ctrl+z")
    editor.expect("the edit taken back")
    editor.key("alt+h", "v")
    editor.dialog("^Kept Versions$", "Escape")


def finding(editor):
    editor.key("ctrl+f")
    editor.screen.type("text 17")
    editor.key("F3", "Escape", "F2")
    editor.screen.type("!")
    editor.key("Return")
    editor.expect("the hit changed", r17c1="text 17!")
    editor.key("ctrl+f", "ctrl+a")
    editor.screen.type("text 1")
    editor.key("ctrl+h", "ctrl+a")
    editor.screen.type("word 1")
    editor.screen.still()
    editor.key("alt+a")
    editor.screen.still()  # the button goes down and up again first
    changes = {f"r{i}c1": f"word {i}" for i in [1, *range(10, 20)]}
    editor.expect("all replaced", **{**changes, "r17c1": "word 17!"})
    editor.key("Escape")
    editor.key("ctrl+z")
    editor.expect("all taken back as one step", r17c1="text 17!")
    editor.key("ctrl+z")
    editor.expect("the hit as it was")


def going(editor):
    editor.key("ctrl+g")
    editor.dialog(ASKING, "Return", text="15, text")
    editor.key("F2")
    editor.screen.type("?")
    editor.key("Return", "ctrl+g")
    editor.dialog(ASKING, "Return", text="byte")
    editor.key("F2", "ctrl+a")
    editor.screen.type("999")
    editor.key("Return")
    editor.expect("the cells gone to; 255 where 999 shows", r15c1="text 15?", r15c2=255)
    editor.key("ctrl+z", "ctrl+z")
    editor.expect("both taken back")


def keys(editor):
    editor.go(3, TEXT)
    editor.key("shift+F2")
    editor.dialog(r"^Record 3, Text", "Return", "x", "ctrl+Return")
    editor.go(4, TEXT)
    editor.key("shift+Down", "Delete")
    editor.go(7, NUMBER)
    editor.key("ctrl+d")
    editor.go(10, BYTE)
    editor.key("shift+Down", "shift+Down", "ctrl+d")
    editor.key("ctrl+End", "F2", "ctrl+a")
    editor.screen.type("77")
    editor.key("Return")
    changes = {"r4c1": "", "r5c1": "", "r7c0": 60, "r11c2": 10, "r12c2": 10, "r20c2": 77}
    found = [text for text in ("text 3\nx", "text 3\r\nx")]
    editor.key("ctrl+s")
    desktop.wait_until(lambda: (stored(editor.path) or [[0, ""]] * 3)[2][1] in found, "the line of the larger box")
    editor.expect("what the keys did", r3c1=stored(editor.path)[2][1], **changes)
    editor.key("ctrl+a", "Delete")
    desktop.wait_until(lambda: editor.key("ctrl+s") or all(record == [0, "", 0] for record in stored(editor.path) or [1]),
                       "everything emptied")
    editor.key(*["ctrl+z"] * 6)
    editor.expect("all taken back")


def pasting(editor):
    editor.go(2, NUMBER)
    editor.key("shift+Down", "shift+Down", "shift+Right", "ctrl+c")
    editor.go(19, NUMBER)
    editor.key("alt+e", "l")
    editor.dialog(ASKING, "alt+y")
    editor.records.append([0, "", 0])
    editor.expect("the whole block", **{f"r{19 + i}c{c}": editor.records[1 + i][c] for i in range(3) for c in (0, 1)})
    editor.records.pop()
    editor.key("ctrl+z")
    editor.expect("its one step taken back")


def session(screen):
    editor = Editor(screen, *make_database(screen.folder))
    for part in (taking_back, history_after_a_crash, finding, going, keys, pasting):
        part(editor)
    editor.key("ctrl+q")
    assert editor.process.wait(60) == 0


desktop.run(session)
