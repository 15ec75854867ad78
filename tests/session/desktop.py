"""A desktop of its own for session tests: an X server, a window manager, real keys and a real mouse.

A test is a script with a function that takes a Desktop; run(function) starts the desktop, runs it and turns the
outcome into an exit status: 0 passed, 1 failed, 77 not run because a program is missing.
"""
import itertools
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import traceback

NEEDED = ["Xvfb", "openbox", "xdotool", "import"]
FILE_DIALOG = "File DDB,WDB,UDB,SDB,IDB"
NOT_RUN = 77


class Failed(Exception):
    """What a person at the desktop would have noticed."""


def wait_until(condition, what, seconds=30.0):
    """Polls until condition() is true and gives its value; raises Failed naming `what` after `seconds`."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise Failed("waited in vain for " + what)
        time.sleep(0.02)


class Desktop:
    def __init__(self, folder, size="1280x900"):
        self.folder = folder
        self.children = []
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            # Without -noreset the server would start anew, and turn others away meanwhile, whenever its only client ends.
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", size + "x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write_end], stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as answer:
            number = answer.readline().strip()  # the server writes digits and line end one after the other
        if not number:
            raise Failed("the X server did not start")
        self.environment = dict(os.environ, DISPLAY=":" + number, QT_QPA_PLATFORM="xcb", HOME=folder,
                                XDG_STATE_HOME=os.path.join(folder, "state"), LC_ALL="C.UTF-8")
        self.environment.pop("WAYLAND_DISPLAY", None)
        self.environment.pop("LANGUAGE", None)
        self.children.append(self.server)
        self.children.append(subprocess.Popen(["openbox"], env=self.environment, stderr=subprocess.DEVNULL))
        try:
            wait_until(lambda: self.output("xdotool", "get_num_desktops"), "the window manager")
        except Failed:
            self.end()
            raise

    def output(self, *command):
        result = subprocess.run(command, env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                text=True, timeout=60, check=False)
        return result.stdout.strip() if result.returncode == 0 else ""

    def start(self, program, *arguments, **environment):
        """Starts a program; it is killed at the end of the test if it still runs."""
        child = subprocess.Popen([program, *arguments], env=dict(self.environment, **environment))
        self.children.append(child)
        return child

    def windows(self, title):
        return self.output("xdotool", "search", "--onlyvisible", "--name", title).split()

    def window(self, title, seconds=60.0):
        """The identifier of the visible window of that title (a regular expression), once it is there."""
        return wait_until(lambda: self.windows(title), f"a window '{title}'", seconds)[-1]

    def no_window(self, title):
        wait_until(lambda: not self.windows(title), f"the window '{title}' to go")

    def focus(self, window):
        self.output("xdotool", "windowactivate", "--sync", window)

    def key(self, *keys):
        self.output("xdotool", "key", "--clearmodifiers", "--delay", "30", *keys)

    def type(self, text):
        self.output("xdotool", "type", "--clearmodifiers", "--delay", "20", text)

    def click(self, window, x, y, button=1, count=1):
        self.output("xdotool", "mousemove", "--window", window, str(x), str(y), "click", "--repeat", str(count),
                    "--delay", "80", str(button))

    def place(self, window):
        """Where a window stands on the screen: left, top, width, height."""
        lines = self.output("xdotool", "getwindowgeometry", "--shell", window).splitlines()
        values = dict(line.split("=") for line in lines)
        return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def hold(self, window, x, y, milliseconds, button=1):
        """Goes down on a button and up again after the time that a finger takes: the wait is part of the gesture."""
        self.output("xdotool", "mousemove", "--window", window, str(x), str(y), "mousedown", str(button),
                    "sleep", str(milliseconds / 1000), "mouseup", str(button))

    def choose_file(self, keys, path):
        """Presses the keys that open the file dialog, types a name and waits until the dialog has gone."""
        self.key(keys)
        self.focus(self.window(FILE_DIALOG))
        self.type(path)
        self.key("Return")
        self.no_window(FILE_DIALOG)

    def close(self, window):
        """Closes a window by the window manager, as its close button does."""
        self.focus(window)
        self.key("alt+F4")

    def picture(self, window, name):
        """Takes a picture of a window into the test's folder and gives its path."""
        path = os.path.join(self.folder, name)
        self.output("import", "-window", window, path)
        return path

    def pixels(self, window):
        """The rows of a window's pixels, three bytes each."""
        content = subprocess.run(["import", "-window", window, "-depth", "8", "ppm:-"], env=self.environment,
                                 stdout=subprocess.PIPE, timeout=60, check=True).stdout
        _, size, _, pixels = content.split(b"\n", 3)
        length = 3 * int(size.split()[0])
        return [pixels[i:i + length] for i in range(0, len(pixels), length)]

    def still(self):
        """Waits until two looks at the screen, some time apart, see the same. The times differ, so that looks do not fall
        in step with a caret that blinks."""
        last = [None]
        pauses = itertools.cycle(["0.4", "0.65", "0.9"])

        def unchanged():
            now = self.pixels("root")
            same = now == last[0]
            last[0] = now
            return same or self.output("sleep", next(pauses))
        wait_until(unchanged, "a screen that stands still")

    def end(self):
        for child in reversed(self.children):
            if child.poll() is None:
                child.send_signal(signal.SIGTERM)
        for child in self.children:
            try:
                child.wait(10)
            except subprocess.TimeoutExpired:
                child.kill()
                child.wait()


def run(test, *further, not_looked_at=()):
    """Runs a test that needs further programs beside those of every session. `not_looked_at` names, when the test has
    passed, what the machine did not let it look at: not run then."""
    missing = [program for program in [*NEEDED, *further] if shutil.which(program) is None]
    if missing:
        print("not run: missing", ", ".join(missing))
        sys.exit(NOT_RUN)
    with tempfile.TemporaryDirectory() as folder:
        desktop = Desktop(folder)
        try:
            test(desktop)
        except (Failed, AssertionError, subprocess.SubprocessError):
            traceback.print_exc()
            keep = os.environ.get("QIR_SESSION_PICTURES")
            if keep:
                desktop.output("import", "-window", "root", os.path.join(keep, "failed.png"))
            status = 1
        else:
            status = NOT_RUN if not_looked_at else 0
            if not_looked_at:
                print("not run:", ", ".join(not_looked_at))
        finally:
            desktop.end()
    sys.exit(status)
