#!/usr/bin/env python3
"""Files dragged out of another program's window with a real mouse, and dropped on the editor: on an empty pane, on the
other one, two at once, on a cell that is being edited; and what is no file is not taken."""
import json
import os
import shutil
import sys

import desktop

programs, samples, source_program = sys.argv[1:4]
EDITOR = os.path.join(programs, "qir-editor")


def remembered(screen):
    """What the editor has opened last, as it keeps it for its menus."""
    path = os.path.join(screen.folder, "state", "qir", "editor.json")
    try:
        with open(path, encoding="utf-8") as file:
            return json.load(file)
    except (OSError, ValueError):
        return {}


def opened(screen):
    files = remembered(screen).get("files", [])
    return files[0]["path"] if files else None


class Source:
    """The program that files are dragged out of, beside the editor."""

    def __init__(self, screen, *files):
        self.screen = screen
        self.child = screen.start(source_program, *files)
        self.window = screen.window("^Files to drag$")
        screen.output("xdotool", "windowmove", "--sync", self.window, "20", "30")

    def drag(self, editor, x, y):
        """Carries the files to a place in the editor's window and lets them go."""
        self.screen.output("xdotool", "windowraise", self.window)
        left, top, width, height = self.screen.place(self.window)
        from_x, from_y = left + width // 2, top + height // 2
        editor_left, editor_top, _, _ = self.screen.place(editor)
        to_x, to_y = editor_left + x, editor_top + y
        steps = ["mousemove", str(from_x), str(from_y), "mousedown", "1", "sleep", "0.1"]
        for step in range(1, 21):
            steps += ["mousemove", str(from_x + (to_x - from_x) * step // 20),
                      str(from_y + (to_y - from_y) * step // 20), "sleep", "0.03"]
        self.screen.output("xdotool", *steps, "sleep", "0.2", "mouseup", "1")

    def end(self):
        self.child.terminate()
        self.child.wait(20)
        self.screen.no_window("^Files to drag$")


def session(screen):
    files = {}
    for name in ("PUMP.DDB", "PUMP-2.DDB", "VALVE.WDB"):
        source = next(path for path in (os.path.join(samples, name), os.path.join(samples, "PUMP.DDB"))
                      if os.path.exists(path))
        files[name] = os.path.join(screen.folder, name)
        shutil.copy(source, files[name])
    before = {name: os.stat(path).st_mtime_ns for name, path in files.items()}
    editor_process = screen.start(EDITOR)
    editor = screen.window("^QIR Database Editor$")
    screen.output("xdotool", "windowsize", "--sync", editor, "1000", "640")
    screen.output("xdotool", "windowmove", "--sync", editor, "240", "220")

    source = Source(screen, files["PUMP.DDB"])
    source.drag(editor, 500, 330)
    desktop.wait_until(lambda: opened(screen) == files["PUMP.DDB"], "the file dropped on the empty pane")
    source.end()

    screen.focus(editor)
    screen.key("alt+m", "t")  # two panes
    screen.still()
    source = Source(screen, files["PUMP-2.DDB"])
    source.drag(editor, 760, 330)
    pair = {"left": files["PUMP.DDB"], "right": files["PUMP-2.DDB"]}
    desktop.wait_until(lambda: remembered(screen).get("pairs", [])[:1] == [pair], "the file dropped on the right pane")
    source.end()

    # A cell under edit takes no text: the file is opened in its pane.
    screen.focus(editor)
    screen.click(editor, 120, 400, count=2)
    screen.still()
    source = Source(screen, files["VALVE.WDB"])
    source.drag(editor, 120, 400)
    pair = {"left": files["VALVE.WDB"], "right": files["PUMP-2.DDB"]}
    desktop.wait_until(lambda: remembered(screen).get("pairs", [])[:1] == [pair], "the file dropped on a cell")
    source.end()

    # Two at once stand side by side.
    source = Source(screen, files["PUMP-2.DDB"], files["PUMP.DDB"])
    source.drag(editor, 760, 330)
    pair = {"left": files["PUMP-2.DDB"], "right": files["PUMP.DDB"]}
    desktop.wait_until(lambda: remembered(screen).get("pairs", [])[:1] == [pair], "the two files")
    source.end()

    # A folder is nothing to open.
    state = remembered(screen)
    source = Source(screen, screen.folder)
    source.drag(editor, 760, 330)
    screen.still()
    assert remembered(screen) == state, "the folder was taken"
    assert len(screen.windows("^QIR Database Editor$")) == 1, "a box stands there"
    source.end()
    screen.picture("root", "drops.png")
    if os.environ.get("QIR_SESSION_PICTURES"):
        shutil.copy(os.path.join(screen.folder, "drops.png"), os.environ["QIR_SESSION_PICTURES"])

    screen.focus(editor)
    screen.key("ctrl+q")
    assert editor_process.wait(60) == 0
    after = {name: os.stat(path).st_mtime_ns for name, path in files.items()}
    assert after == before, "a drop has moved or written a file"


if __name__ == "__main__":
    desktop.run(session)
