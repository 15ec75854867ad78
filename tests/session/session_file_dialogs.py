#!/usr/bin/env python3
"""The desktop's own file dialogs, as its portal brings them: this test is the portal. A file is opened and saved by them; a
file that is gone is told; and who wants the program's own dialogs gets those."""
import os
import shutil
import subprocess
import sys
import threading
from urllib.parse import quote

import desktop

programs, samples = sys.argv[1:3]
EDITOR = os.path.join(programs, "qir-editor")
MAIN = "^QIR Database Editor$"
THEME = "/usr/lib/x86_64-linux-gnu/qt6/plugins/platformthemes/libqxdgdesktopportal.so"
PATH = "/org/freedesktop/portal/desktop"
INTERFACE = """<node>
  <interface name="org.freedesktop.portal.FileChooser">
    <method name="OpenFile"><arg type="s" direction="in"/><arg type="s" direction="in"/>
      <arg type="a{sv}" direction="in"/><arg type="o" direction="out"/></method>
    <method name="SaveFile"><arg type="s" direction="in"/><arg type="s" direction="in"/>
      <arg type="a{sv}" direction="in"/><arg type="o" direction="out"/></method>
    <property name="version" type="u" access="read"/>
  </interface>
</node>"""
ANSWER_AFTER = 300  # milliseconds in which the editor begins to listen; a person takes longer


class Portal:
    """Answers each dialog with the next of `answers`: a path, or None for a cancel."""

    def __init__(self, address):
        from gi.repository import Gio, GLib
        self.gio, self.glib = Gio, GLib
        self.answers, self.asked, self.answered = [], [], 0
        self.bus = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
            None, None)
        self.bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0], self.call,
                                 lambda *_: GLib.Variant("u", 3), None)
        Gio.bus_own_name_on_connection(self.bus, "org.freedesktop.portal.Desktop", Gio.BusNameOwnerFlags.NONE, None,
                                       None)
        threading.Thread(target=GLib.MainLoop().run, daemon=True).start()

    def call(self, _bus, _sender, _path, _interface, method, arguments, invocation):
        _, title, options = arguments.unpack()
        self.asked.append((method, title, options))
        handle = f"{PATH}/request/{len(self.asked)}"
        invocation.return_value(self.glib.Variant("(o)", (handle,)))
        answer = self.answers.pop(0)
        uris = {} if answer is None else {"uris": self.glib.Variant("as", ["file://" + quote(answer)])}
        response = self.glib.Variant("(ua{sv})", (1 if answer is None else 0, uris))

        def tell():
            self.bus.emit_signal(None, handle, "org.freedesktop.portal.Request", "Response", response)
            self.answered += 1
            return False

        self.glib.timeout_add(ANSWER_AFTER, tell)


def session(screen):
    daemon = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"], env=screen.environment,
                              stdout=subprocess.PIPE, text=True)
    screen.children.append(daemon)
    address = daemon.stdout.readline().strip()
    screen.environment["DBUS_SESSION_BUS_ADDRESS"] = address
    portal = Portal(address)
    file = os.path.join(screen.folder, "A.DDB")
    shutil.copy(os.path.join(samples, "PUMP.DDB"), file)
    editor = screen.start(EDITOR, QT_QPA_PLATFORMTHEME="xdgdesktopportal")
    window = screen.window(MAIN)
    screen.focus(window)

    def asked(number):
        desktop.wait_until(lambda: portal.answered >= number, f"dialog {number}")
        return portal.asked[number - 1]

    # Opened by it, with the five kinds.
    portal.answers = [file]
    screen.key("ctrl+o")
    method, title, options = asked(1)
    assert (method, title) == ("OpenFile", "File DDB,WDB,UDB,SDB,IDB"), (method, title)
    assert len(options["filters"]) == 5, options
    state = os.path.join(screen.folder, "state", "qir", "editor.json")
    desktop.wait_until(lambda: os.path.exists(state) and "A.DDB" in open(state, encoding="utf-8").read(), "the file")
    assert not screen.windows(desktop.FILE_DIALOG), "there is a dialog of ours"

    # One that is not there any more is told; then a cancel.
    portal.answers = [os.path.join(screen.folder, "GONE.DDB"), None]
    screen.key("ctrl+o")
    box = screen.window("^!$")
    assert len(portal.asked) == 2
    screen.focus(box)
    screen.key("Return")
    screen.no_window("^!$")
    screen.focus(window)
    screen.key("ctrl+o")
    asked(3)

    # Saved by it.
    copy = os.path.join(screen.folder, "COPY.DDB")
    portal.answers = [copy]
    screen.focus(window)
    screen.key("alt+f", "a")
    assert asked(4)[0] == "SaveFile", portal.asked[3]
    desktop.wait_until(lambda: os.path.exists(copy), "the copy")

    # Ours, for who wants them.
    screen.key("alt+v", "d")
    screen.key("ctrl+o")
    screen.window(desktop.FILE_DIALOG)
    screen.key("Escape")
    screen.no_window(desktop.FILE_DIALOG)
    assert len(portal.asked) == 4, portal.asked[4:]
    screen.focus(window)
    screen.key("ctrl+q")
    assert editor.wait(60) == 0


def missing():
    try:
        from gi.repository import Gio  # noqa: F401
    except ImportError:
        return "gi"
    return None if os.path.exists(THEME) else THEME


if __name__ == "__main__":
    if missing():
        print(f"not run: {missing()} is missing")
        sys.exit(desktop.NOT_RUN)
    desktop.run(session)
