#!/usr/bin/env python3
"""Holds the floors of docs/architecture.md: nobody includes upwards, no cycles, storage knows no window.

  includes.py ROOT     checks the tree; exit status 1 and a line for each offence
  includes.py --self-test
"""
import os
import re
import sys

# folder (longest match first) -> folders that it may include besides itself
FLOORS = ["base", "platform/automation", "platform", "db", "app/shared", "dialogs", "compare", "view", "structure",
          "app"]
ALLOWED = {folder: set(FLOORS[:i]) for i, folder in enumerate(FLOORS)}
ALLOWED["platform/automation"] = {"base"}
ALLOWED["db"] = {"base", "platform/automation"}
ALLOWED["compare/engine"] = {"base", "platform/automation", "db"}
ALLOWED["compare"] |= {"compare/engine"}
for upper in ("view", "structure", "app"):
    ALLOWED[upper] |= {"compare/engine"}
ALLOWED["qirtbase"] = {"base"}
ALLOWED["cli"] = {"base", "platform/automation", "db", "compare/engine"}
FOLDERS = sorted(ALLOWED, key=len, reverse=True)
CORE_ONLY = {"base", "platform/automation", "db", "compare/engine", "qirtbase", "cli"}
WINDOW = re.compile(r"^(QtWidgets|QtGui|QWidget|QMessageBox|QDialog|QInputDialog|QFileDialog|QApplication|QMainWindow|"
                    r"QAction|QMenu|QColor|QFont|QPixmap|QPainter|QTableView|QListView|QGuiApplication|QClipboard)")
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')


def folder_of(path):
    for folder in FOLDERS:
        if path.startswith(folder + "/"):
            return folder
    return None


def check(files):
    """files: {path: text}. Gives the offences as lines."""
    offences, graph = [], {}
    for path, text in sorted(files.items()):
        own = folder_of(path)
        graph[path] = []
        for number, line in enumerate(text.splitlines(), 1):
            found = INCLUDE.match(line)
            if not found:
                continue
            quoted, angled = found.groups()
            if angled and own in CORE_ONLY and WINDOW.match(angled):
                offences.append(f"{path}:{number}: {own} knows no window, but includes <{angled}>")
            if not quoted or quoted.endswith(".moc"):
                continue
            other = folder_of(quoted)
            if other is None or quoted not in files:
                offences.append(f'{path}:{number}: "{quoted}" is no file of the tree (include from the root)')
                continue
            graph[path].append(quoted)
            if other != own and other not in ALLOWED[own]:
                offences.append(f"{path}:{number}: {own} may not include {other} ({quoted})")
    state = {}

    def visit(path, trail):
        state[path] = "open"
        for other in graph[path]:
            if state.get(other) == "open":
                cycle = trail[trail.index(other):] + [other]
                offences.append("include cycle: " + " -> ".join(cycle))
            elif other not in state:
                visit(other, trail + [other])
        state[path] = "done"

    for path in graph:
        if path not in state:
            visit(path, [path])
    return offences


def read_tree(root):
    files = {}
    for folder in {f.split("/")[0] for f in FOLDERS}:
        for base, _, names in os.walk(os.path.join(root, folder)):
            for name in names:
                if name.endswith((".h", ".cpp")):
                    path = os.path.join(base, name)
                    with open(path, encoding="utf-8") as file:
                        files[os.path.relpath(path, root)] = file.read()
    return files


def self_test():
    good = {"base/A.h": "", "db/B.h": '#include "base/A.h"\n'}
    assert check(good) == []
    assert check({**good, "base/C.h": '#include "db/B.h"\n'}) == ["base/C.h:1: base may not include db (db/B.h)"]
    assert check({"base/A.h": "#include <QWidget>\n"}) == ["base/A.h:1: base knows no window, but includes <QWidget>"]
    assert check({"view/A.h": '#include "view/B.h"\n', "view/B.h": '#include "view/A.h"\n'}) == [
        "include cycle: view/A.h -> view/B.h -> view/A.h"]
    assert len(check({"cli/A.cpp": '#include "qirtbase/X.h"\n', "qirtbase/X.h": ""})) == 1


if __name__ == "__main__":
    self_test()
    if sys.argv[1:] == ["--self-test"]:
        sys.exit(0)
    tree = read_tree(sys.argv[1])
    found = check(tree)
    print("\n".join(found) if found else f"{len(tree)} files keep to their floors")
    sys.exit(1 if found or not tree else 0)
