#!/usr/bin/env python3
"""The desktop session ends: a changed database is asked about by the same question as at the window's closing, and
an open dialog is answered first."""
import os
import shutil
import subprocess
import sys

import desktop
import session_manager

programs, samples = sys.argv[1:3]
EDITOR = os.path.join(programs, "qir-editor")
COMPANION = os.path.join(programs, "qirdb")
MAIN = "^QIR Database Editor$"
BOX = r"^\?$"


def protected(path):
    result = subprocess.run([COMPANION, "info", path], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                            stderr=subprocess.DEVNULL, check=False)
    return result.returncode != 0


def change_password(screen):
    """An unsaved change: the open file gets a password."""
    screen.key("alt+f", "p")
    for text in ("", "secret"):
        box = screen.window(BOX)
        screen.focus(box)
        screen.type(text)
        screen.key("Return")
        desktop.wait_until(lambda: box not in screen.windows(BOX), "the box to go")


def session(screen):
    path = os.path.join(screen.folder, "A.DDB")
    shutil.copy(os.path.join(samples, "PUMP.DDB"), path)
    manager = session_manager.SessionManager()
    editor = screen.start(EDITOR, path, SESSION_MANAGER=manager.address)
    window = screen.window(MAIN)
    desktop.wait_until(lambda: "saved" in manager.events, "the editor to join the session")
    screen.focus(window)
    change_password(screen)

    # A dialog that stands open keeps the session from ending.
    screen.key("alt+f", "p")
    box = screen.window(BOX)
    manager.end_session()
    desktop.wait_until(lambda: "cancelled" in manager.events, "the logout to be cancelled")
    assert editor.poll() is None
    screen.focus(box)
    screen.key("Escape")
    screen.no_window(BOX)

    manager.events.clear()
    manager.end_session()
    question = desktop.wait_until(lambda: [w for w in screen.windows(MAIN) if w != window], "the question")[0]
    assert manager.events == ["asks"], manager.events
    assert not protected(path), "the file was written before the answer"
    screen.focus(question)
    screen.key("alt+y")
    assert editor.wait(60) == 0
    desktop.wait_until(lambda: "gone" in manager.events, "the editor to leave the session")
    assert "asked" in manager.events and "cancelled" not in manager.events, manager.events
    assert protected(path), "the change was lost"
    manager.close()


if not session_manager.available():
    print("not run: missing libSM or libICE")
    sys.exit(desktop.NOT_RUN)
desktop.run(session)
