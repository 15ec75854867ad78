#!/usr/bin/env python3
"""Cells edited, copied and pasted with real keys, a real mouse and other programs' clipboards. The saved files are
checked with the companion."""
import csv
import json
import os
import subprocess
import sys

import desktop

programs, samples, clipboard_owner = sys.argv[1:4]
EDITOR = os.path.join(programs, "qir-editor")
COMPANION = os.path.join(programs, "qirdb")
MAIN = "^QIR Database Editor$"
YELLOW = b"\xff\xff\x00"


def make_database(folder, name, records):
    """A database of one table: a long, a text and a double field."""
    table = os.path.join(folder, "table.csv")
    with open(table, "w", encoding="utf-8", newline="") as file:
        writer = csv.writer(file)
        writer.writerow(["Number[long]", "Text[text]", "Ratio[double]"])
        writer.writerows(records)
    path = os.path.join(folder, name)
    subprocess.run([COMPANION, "create", path], check=True)
    subprocess.run([COMPANION, "import", path, "Cells", table], check=True)
    return path


def stored(path):
    """The records in the file, or None while it cannot be read."""
    result = subprocess.run([COMPANION, "dump", "--format", "json", path], stdout=subprocess.PIPE,
                            stderr=subprocess.DEVNULL, text=True, check=False)
    return [json.loads(line) for line in result.stdout.splitlines()[1:]] if result.returncode == 0 else None


class Editor:
    """A running editor with a database open, its grid focused."""

    def __init__(self, screen, path, records):
        self.screen = screen
        self.path = path
        self.records = [list(record) for record in records]
        self.process = screen.start(EDITOR, path)
        self.window = desktop.wait_until(self.new_window, "the window")
        screen.focus(self.window)
        self.plain = []
        self.centres = {}

    def new_window(self):
        own = self.screen.output("xdotool", "search", "--onlyvisible", "--all", "--pid", str(self.process.pid), "--name",
                                 MAIN)
        return own.split()[-1] if own else None

    def key(self, *keys):
        self.screen.focus(self.window)
        self.screen.key(*keys)

    def go(self, row, column):
        """Makes a cell current with keys."""
        self.key("ctrl+Home", *["Down"] * (row - 1), *["Right"] * (column - 1))

    def select(self, row, column, last_row, last_column):
        self.go(row, column)
        self.key(*["shift+Down"] * (last_row - row), *["shift+Right"] * (last_column - column))

    def expect(self, what):
        """Saves, and waits until the file holds the records that it should."""
        self.key("ctrl+s")
        try:
            desktop.wait_until(lambda: stored(self.path) == self.records, what)
        except desktop.Failed as failure:
            found = [(i + 1, record) for i, record in enumerate(stored(self.path) or []) if record != self.records[i]]
            raise desktop.Failed(f"{failure}; it holds {found}") from None

    def edited_cell(self):
        """The rectangle (left, top, right, bottom) that is yellow now, in the window, and was not without an open
        editor; None when there is none."""
        yellow = []
        for y, (row, plain) in enumerate(zip(self.screen.pixels(self.window), self.plain)):
            if row != plain:
                yellow += [(x // 3, y) for x in range(0, len(row), 3)
                           if row[x:x + 3] == YELLOW and plain[x:x + 3] != YELLOW]
        if len(yellow) < 100:
            return None
        xs, ys = zip(*yellow)
        return min(xs), min(ys), max(xs), max(ys)

    def open_by(self, act):
        """Does what opens the editor and gives where it stands."""
        self.plain = self.screen.pixels(self.window)
        act()
        return desktop.wait_until(self.edited_cell, "the editor over a cell")

    def close_by(self, act):
        act()
        desktop.wait_until(lambda: self.edited_cell() is None, "the editor to close")

    def measure(self):
        """Learns where the cells are, by the editor that opens over them."""
        for row, column in ((1, 1), (1, 2), (1, 3), (2, 2)):
            self.go(row, column)
            left, top, right, bottom = self.open_by(lambda: self.key("Return"))
            self.centres[row, column] = ((left + right) // 2, (top + bottom) // 2)
            self.close_by(lambda: self.key("Return"))

    def place(self, row, column):
        """The middle of a record cell that is in view while the first record is at the top."""
        x, y = self.centres[1, column]
        return x, y + (row - 1) * (self.centres[2, 2][1] - y)

    def mouse(self, *actions):
        self.screen.focus(self.window)
        command = ["xdotool"]
        for action in actions:
            if isinstance(action, tuple):
                x, y = self.place(*action)
                command += ["mousemove", "--window", self.window, str(x), str(y)]
            else:
                command += action.split()
            command += ["sleep", "0.1"]
        self.screen.output(*command)

    def end(self):
        self.key("ctrl+q")
        assert self.process.wait(60) == 0


def clipboard(screen, *options):
    result = subprocess.run(["xclip", "-o", "-selection", "clipboard", *options], env=screen.environment,
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=30, check=False)
    return result.stdout.decode("utf-8")


def expect_clipboard(screen, text):
    try:
        desktop.wait_until(lambda: clipboard(screen) == text, "the clipboard")
    except desktop.Failed:
        raise desktop.Failed(f"the clipboard holds {clipboard(screen)!r}, not {text!r}") from None


def offer(screen, text, **more):
    """Puts a text on the clipboard from another program, with further formats where `more` names some. With None for
    the text only those."""
    if not more:
        subprocess.run(["xclip", "-i", "-selection", "clipboard"], input=text.encode("utf-8"), env=screen.environment,
                       stdout=subprocess.DEVNULL, timeout=30, check=True)
        return None
    arguments = []
    contents = more if text is None else {"text/plain": text, **more}
    for number, (kind, content) in enumerate(contents.items()):
        path = os.path.join(screen.folder, f"offer{number}")
        with open(path, "w", encoding="utf-8", newline="") as file:
            file.write(content)
        arguments += [kind.replace("_", "/"), path]
    owner = subprocess.Popen([clipboard_owner, *arguments], env=screen.environment, stdout=subprocess.PIPE, text=True)
    screen.children.append(owner)
    assert owner.stdout.readline() == "ready\n"
    return owner


def typing(editor):
    editor.go(1, 1)
    editor.key("Return")
    editor.screen.type("5")
    editor.key("Return")
    editor.records[0][0] = 15
    editor.key("Right", "Return", "ctrl+a")
    editor.screen.type("Pump '2nd'; (main)")
    editor.key("Return")
    editor.records[0][1] = "Pump '2nd'; (main)"
    editor.expect("the typed texts")


def mouse(editor):
    screen = editor.screen
    double_click = "click --repeat 2 --delay 80 1"
    editor.open_by(lambda: editor.mouse((3, 2), double_click))
    screen.type("!")
    editor.records[2][1] += "!"
    editor.key("Return")
    editor.expect("what was typed after the double click")

    # A block dragged from its lower right corner, copied; other programs get it while the editor is idle.
    editor.mouse((4, 3), "mousedown 1", (3, 3), (2, 2), "mouseup 1")
    editor.key("ctrl+c")
    block = "\r".join(f"{text}\t{ratio}" for _, text, ratio in editor.records[1:4])
    expect_clipboard(screen, block)
    expect_clipboard(screen, block)
    assert "text/html" in clipboard(screen, "-t", "TARGETS").split()
    assert clipboard(screen, "-t", "text/html").count("<td>") == 6

    # The wheel ends an edit and makes the first visible cell current.
    editor.open_by(lambda: editor.mouse((2, 2), double_click))
    editor.close_by(lambda: editor.mouse((6, 2), "click 5"))
    left, top, right, bottom = editor.open_by(lambda: editor.key("Return"))
    x, y = editor.centres[1, 1]
    assert left < x < right and top < y < bottom, "not the first visible cell"
    editor.key("ctrl+a")
    screen.type("777")
    editor.key("Return", "ctrl+s")
    desktop.wait_until(lambda: stored(editor.path) != editor.records, "the edit of the first visible cell")
    changed = [i for i, record in enumerate(stored(editor.path)) if record[0] == 777]
    assert len(changed) == 1 and changed[0] >= 1, f"records {changed} were changed"
    editor.records[changed[0]][0] = 777
    editor.expect("nothing but that edit")


def texts_of_other_programs(editor):
    screen = editor.screen
    row = 10
    for line_end in ("\n", "\r\n", "\r"):
        for last in ("", line_end):
            offer(screen, f"{row}\tgrüßt für 5 €{line_end}{row + 1}\ttwo words{last}")
            editor.select(row, 1, row + 2, 2)
            editor.key("ctrl+v")
            editor.records[row - 1][:2] = [row, "grüßt für 5 €"]
            editor.records[row][:2] = [row + 1, "two words"]
            editor.expect(f"the text with {line_end!r} and {last!r}")
            row += 2

    # A spreadsheet offers HTML beside; empty cells of it empty those here, letters in a number are shown and stored
    # as nothing.
    owner = offer(screen, "\t\r\nabc\tz\r\n", text_html="<table><tr><td>never</td><td>read</td></tr></table>")
    editor.select(5, 1, 6, 2)
    editor.key("shift+Insert")
    editor.records[4][:2] = [0, ""]
    editor.records[5][:2] = [0, "z"]
    editor.expect("the spreadsheet's cells")
    editor.go(6, 1)
    editor.key("ctrl+Insert")
    expect_clipboard(screen, "abc")
    assert owner.poll() is None

    # What has no text pastes nothing.
    offer(screen, None, text_html="<b>only this</b>")
    editor.key("ctrl+v")
    editor.expect("no change")


def between_editors(screen, editor):
    hard = ["tab\there", "line\nend", 'quote " and \r\n both']
    records = [[i, text, 0.5 * i] for i, text in enumerate(hard, 1)]
    other = Editor(screen, make_database(screen.folder, "OTHER.DDB", records), records)
    other.key("Tab")
    other.select(1, 1, 3, 3)
    other.key("ctrl+c")
    desktop.wait_until(lambda: "tab\there" in clipboard(screen), "the other editor's block")
    editor.select(7, 1, 9, 3)
    editor.key("ctrl+v")
    editor.records[6:9] = records
    editor.expect("the other editor's cells")

    # And back, the first one's cells into the second.
    editor.select(1, 1, 2, 2)
    editor.key("ctrl+c")
    desktop.wait_until(lambda: clipboard(screen).startswith("15\t"), "the block")
    other.select(2, 1, 3, 2)
    other.key("ctrl+v")
    for k in (0, 1):
        other.records[k + 1][:2] = editor.records[k][:2]
    other.expect("the first editor's cells")
    other.end()


def session(screen):
    records = [[10 * i if i > 1 else 1, f"text {i}", i + 0.25] for i in range(1, 201)]
    editor = Editor(screen, make_database(screen.folder, "CELLS.DDB", records), records)
    editor.key("Tab")
    editor.measure()
    typing(editor)
    mouse(editor)
    texts_of_other_programs(editor)
    between_editors(screen, editor)
    editor.end()


desktop.run(session, "xclip")
