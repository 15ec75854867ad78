#!/usr/bin/env python3
"""What a screen reader is told, over the real bus by a client that is not ours: every control has a role, a name and its
state; cells and lines of the lists say in words what they show by colours and signs; and the keyboard reaches all of it,
its place always to be seen."""
import os
import shutil
import sys

import desktop
from accessibles import Tree, missing, start_bus

programs, samples = sys.argv[1:3]
EDITOR = os.path.join(programs, "qir-editor")
ROLES_WITHOUT_NAME = {"filler", "panel", "scroll bar", "scroll pane", "separator", "application", "layered pane",
                      "table cell", "table column header", "table row header", "unknown", "label", "viewport"}


def check_names(tree):
    seen, lacks = 0, []
    for accessible, above in tree.all():
        role, states = accessible.getRoleName(), tree.states(accessible)
        assert role not in ("", "invalid"), f"'{accessible.name}' has no role"
        if "showing" not in states and role not in ("menu item", "menu", "check menu item", "radio menu item"):
            continue
        seen += 1
        if not accessible.name and ("focusable" in states or role not in ROLES_WITHOUT_NAME) and role != "table cell":
            lacks.append(f"{role} in {[a.name for a in above]}")
        if role == "unknown" and "focusable" in states:
            lacks.append(f"'{accessible.name}' is of no known kind")
    for name, enabled in (("Save", True), ("Undo", False), ("Two Databases", True)):
        for item in [a for a in tree.of_role("menu item", showing=False) if a.name == name]:
            assert ("enabled" in tree.states(item)) == enabled, f"'{name}' is {tree.states(item)}"
    assert seen > 60, f"{seen} are few"
    assert not lacks, "without a name: " + "; ".join(lacks[:20])


def check_lists(tree):
    names = sorted(accessible.name for accessible in tree.of_role("list", showing=False))
    assert names == ["Left tables", "Right tables"], f"the lists: {names}"
    marked = 0
    for pane in ("Left", "Right"):
        tables = tree.named("list", pane + " tables")
        for i in range(tables.childCount):
            line = tables.getChildAtIndex(i)
            words = {"!": ["differs"], "?": ["only here", "missing here"]}.get(line.name.strip()[-1])
            if words:
                marked += 1
                assert line.description in words, f"'{line.name}' says '{line.description}'"
    assert marked > 2, "no line is marked"


def check_cells(tree, screen, window):
    grid = tree.named("table", "Left table")
    size = grid.queryTable()
    differing = [(row, column) for row in range(size.nRows) for column in range(size.nColumns)
                 if size.getAccessibleAt(row, column).name.endswith(", differs")]
    assert differing, "no cell differs"
    for row, column in differing[:5]:
        one = size.getAccessibleAt(row, column)
        value = one.name.split(", ")[0]
        assert one.description.startswith(f"left: {value}, right: "), (one.name, one.description)
    # Moving: what is said is the value, then what is another than before.
    screen.focus(window)
    place = size.getAccessibleAt(1, 0).queryComponent().getExtents(0)
    screen.output("xdotool", "mousemove", str(place.x + 5), str(place.y + 5), "click", "1")
    screen.key("Down")
    here = desktop.wait_until(lambda: size.getAccessibleAt(2, 0).name if "record 3" in size.getAccessibleAt(2, 0).name
                              else None, "the record's number")
    header = size.getColumnDescription(0)
    assert header not in here, f"the field has not changed: {here}"
    screen.key("Right")
    field = size.getColumnDescription(1)
    beside = desktop.wait_until(lambda: size.getAccessibleAt(2, 1).name if field in size.getAccessibleAt(2, 1).name
                                else None, "the field's name")
    assert "record" not in beside, f"the record has not changed: {beside}"
    assert beside.index(field) > 0, f"the value comes first: {beside}"


def check_password(tree, screen):
    screen.key("alt+f", "p")
    screen.window(r"^\?$")
    boxes = desktop.wait_until(lambda: tree.of_role("password text"), "the password box")
    assert len(boxes) == 1 and boxes[0].name, "the password box has no name"
    screen.key("Escape")
    screen.no_window(r"^\?$")


def check_keyboard(tree, screen, window):
    """Tab goes round, and each stop is to be seen."""
    screen.focus(window)
    stops, last, before = [], tree.focused().name, screen.pixels(window)
    while len(stops) < 30:
        screen.key("Tab")
        last = desktop.wait_until(lambda: (tree.focused() or tree.application).name not in ("", last) and
                                  tree.focused().name, "the focus to move")
        after = screen.pixels(window)
        assert after != before, f"the focus is not seen at '{last}'"
        if last in stops:
            break
        stops.append(last)
        before = after
    wanted = {"Left tables", "Left table", "Border below left tables", "Right tables", "Right table",
              "Border below right tables"}
    assert set(stops) == wanted, f"Tab goes to {stops}"
    # Each menu of the bar by its letter, and the pop-ups by the menu key.
    for letter, entry in (("f", "Open..."), ("e", "Find..."), ("m", "Compare Again"), ("v", "Colours"), ("t", "Add..."),
                          ("l", "Resize Text..."), ("r", "Add"), ("h", "Keys")):
        screen.key("alt+" + letter)
        desktop.wait_until(lambda name=entry: [a for a in tree.of_role("menu item") if a.name == name], f"'{entry}'")
        screen.key("Escape", "Escape")
        desktop.wait_until(lambda name=entry: not [a for a in tree.of_role("menu item") if a.name == name], "its end")


def check_notice(tree, path):
    """What another program does to a file is told with its name, and what can be done about it."""
    with open(path, "ab") as file:
        file.write(b"x")
    for button in ("Reload", "Keep Mine", "Compare", "Dismiss"):
        accessible = tree.named("push button", button)
        assert "focusable" in tree.states(accessible), f"'{button}' is out of the keyboard's reach"
        assert button == "Dismiss" or accessible.description, f"'{button}' does not say what it does"
    text = f"'{path}' was changed by another program."
    desktop.wait_until(lambda: [a for a, _ in tree.all(deep=False) if a.name == text], "the words of the notice")


def session(screen):
    left, right = (shutil.copy(os.path.join(samples, name), screen.folder) for name in ("PUMP.DDB", "PUMP-2.DDB"))
    start_bus(screen)
    editor = screen.start(EDITOR, "--left", left, "--right", right, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
    window = screen.window("^QIR Database Editor$")
    tree = Tree(screen)
    tree.named("table", "Right table")
    if os.environ.get("QIR_SHOW_TREE"):  # to look at it by hand
        for accessible, above in tree.all():
            print("  " * len(above) + f"{accessible.getRoleName()} | {accessible.name} | {accessible.description} | "
                  + " ".join(sorted(tree.states(accessible))))
    check_names(tree)
    check_lists(tree)
    check_cells(tree, screen, window)
    check_password(tree, screen)
    check_keyboard(tree, screen, window)
    check_notice(tree, right)
    screen.key("ctrl+q")
    assert editor.wait(60) == 0


if __name__ == "__main__":
    if missing():
        print(f"not run: {missing()} is missing")
        sys.exit(desktop.NOT_RUN)
    desktop.run(session)
