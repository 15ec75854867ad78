#!/usr/bin/env python3
"""Passwords and keys in the memory of the running programs, and no core dump while a protected file is open.

    session_secrets.py PROGRAMS SAMPLES [BUILD]

The programs must be built without sanitizers, whose allocator keeps what is freed. BUILD is a build folder to bring up to
date first; without it there nothing is run. Only root may read the memory of a program that has a protected file open:
as anybody else the rest is looked at, and the test counts as not run.
"""
import hashlib
import os
import re
import resource
import shutil
import signal
import subprocess
import sys

import nacl.bindings

import desktop

programs, samples = map(os.path.abspath, sys.argv[1:3])
EDITOR = os.path.join(programs, "qir-editor")
COMPANION = os.path.join(programs, "qirdb")
MAIN = "^QIR Database Editor$"
ASKED = "^Input password$"
FIRST = "Quarzgang-17-bei-Nacht"
SECOND = "Kiesweg_23_im_Nebel"
WRONG = "Granit.42.am.Morgen"

not_looked_at = []


def pieces(password):
    """Eight characters from three places of a password, in each encoding that it goes through."""
    return {f"{password[at:at + 8]} in {code}": password[at:at + 8].encode(code)
            for at in (0, len(password) // 2 - 4, len(password) - 8)
            for code in ("utf-8", "utf-16-le", "utf-32-le")}


class Keys:
    """The keys of a protected file, derived as docs/file-format.md says: the master key, which stays while the file is
    open, and those that are made from it for a load or a save."""
    def __init__(self, path, password):
        with open(path, "rb") as file:
            header = file.read(10 + 192)[10:]
        passes, memory = (int.from_bytes(header[at:at + 4], "little") for at in (80, 84))
        self.master = nacl.bindings.crypto_pwhash_alg(32, password.encode(), header[96:112], passes, memory * 1024,
                                                      nacl.bindings.crypto_pwhash_ALG_ARGON2ID13)
        head = hashlib.blake2b(key=self.master, digest_size=32, salt=(1).to_bytes(8, "little"), person=b"QIR head")
        body = hashlib.blake2b(header[160:192], key=self.master, digest_size=32)
        self.derived = {"head key": head.digest(), "body key": body.digest()}


GUARDED = "guarded memory"


def regions(pid):
    """All memory of a process that can be read: (name, bytes). Guarded is what is left out of core dumps by itself."""
    with open(f"/proc/{pid}/smaps", encoding="utf-8", errors="replace") as maps, \
            open(f"/proc/{pid}/mem", "rb", buffering=0) as memory:
        fields = []
        for line in maps:
            if not line.startswith("VmFlags:"):
                if re.match("[0-9a-f]+-[0-9a-f]+ ", line):
                    fields = line.split(maxsplit=5)
                continue
            name = fields[5].strip() if len(fields) > 5 else "memory of its own"
            if not fields[1].startswith("r") or name.startswith("[v"):
                continue
            start, end = (int(part, 16) for part in fields[0].split("-"))
            try:
                memory.seek(start)
                content = memory.read(end - start)
            except OSError:
                continue  # gone meanwhile, or a device
            yield (GUARDED if "dd" in line.split() else name), content


def found(pid, needles):
    """Which needles stand where: a list of (needle, region). None where we may not look."""
    places = []
    try:
        for name, content in regions(pid):
            for what, needle in needles.items():
                places += [(what, name)] * content.count(needle)
    except PermissionError:
        return None
    return places


def expect_none(when, pid, *passwords):
    """Looks for passwords, for a moment again where something is about to be overwritten."""
    needles = {}
    for password in passwords:
        needles.update(pieces(password))
    if found(pid, {}) is None:
        not_looked_at.append(when)
        return
    desktop.wait_until(lambda: not found(pid, needles), f"no password to be in memory: {when}: {found(pid, needles)}", 5)


def expect_keys(when, pid, keys, is_open):
    """While the file is open the master key stands in guarded memory and nowhere else, else it is gone; what is made from
    it stands nowhere."""
    places = found(pid, {"master key": keys.master, **keys.derived})
    if places is None:
        not_looked_at.append(when)
    else:
        assert set(places) == ({("master key", GUARDED)} if is_open else set()), f"{when}: {places}"


def answer(screen, title, text):
    box = screen.window(title)
    screen.focus(box)
    screen.type(text)
    screen.key("Return")
    desktop.wait_until(lambda: box not in screen.windows(title), "the box to go")


def content(path):
    with open(path, "rb") as file:
        return file.read()


def protect(screen, name, password):
    path = os.path.join(screen.folder, name)
    secret = os.path.join(screen.folder, name + ".password")
    shutil.copy(os.path.join(samples, "PUMP.DDB"), path)
    with open(secret, "w", encoding="utf-8") as file:
        file.write(password + "\n")
    subprocess.run([COMPANION, "passwd", "--new-password-file", secret, path], check=True)
    return path, secret


def looks_alive(screen, editor):
    """The scan itself: it sees a password that stands in a text box."""
    box = screen.window(ASKED)
    screen.focus(box)
    screen.type(FIRST)
    wanted = {"typed": FIRST.encode("utf-16-le")}
    desktop.wait_until(lambda: found(editor.pid, wanted), "the typed password to be seen")
    screen.key("Return")


def editor_session(screen):
    path, _ = protect(screen, "A.DDB", FIRST)
    editor = screen.start(EDITOR, path)
    looks_alive(screen, editor)
    window = screen.window(MAIN)
    first = Keys(path, FIRST)
    expect_none("a protected file is open", editor.pid, FIRST)
    expect_keys("a protected file is open", editor.pid, first, True)

    screen.focus(window)
    screen.key("alt+f", "p")
    answer(screen, r"^\?$", FIRST)
    answer(screen, r"^\?$", SECOND)
    expect_none("the password was changed", editor.pid, FIRST, SECOND)
    before = content(path)
    screen.key("ctrl+s")
    desktop.wait_until(lambda: content(path) != before, "the file to be saved")
    second = Keys(path, SECOND)
    expect_keys("saved under the new password", editor.pid, first, False)
    expect_keys("saved under the new password", editor.pid, second, True)

    screen.focus(window)
    screen.key("alt+f", "p")
    answer(screen, r"^\?$", WRONG)
    answer(screen, r"^\?$", FIRST)
    question = desktop.wait_until(lambda: [w for w in screen.windows(MAIN) if w != window], "the error")[0]
    expect_none("the password was not changed", editor.pid, FIRST, WRONG)
    screen.focus(question)
    screen.key("Return")
    desktop.wait_until(lambda: question not in screen.windows(MAIN), "the error to go")

    screen.focus(window)
    screen.key("ctrl+w")
    desktop.wait_until(lambda: not found(editor.pid, {"key": second.master}), "the key to go", 10)
    expect_none("the file is closed", editor.pid, FIRST, SECOND, WRONG)
    screen.key("ctrl+q")
    assert editor.wait(60) == 0


def refused_session(screen):
    path, _ = protect(screen, "B.DDB", FIRST)
    editor = screen.start(EDITOR, path)
    answer(screen, ASKED, WRONG)
    message = screen.window("^!!$")
    expect_none("a wrong password was refused", editor.pid, WRONG)
    screen.focus(message)
    screen.key("Return")
    assert editor.wait(60) == 1


def companion_session(screen):
    path, secret = protect(screen, "C.DDB", FIRST)
    read_end, write_end = os.pipe()
    os.set_blocking(write_end, False)
    try:
        while True:
            os.write(write_end, bytes(4096))
    except BlockingIOError:
        pass  # full: the companion stops at its first word
    os.set_blocking(write_end, True)
    companion = subprocess.Popen([COMPANION, "dump", "--password-file", secret, path], stdout=write_end)
    screen.children.append(companion)
    os.close(write_end)
    keys = Keys(path, FIRST)

    if os.geteuid() == 0:
        desktop.wait_until(lambda: found(companion.pid, {"key": keys.master}), "the companion to open the file")
        expect_none("the companion has a protected file open", companion.pid, FIRST)
        expect_keys("the companion has a protected file open", companion.pid, keys, True)
    else:
        not_looked_at.append("the companion has a protected file open")
    while os.read(read_end, 65536):
        pass
    assert companion.wait(60) == 0


def dumps_core(screen, *arguments, before=lambda editor, window: None):
    """Starts the editor and crashes it; whether the system wrote a core dump."""
    editor = screen.start(EDITOR, *arguments)
    if arguments:
        answer(screen, ASKED, FIRST)
    before(editor, screen.window(MAIN))
    editor.send_signal(signal.SIGABRT)
    _, status = os.waitpid(editor.pid, 0)
    editor.returncode = -signal.SIGABRT
    assert os.WIFSIGNALED(status) and os.WTERMSIG(status) == signal.SIGABRT
    screen.no_window(MAIN)
    return os.WCOREDUMP(status)


def crash_session(screen):
    os.chdir(screen.folder)
    _, most = resource.getrlimit(resource.RLIMIT_CORE)
    resource.setrlimit(resource.RLIMIT_CORE, (most, most))
    path, _ = protect(screen, "D.DDB", FIRST)
    key = {"master key": Keys(path, FIRST).master}
    if not dumps_core(screen):
        not_looked_at.append("core dumps, which this machine does not write at all")
        return

    def opened(editor, _):
        desktop.wait_until(lambda: found(editor.pid, key) != [], "the file to be open")

    def closed(editor, window):
        opened(editor, window)
        screen.focus(window)
        screen.key("ctrl+w")
        desktop.wait_until(lambda: found(editor.pid, key) == [], "the file to be closed")

    assert not dumps_core(screen, path, before=opened), "a core dump was written while a protected file was open"
    assert dumps_core(screen, path, before=closed), "no core dump after the protected file was closed"


def session(screen):
    editor_session(screen)
    refused_session(screen)
    companion_session(screen)
    crash_session(screen)


if len(sys.argv) > 3:
    if not os.path.exists(os.path.join(sys.argv[3], "build.ninja")):
        print("not run: there is no build without sanitizers; make one by: cmake --preset release")
        sys.exit(desktop.NOT_RUN)
    subprocess.run(["cmake", "--build", sys.argv[3], "--target", "qir-editor", "qirdb", "QIRTBase", "samples"],
                   check=True, stdout=subprocess.DEVNULL)
desktop.run(session, not_looked_at=not_looked_at)
