#!/usr/bin/env python3
"""Holds the floors of docs/architecture.md: a folder includes what its row names, no cycles, storage knows no window,
no folder of more files than one can look through.

  includes.py ROOT     checks the tree and prints the folders as a graph; status 1 and a line for each offence
  includes.py --self-test
"""
import os
import re
import sys

import sources

# Each folder, from the lowest floor to the highest, and what it includes besides itself: one library each. What a row
# allows and nobody uses is an offence too, so that a row tells what there is.
ROWS = {
    "base": [],
    "base/columns": ["base"],
    "base/state": ["base"],
    "base/words": ["base"],
    "qirtbase/model": ["base", "base/columns"],
    "qirtbase/container": ["base"],
    "qirtbase/file": ["base", "base/state", "qirtbase/container"],
    "qirtbase/journal": ["base", "base/columns", "base/state", "qirtbase/model", "qirtbase/container"],
    "qirtbase": ["base", "qirtbase/model", "qirtbase/file", "qirtbase/journal"],
    "platform/automation": ["base"],
    "db": ["base", "base/columns", "platform/automation"],
    "db/tables": ["base", "db"],
    "compare/engine": ["base", "base/columns", "db"],
    "compare/report": ["base", "compare/engine"],
    "compare/conflicts": ["base", "db", "db/tables", "compare/engine", "compare/report"],
    "cli/tables": ["base", "base/columns", "db/tables"],
    "samples": ["db", "db/tables", "cli/tables"],
    "cli/diff": ["base", "db", "compare/engine", "compare/report", "cli/tables", "db/tables"],
    "cli": ["base", "platform/automation", "db", "compare/report", "cli/tables", "cli/diff", "db/tables"],
    "cli/audit": ["base", "cli/tables", "cli"],
    "cli/exchange": ["base", "base/columns", "cli/tables", "cli", "db/tables"],
    "cli/git": ["base", "compare/engine", "compare/report", "compare/conflicts", "cli/tables", "cli", "db/tables"],
    "cli/help": ["cli"],
    "cli/kept": ["base", "base/state", "cli/tables", "cli"],
    "platform/cells": ["base", "base/columns"],
    "find/search": ["base", "base/columns", "platform/cells"],
    "cli/edit": ["base", "db", "cli/tables", "cli/diff", "cli", "platform/cells", "db/tables"],
    "platform/dialogs": ["base"],
    "platform/loop": ["base/words", "platform/dialogs"],
    "platform/controls": [],
    "platform/grid": ["base", "platform/cells", "platform/loop", "platform/controls"],
    "platform/list": ["base", "platform/loop", "platform/controls"],
    "app/shared": ["base", "db", "platform/dialogs", "platform/loop", "platform/grid", "platform/list"],
    "pane": ["base", "db", "platform/loop", "platform/controls", "platform/grid", "platform/list",
             "app/shared"],
    "dialogs": ["base", "db", "platform/dialogs", "platform/loop", "platform/controls", "platform/list"],
    "compare": ["base", "compare/engine", "platform/loop", "platform/controls", "platform/grid", "platform/list",
                "app/shared", "pane"],
    "compare/keyed": ["base", "compare/engine", "compare/report", "platform/dialogs", "platform/loop",
                      "platform/controls", "platform/grid", "pane"],
    "view": ["base", "base/columns", "base/words", "db", "platform/cells", "platform/dialogs", "platform/loop",
             "platform/controls", "platform/grid", "platform/list", "app/shared", "pane", "compare"],
    "find": ["base", "db", "platform/dialogs", "platform/loop", "platform/controls", "platform/grid",
             "platform/list", "app/shared", "pane", "compare", "view", "find/search"],
    "structure": ["base", "base/columns", "db", "compare/engine", "platform/dialogs", "platform/loop", "platform/controls",
                  "platform/grid", "platform/list", "app/shared", "pane", "dialogs", "compare", "view"],
    "app/watch": [],
    "app/desktop": ["app/watch", "base", "base/state", "base/words", "db", "compare/engine", "platform/dialogs", "platform/loop",
                    "platform/grid", "platform/list", "app/shared", "pane", "compare", "view"],
    "app/history": ["base", "base/state", "base/words", "db", "platform/dialogs", "platform/controls", "platform/grid",
                    "platform/list", "pane", "compare", "view", "app/desktop"],
    "app/conflicts": ["base", "db", "compare/conflicts", "platform/dialogs", "platform/loop", "platform/controls",
                      "platform/grid", "platform/list", "pane", "compare", "view", "app/desktop"],
    "app/language": [],
    "app/look": ["base/state", "platform/loop", "platform/grid", "platform/list", "pane"],
    "app/guide": [],
    "app": ["base", "base/state", "base/words", "db", "compare/report", "platform/dialogs", "platform/loop", "platform/controls",
            "platform/grid", "platform/list", "app/shared", "pane", "dialogs", "compare", "compare/keyed", "view",
            "find", "structure", "app/conflicts", "app/desktop", "app/history", "app/language", "app/look", "app/guide"],
}
# By its name a part of the highest floor; it stands low, and is the only one that an include may run up to.
LOW = "app/shared"
LOW_MODULES = ("Funzioni", "utility")
MOST_FILES = 32
CORE_ONLY = {"base", "base/columns", "base/state", "base/words", "platform/automation", "platform/cells", "find/search", "db", "db/tables", "compare/engine",
             "compare/conflicts", "compare/report", "qirtbase", "qirtbase/model", "qirtbase/container", "qirtbase/file", "qirtbase/journal", "cli",
             "cli/tables", "cli/diff", "cli/audit", "cli/edit", "cli/exchange", "cli/git", "cli/help", "cli/kept", "samples",
             "app/watch", "app/language"}
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


def unused(edges):
    """A line for each permission that no file uses."""
    return [f"{folder} may include {other}, and does not" for folder, others in ROWS.items() for other in others
            if other not in edges.get(folder, [])]


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
    for top in sources.program_folders(root) + ["samples"]:
        for path in sources.files_in(root, top):
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
    assert "db may include base, and does not" in unused({"db": []}) and not unused(ROWS)
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
    offences += unused(edges)
    offences += [f"{folder} -> {other} runs up" for folder, others in edges.items() for other in others
                 if other != LOW and runs_up(folder, other)]
    offences += crowded(count_files(root))
    print("\n".join(offences) if offences else
          f"{len(tree)} files keep to their floors; the only includes that run up lead to {LOW}")
    return 1 if offences or not tree else 0


if __name__ == "__main__":
    self_test()
    sys.exit(0 if sys.argv[1:] == ["--self-test"] else main(sys.argv[1]))
