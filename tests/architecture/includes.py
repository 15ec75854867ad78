#!/usr/bin/env python3
"""Holds the floors of docs/architecture.md: a folder includes what its row names, no cycles, storage knows no window,
no folder of more files than one can look through.

  includes.py ROOT     checks the tree and prints the folders as a graph; status 1 and a line for each offence
  includes.py --self-test
"""
import os
import re
import sys

# Each folder, from the lowest floor to the highest, and the folders that it may include besides itself: one library each.
PLAIN = ["base", "base/columns", "base/state"]
CONTRACT = PLAIN + ["platform/automation", "db"]
STORAGE = ["qirtbase/container", "qirtbase/file", "qirtbase/model"]
CONTROLS = PLAIN + ["platform/cells", "platform/dialogs", "platform/loop", "platform/controls", "platform/grid", "platform/list"]
WINDOW = CONTRACT + CONTROLS + ["app/shared", "pane"]
ROWS = {
    "base": [],
    "base/columns": ["base"],
    "base/state": ["base"],
    "qirtbase/model": PLAIN,
    "qirtbase/container": PLAIN,
    "qirtbase/file": PLAIN + ["qirtbase/container"],
    "qirtbase/journal": PLAIN + STORAGE,
    "qirtbase": PLAIN + STORAGE + ["qirtbase/journal"],
    "platform/automation": PLAIN,
    "db": PLAIN + ["platform/automation"],
    "compare/engine": CONTRACT,
    "compare/report": CONTRACT + ["compare/engine"],
    "compare/conflicts": CONTRACT + ["compare/engine", "compare/report"],
    "cli/tables": CONTRACT,
    "samples": CONTRACT + ["cli/tables"],
    "cli/diff": CONTRACT + ["compare/engine", "compare/report", "cli/tables"],
    "cli": CONTRACT + ["compare/engine", "compare/report", "cli/tables", "cli/diff"],
    "cli/audit": CONTRACT + ["compare/engine", "compare/report", "cli/tables", "cli"],
    "cli/exchange": CONTRACT + ["cli/tables", "cli"],
    "cli/git": CONTRACT + ["compare/report", "compare/conflicts", "cli/tables", "cli"],
    "cli/help": PLAIN + ["cli"],
    "cli/kept": CONTRACT + ["cli/tables", "cli"],
    "platform/cells": PLAIN,
    "cli/edit": CONTRACT + ["compare/report", "cli/tables", "cli/diff", "cli", "platform/cells"],
    "platform/dialogs": PLAIN,
    "platform/loop": PLAIN + ["platform/dialogs"],
    "platform/controls": PLAIN,
    "platform/grid": PLAIN + ["platform/cells", "platform/loop", "platform/controls"],
    "platform/list": PLAIN + ["platform/loop", "platform/controls"],
    "app/shared": CONTRACT + CONTROLS,
    "pane": CONTRACT + CONTROLS + ["app/shared"],
    "dialogs": CONTRACT + CONTROLS,
    "compare": WINDOW + ["compare/engine"],
    "compare/keyed": WINDOW + ["compare/engine", "compare/report"],
    "view": WINDOW + ["compare", "compare/engine"],
    "find": WINDOW + ["compare", "compare/engine", "view"],
    "structure": WINDOW + ["dialogs", "compare", "compare/engine", "view"],
    "app/desktop": WINDOW + ["compare", "compare/engine", "view"],
    "app/history": WINDOW + ["dialogs", "compare", "compare/engine", "view", "app/desktop"],
    "app/language": [],
    "app/look": WINDOW,
    "app/conflicts": WINDOW + ["compare", "compare/engine", "compare/conflicts", "view", "app/desktop"],
    "app/guide": PLAIN,
    "app": WINDOW + ["dialogs", "compare", "compare/keyed", "compare/engine", "compare/report", "view", "find",
            "structure", "app/conflicts", "app/desktop", "app/guide", "app/history", "app/language", "app/look"],
}
# By its name a part of the highest floor; it stands low, and is the only one that an include may run up to.
LOW = "app/shared"
LOW_MODULES = ("Funzioni", "utility")
MOST_FILES = 32
CORE_ONLY = {"base", "base/columns", "base/state", "platform/automation", "platform/cells", "db", "compare/engine",
             "compare/conflicts", "compare/report", "qirtbase", "qirtbase/model", "qirtbase/container", "qirtbase/file", "qirtbase/journal", "cli",
             "cli/tables", "cli/diff", "cli/audit", "cli/edit", "cli/exchange", "cli/git", "cli/help", "cli/kept", "samples"}
WINDOW_HEADER = re.compile(
    r"^(QtWidgets|QtGui|QWidget|QMessageBox|QDialog|QInputDialog|QFileDialog|QApplication|QMainWindow|QAction|QMenu|"
    r"QColor|QFont|QPixmap|QPainter|QTableView|QListView|QGuiApplication|QClipboard)")
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')


def offence_of(path, line, files):
    """What is wrong with an include line, None when nothing is; and the file of the tree that it includes, or None."""
    own = os.path.dirname(path)
    found = INCLUDE.match(line)
    if not found:
        return None, None
    quoted, angled = found.groups()
    if angled and own in CORE_ONLY and WINDOW_HEADER.match(angled):
        return f"{own} knows no window, but includes <{angled}>", None
    if angled and angled in files:
        return f'<{angled}> is a file of the tree: include it with quotes', angled
    if not quoted or quoted.endswith(".moc"):
        return None, None
    if quoted not in files:
        return f'"{quoted}" is no file of the tree (include from the root)', None
    other = os.path.dirname(quoted)
    if other != own and other not in ROWS.get(own, []):
        return f"{own} may not include {other} ({quoted})", quoted
    return None, quoted


def cycles(graph):
    """One line for each cycle of files that include each other."""
    found, state = [], {}

    def visit(path, trail):
        state[path] = "open"
        for other in graph[path]:
            if state.get(other) == "open":
                found.append("include cycle: " + " -> ".join(trail[trail.index(other):] + [other]))
            elif other not in state:
                visit(other, trail + [other])
        state[path] = "done"

    for path in graph:
        if path not in state:
            visit(path, [path])
    return found


def check(files):
    """files: {path: text}. Gives the offences as lines, and {file: files that it includes}."""
    offences, graph = [], {}
    for path, text in sorted(files.items()):
        graph[path] = []
        if os.path.dirname(path) == LOW and os.path.splitext(os.path.basename(path))[0] not in LOW_MODULES:
            offences.append(f"{path}: {LOW} holds two modules alone")
        if os.path.dirname(path) not in ROWS:
            offences.append(f"{path}: its folder has no row here, and so no floor")
        for number, line in enumerate(text.splitlines(), 1):
            offence, included = offence_of(path, line, files)
            if included:
                graph[path].append(included)
            if offence:
                offences.append(f"{path}:{number}: {offence}")
    return offences + cycles(graph), graph


def folder_edges(graph):
    """{folder: folders that its files include}, in the order of the floors."""
    edges = {folder: set() for folder in ROWS}
    for path, others in graph.items():
        edges.setdefault(os.path.dirname(path), set()).update(os.path.dirname(other) for other in others)
    return {folder: sorted(others - {folder}, key=list(ROWS).index) for folder, others in edges.items()}


def runs_up(folder, other):
    """Whether an edge between two folders runs against the floors, where each stands as high as its name says."""
    floors = [row for row in ROWS if row != LOW] + [LOW]
    return floors.index(other) > floors.index(folder)


def crowded(tree):
    """A line for each folder with too many files. tree: {folder: number of files}."""
    return [f"{folder}: {count} files, more than {MOST_FILES}: it holds more than one subject"
            for folder, count in sorted(tree.items()) if count > MOST_FILES]


def read_tree(root):
    files = {}
    for top in sorted({row.split("/")[0] for row in ROWS}):
        for base, _, names in os.walk(os.path.join(root, top)):
            for name in names:
                if name.endswith((".h", ".cpp")):
                    path = os.path.join(base, name)
                    with open(path, encoding="utf-8") as file:
                        files[os.path.relpath(path, root)] = file.read()
    return files


def count_files(root):
    """{folder: number of files} of all that is written by hand: inputs of the fuzzers and pictures are not."""
    counts = {}
    for base, folders, names in os.walk(root):
        folders[:] = [f for f in folders if not f.startswith(".") and f != "__pycache__" and
                      os.path.relpath(os.path.join(base, f), root) not in ("build", "fuzz/corpus", "fuzz/found")]
        counts[os.path.relpath(base, root)] = len(names)
    return counts


def self_test():
    good = {"base/A.h": "", "db/B.h": '#include "base/A.h"\n'}
    assert check(good)[0] == []
    assert check({**good, "base/C.h": '#include "db/B.h"\n'})[0] == ["base/C.h:1: base may not include db (db/B.h)"]
    assert check({"base/A.h": "#include <QWidget>\n"})[0] == ["base/A.h:1: base knows no window, but includes <QWidget>"]
    assert check({"view/A.h": '#include "view/B.h"\n', "view/B.h": '#include "view/A.h"\n'})[0] == [
        "include cycle: view/A.h -> view/B.h -> view/A.h"]
    assert len(check({"cli/A.cpp": '#include "qirtbase/X.h"\n', "qirtbase/X.h": ""})[0]) == 1
    assert len(check({"qirtbase/model/A.h": '#include "qirtbase/container/B.h"\n', "qirtbase/container/B.h": ""})[0]) == 1
    assert len(check({"platform/other/A.h": ""})[0]) == 1
    assert len(check({"app/shared/Third.h": ""})[0]) == 1
    assert len(check({"base/A.h": "", "db/B.h": "#include <base/A.h>\n"})[0]) == 1
    assert crowded({"a": MOST_FILES, "b": MOST_FILES + 1}) == ["b: 33 files, more than 32: it holds more than one subject"]
    assert runs_up("pane", LOW) and runs_up("base", "db") and not runs_up("app", "pane")
    for folder, others in ROWS.items():
        assert all(list(ROWS).index(other) < list(ROWS).index(folder) for other in others), folder


def main(root):
    tree = read_tree(root)
    offences, graph = check(tree)
    edges = folder_edges(graph)
    for folder, others in reversed(edges.items()):
        print(f"{folder} -> {', '.join(others) or 'nothing'}")
    offences += [f"{folder} -> {other} runs up" for folder, others in edges.items() for other in others
                 if other != LOW and runs_up(folder, other)]
    offences += crowded(count_files(root))
    print("\n".join(offences) if offences else
          f"{len(tree)} files keep to their floors; the only includes that run up lead to {LOW}")
    return 1 if offences or not tree else 0


if __name__ == "__main__":
    self_test()
    sys.exit(0 if sys.argv[1:] == ["--self-test"] else main(sys.argv[1]))
