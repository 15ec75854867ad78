#!/usr/bin/env python3
"""The virtual display of tools/virtual-display: nobody else sees or drives it, it ends at once and leaves nothing.

    session_display.py PROGRAMS SAMPLES SCRIPT

Another user's attempt needs root, who can become one; without it that counts as not run.
"""
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import uuid

import desktop

programs, samples, SCRIPT = map(os.path.abspath, sys.argv[1:4])
EDITOR = os.path.join(programs, "qir-editor")
MAIN = "^QIR Database Editor$"
NOBODY = 65534
LONGEST_END = 10.0  # seconds; it takes a fraction of one

not_looked_at = []


def environment_of(pid):
    with open(f"/proc/{pid}/environ", "rb") as file:
        parts = file.read().split(b"\0")
    return dict(os.fsdecode(part).split("=", 1) for part in parts if b"=" in part)


class Display:
    """The script with a program on it, in a folder of its own for what it keeps."""
    def __init__(self, *command, overtaken=None):
        self.folder = tempfile.mkdtemp(prefix="qir-display-")
        os.chmod(self.folder, 0o755)  # as anybody's folder for temporary files is
        self.mark = str(uuid.uuid4())
        self.environment = dict(os.environ, TMPDIR=self.folder, QIR_MARK=self.mark, HOME=self.folder,
                                XDG_STATE_HOME=os.path.join(self.folder, "state"), QT_QPA_PLATFORM="xcb")
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY"):
            self.environment.pop(name, None)
        if overtaken:
            self.let_a_stranger_overtake(overtaken)
        self.errors = open(os.path.join(self.folder, "errors"), "wb")  # pylint: disable=consider-using-with
        # A shell cannot trap what was ignored when it started, as it is in a shell's background.
        self.script = subprocess.Popen([SCRIPT, *command], env=self.environment, stderr=self.errors,
                                       stdin=subprocess.DEVNULL,
                                       preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_DFL))

    def let_a_stranger_overtake(self, program):
        stand_in = os.path.join(self.folder, "bin", program)
        os.mkdir(os.path.dirname(stand_in))
        with open(stand_in, "w", encoding="utf-8") as file:
            file.write(OVERTAKEN.replace("NOBODY", str(NOBODY)).replace("FOLDER", self.folder)
                       .replace("PROGRAM", shutil.which(program)))
        os.chmod(stand_in, 0o755)
        self.environment["PATH"] = os.path.dirname(stand_in) + os.pathsep + os.environ["PATH"]

    def processes(self):
        """All that lives of the script and of what it has started: process number and name."""
        found = {}
        for pid in filter(str.isdigit, os.listdir("/proc")):
            try:
                if environment_of(pid).get("QIR_MARK") == self.mark:
                    with open(f"/proc/{pid}/comm", encoding="utf-8") as file:
                        found[int(pid)] = file.read().strip()
            except OSError:
                pass  # gone meanwhile, or a process of the system
        return found

    def process(self, name):
        return desktop.wait_until(lambda: next((p for p, n in self.processes().items() if n == name), None),
                                  "the process " + name, 60)

    def told(self):
        with open(os.path.join(self.folder, "errors"), encoding="utf-8") as file:
            return file.read()

    def wait_until_shown(self):
        desktop.wait_until(lambda: "Open http://" in self.told(), "the display: " + self.told(), 60)

    def left(self):
        """What it has left behind, "" for nothing."""
        names = [name for name in os.listdir(self.folder) if name.startswith("tmp.")]
        alive = sorted(self.processes().values())
        return f"{names} {alive}" if names or alive else ""

    @staticmethod
    def kill(pid):
        try:
            os.kill(pid, signal.SIGKILL)
        except ProcessLookupError:
            pass

    def end(self):
        for pid in self.processes():
            self.kill(pid)
        self.script.wait()
        self.errors.close()
        if os.path.exists(os.path.join(self.folder, "stranger")):
            with open(os.path.join(self.folder, "stranger"), encoding="utf-8") as file:
                self.kill(int(file.read()))
        shutil.rmtree(self.folder)


def xdotool(environment, *arguments, user=None):
    """Runs xdotool, as another user where one is given: (whether it did it, what it printed)."""
    command = ["xdotool", *arguments]
    if user is not None:
        command = ["setpriv", f"--reuid={user}", f"--regid={user}", "--clear-groups", *command]
    done = subprocess.run(command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                          timeout=60, check=False)
    return done.returncode == 0, done.stdout.strip()


def expect_kept_out(owner, display, stranger):
    """Somebody who knows the number of the display, and where its key lies, can do nothing there."""
    for what, environment in {"without a key": {"DISPLAY": owner["DISPLAY"]},
                              "with the path of the key": {"DISPLAY": owner["DISPLAY"],
                                                           "XAUTHORITY": owner.get("XAUTHORITY", "")}}.items():
        environment = dict(environment, PATH=os.environ["PATH"], HOME="/nonexistent")
        for attempt in (("search", "--name", MAIN), ("key", "ctrl+q"), ("type", "x"), ("getmouselocation",)):
            done, printed = xdotool(environment, *attempt, user=stranger)
            assert not done and not printed, f"another user, {what}, can {attempt}: {printed}"
    assert display.script.poll() is None, "the editor was ended by another user"


def only_its_owner_types(screen):
    sample = os.path.join(screen.folder, "PUMP.DDB")
    shutil.copy(os.path.join(samples, "PUMP.DDB"), sample)
    display = Display(EDITOR, sample)
    try:
        editor = display.process("qir-editor")
        owner = environment_of(editor)
        window = desktop.wait_until(lambda: xdotool(owner, "search", "--onlyvisible", "--name", MAIN)[1],
                                    "the editor's window", 60).split()[-1]
        expect_maximised(owner, window)
        if os.geteuid() == 0:
            expect_kept_out(owner, display, NOBODY)
        else:
            not_looked_at.append("another user at the display, whom only root can become")
        nobody_without_a_key = {"DISPLAY": owner["DISPLAY"], "PATH": os.environ["PATH"], "HOME": "/nonexistent"}
        assert not xdotool(nobody_without_a_key, "getmouselocation")[0], "no key is needed"
        secret = [line for line in display.told().splitlines() if "password=" in line][0].split("password=")[1]
        expect_not_told(display, secret)

        for command in (("windowactivate", "--sync", window), ("key", "Down")):
            assert xdotool(owner, *command)[0], f"the owner cannot {command}"
        xdotool(owner, "key", "ctrl+q")  # the display goes with the editor, before xdotool has left it
        assert display.script.wait(30) == 0, "the program's status is not given on"
        assert not display.left(), display.left()
    finally:
        display.end()


def expect_maximised(owner, window):
    def fills():
        shell = xdotool(owner, "getwindowgeometry", "--shell", window)[1]
        size = dict(line.split("=") for line in shell.splitlines() if "=" in line)
        width, height = map(int, xdotool(owner, "getdisplaygeometry")[1].split())
        return int(size["WIDTH"]) >= width - 4 and int(size["HEIGHT"]) >= height - 60  # less the borders and the title
    desktop.wait_until(fills, "the window to be maximised", 30)


def expect_not_told(display, secret):
    """Neither key nor password stand on a command line, which everybody can read."""
    key = subprocess.run(["xauth", "-f", environment_of(display.process("qir-editor"))["XAUTHORITY"], "list"],
                         stdout=subprocess.PIPE, text=True, check=True).stdout.split()[-1]
    for pid in display.processes():
        with open(f"/proc/{pid}/cmdline", "rb") as file:
            line = os.fsdecode(file.read())
        assert secret not in line and key not in line, "a secret stands on the command line of " + line


def ends_at_once(number):
    """The script is told to end while its program goes on: all of it is gone in a moment."""
    display = Display("sh", "-c", "sleep 1000 & trap '' TERM; sleep 1000")  # one that does not want to
    try:
        display.wait_until_shown()
        display.process("sleep")
        begin = time.monotonic()
        display.script.send_signal(number)
        status = display.script.wait(60)
        seconds = time.monotonic() - begin
        assert seconds < LONGEST_END, f"{number.name}: ended after {seconds} s only"
        assert status == 128 + number, f"{number.name}: status {status}"
        assert not display.left(), f"{number.name} leaves {display.left()}"
    finally:
        display.end()


# Stands before a program of the display in PATH, and lets another user have the port first.
OVERTAKEN = """#!/bin/bash
for word in "$@"; do
  case $word in
    -rfbport) next=1 ;;
    *) [ "${next:-}" ] && { port=$word; break; }
       [[ $word == 127.0.0.1:* ]] && { port=${word##*:}; break; } ;;
  esac
done
exec 4< <(exec env -u QIR_MARK setpriv --reuid=NOBODY --regid=NOBODY --clear-groups \
  python3 -c 'import signal, socket, sys
listener = socket.create_server(("127.0.0.1", int(sys.argv[1])))
print("bound", flush=True)
signal.pause()' "$port" 2>&1)
echo $! > "FOLDER/stranger"
read -r bound <&4
[ "$bound" = bound ] || exit 99
exec PROGRAM "$@"
"""


def shows_nobody_the_listener_of_a_stranger(program):
    """Another user has seen the port that a program of the display is about to take, and takes it first."""
    if os.geteuid() != 0:
        not_looked_at.append("another user's listener, whom only root can become")
        return
    display = Display("sleep", "1000", overtaken=program)
    try:
        desktop.wait_until(lambda: display.script.poll() is not None or "Open http://" in display.told(),
                           "an answer: " + display.told(), 60)
        assert "password=" not in display.told(), f"the password goes to the stranger's {program}: {display.told()}"
        assert display.script.wait(LONGEST_END) == 1, f"{program}: status {display.script.returncode}"
        assert os.path.exists(os.path.join(display.folder, "stranger")), f"{program} was not overtaken"
        assert not display.left(), display.left()
    finally:
        display.end()


def ends_while_it_starts():
    display = Display("sleep", "1000")
    try:
        display.process("Xtigervnc")
        display.script.send_signal(signal.SIGTERM)
        assert display.script.wait(LONGEST_END) == 143
        assert not display.left(), display.left()
    finally:
        display.end()


def session(screen):
    only_its_owner_types(screen)
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        ends_at_once(number)
    ends_while_it_starts()
    for program in ("websockify", "Xtigervnc"):
        shows_nobody_the_listener_of_a_stranger(program)


desktop.run(session, "Xtigervnc", "tigervncpasswd", "websockify", "xauth", "setpriv", not_looked_at=not_looked_at)
