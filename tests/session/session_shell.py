#!/usr/bin/env python3
"""By keyboard alone: open two files, switch modes, change a password, save as, close, exit. The files on disk are
checked with the companion."""
import os
import shutil
import subprocess
import sys

import desktop

programs, samples = sys.argv[1:3]
EDITOR = os.path.join(programs, "qir-editor")
COMPANION = os.path.join(programs, "qirdb")
MAIN = "^QIR Database Editor$"


def companion(*arguments):
    result = subprocess.run([COMPANION, *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                            check=False)
    return result.returncode, result.stdout


def content(path, *options):
    status, text = companion("dump", "--format", "json", *options, path)
    assert status == 0, f"{path} cannot be read"
    return text


def answer_box(screen, title, text):
    """Types into the input box of that title and confirms; `text` is typed whole before Return."""
    box = screen.window(title)
    screen.focus(box)
    screen.type(text)
    screen.key("Return")
    desktop.wait_until(lambda: box not in screen.windows(title), "the box to go")


def session(screen):
    left, right, copy = (os.path.join(screen.folder, name) for name in ("LEFT.DDB", "RIGHT.DDB", "COPY.DDB"))
    shutil.copy(os.path.join(samples, "PUMP.DDB"), left)
    shutil.copy(os.path.join(samples, "PUMP.DDB"), right)
    original = content(left)
    with open(right, "rb") as file:
        right_bytes = file.read()
    secret = os.path.join(screen.folder, "secret.txt")
    with open(secret, "w", encoding="utf-8") as file:
        file.write("two words\n")

    editor = screen.start(EDITOR)
    window = screen.window(MAIN)
    screen.focus(window)
    screen.choose_file("ctrl+o", left)

    # Two panes, the right one by F6, and back.
    screen.key("alt+m", "t")
    screen.key("F6")
    screen.choose_file("ctrl+o", right)
    screen.key("F6")

    # A password for the left database; the file follows with the next save.
    screen.key("alt+f", "p")
    answer_box(screen, r"^\?$", "")
    answer_box(screen, r"^\?$", "two words")
    assert content(left) == original
    screen.choose_file("ctrl+shift+s", copy)
    desktop.wait_until(lambda: companion("dump", "--password-file", secret, "--format", "json", copy)[0] == 0,
                       "the copy to be written")
    assert content(copy, "--password-file", secret) == original
    assert companion("dump", copy)[0] == 2, "the copy opens without its password"
    assert content(left) == original, "the first file was written"

    # No password again; closing asks, and neither Escape nor the close box answers.
    screen.key("alt+f", "p")
    answer_box(screen, r"^\?$", "two words")
    answer_box(screen, r"^\?$", "")
    screen.key("ctrl+w")
    question = desktop.wait_until(lambda: [w for w in screen.windows(MAIN) if w != window], "the question")[0]
    screen.focus(question)
    screen.key("Escape")
    screen.close(question)
    screen.key("Tab")
    assert question in screen.windows(MAIN), "the question was answered"
    screen.key("alt+y")
    desktop.wait_until(lambda: question not in screen.windows(MAIN), "the question to go")
    desktop.wait_until(lambda: companion("dump", copy)[0] == 0, "the change to be kept")
    assert content(copy) == original

    # Back to one pane, and out.
    screen.key("alt+m", "o")
    screen.key("ctrl+q")
    assert editor.wait(60) == 0
    assert content(left) == original
    with open(right, "rb") as file:
        assert file.read() == right_bytes, "the right file was written though nothing changed"


desktop.run(session)
