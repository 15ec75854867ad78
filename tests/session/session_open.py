#!/usr/bin/env python3
"""Start on a sample, pick a table with keys and with the mouse, open another file by the dialog, close the window in
the middle of a long load."""
import os
import subprocess
import sys

import desktop

programs, samples = sys.argv[1:3]
EDITOR = os.path.join(programs, "qir-editor")
COMPANION = os.path.join(programs, "qirdb")


def long_table(folder):
    """A database whose only table takes seconds to load, and its bytes."""
    csv = os.path.join(folder, "long.csv")
    with open(csv, "w", encoding="utf-8") as file:
        file.write(",".join(f"f{k}[long]" for k in range(20)) + "\n")
        file.writelines(",".join(str(r + k) for k in range(20)) + "\n" for r in range(300_000))
    path = os.path.join(folder, "LONG.DDB")
    subprocess.run([COMPANION, "create", path], check=True)
    subprocess.run([COMPANION, "import", path, "Long", csv], check=True)
    with open(path, "rb") as file:
        return path, file.read()


def check_picture_changes(screen, window, act, what):
    """Acts, and waits until the window looks different."""
    def look():
        return subprocess.run(["import", "-window", window, "rgb:-"], env=screen.environment, stdout=subprocess.PIPE,
                              check=True).stdout
    before = look()
    act()
    desktop.wait_until(lambda: look() != before, what)


def check_start_up_password(screen):
    """The password box stands over the middle of the window where the window manager has put it."""
    editor = screen.start(EDITOR, os.path.join(samples, "USERS.UDB"))
    box = screen.place(screen.window("Input password"))
    window = screen.place(screen.window("QIR Database Editor"))
    for side in (0, 1):
        middle = box[side] + box[side + 2] / 2
        wanted = window[side] + window[side + 2] / 2
        assert abs(middle - wanted) < 40, f"the box {box} stands beside the middle of the window {window}"
    screen.focus(screen.window("Input password"))
    screen.type("pump-house-7")
    screen.key("Return")
    screen.no_window("Input password")

    def ends():
        """As a person does who sees the window still there: while the password becomes a key it takes no command."""
        screen.key("ctrl+q")
        try:
            return editor.wait(5) is not None
        except subprocess.TimeoutExpired:
            return False
    desktop.wait_until(ends, "the end of the editor", 60)
    assert editor.returncode == 0


def session(screen):
    check_start_up_password(screen)
    editor = screen.start(EDITOR, os.path.join(samples, "PUMP.DDB"))
    window = screen.window("QIR Database Editor")
    screen.focus(window)
    check_picture_changes(screen, window, lambda: screen.key("Tab", "Down"), "the next table by key")
    check_picture_changes(screen, window, lambda: screen.click(window, 60, 80), "another table by mouse")

    def open_by_dialog():
        screen.key("ctrl+o")
        screen.focus(screen.window("File DDB,WDB,UDB,SDB,IDB"))
        screen.type(os.path.join(samples, "PANEL.WDB"))
        screen.key("Return")
        screen.no_window("File DDB,WDB,UDB,SDB,IDB")
        screen.focus(window)
    check_picture_changes(screen, window, open_by_dialog, "the other file by the dialog")
    screen.key("ctrl+q")
    assert editor.wait(60) == 0

    path, content = long_table(screen.folder)
    editor = screen.start(EDITOR, path)
    screen.close(screen.window("QIR Database Editor"))  # shows before the load begins, which takes seconds
    assert editor.wait(60) == 0
    with open(path, "rb") as file:
        assert file.read() == content, "the file was written though nothing changed"


desktop.run(session)
