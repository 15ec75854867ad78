"""The editor's controls as a screen reader sees them, over the real bus: for tests of what is told there, and for those
that look for the place of a control to press it with the mouse."""
import os
import subprocess

import desktop

LAUNCHER = "/usr/libexec/at-spi-bus-launcher"


def missing():
    try:
        import pyatspi  # noqa: F401
    except ImportError:
        return "pyatspi"
    return None if os.path.exists(LAUNCHER) else LAUNCHER


def start_bus(screen):
    """A session bus with the accessibility bus; our own process and the editor's meet there."""
    daemon = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"], env=screen.environment,
                              stdout=subprocess.PIPE, text=True)
    screen.children.append(daemon)
    address = daemon.stdout.readline().strip()
    for environment in (screen.environment, os.environ):
        environment["DBUS_SESSION_BUS_ADDRESS"] = address
        environment["DISPLAY"] = screen.environment["DISPLAY"]
        environment.pop("AT_SPI_BUS_ADDRESS", None)
    screen.start(LAUNCHER, "--launch-immediately")
    desktop.wait_until(lambda: screen.output("dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus",
                                             "/org/a11y/bus", "org.a11y.Bus.GetAddress"), "the accessibility bus")


class Tree:
    """The editor's accessibles as another program sees them."""

    def __init__(self, screen):
        import pyatspi
        self.pyatspi = pyatspi
        self.screen = screen
        self.application = desktop.wait_until(self.find, "the editor on the accessibility bus")

    def find(self):
        for application in self.pyatspi.Registry.getDesktop(0):
            if application is not None and "QIR" in (application.name or "") and application.childCount > 0:
                return application
        return None

    def all(self, root=None, deep=True):
        """(accessible, its ancestors) of every one below `root`; of a table its first cells only."""
        pending = [(root or self.application, ())]
        while pending:
            accessible, above = pending.pop()
            yield accessible, above
            if accessible.getRoleName() == "table" and not deep:
                continue
            for i in range(min(accessible.childCount, 200)):
                child = accessible.getChildAtIndex(i)
                if child is not None:
                    pending.append((child, above + (accessible,)))

    def states(self, accessible):
        return {self.pyatspi.stateToString(state) for state in accessible.getState().getStates()}

    def of_role(self, role, showing=True):
        return [accessible for accessible, _ in self.all(deep=False) if accessible.getRoleName() == role and
                (not showing or "showing" in self.states(accessible))]

    def focused(self):
        """The control that has the keyboard; the current line or cell of each list and grid says so of itself too."""
        for accessible, _ in self.all(deep=False):
            if "focused" in self.states(accessible) and accessible.getRoleName() not in ("list item", "table cell"):
                return accessible
        return None

    def named(self, role, name):
        return desktop.wait_until(lambda: [a for a in self.of_role(role) if a.name == name], f"{role} '{name}'")[0]
