#!/usr/bin/env python3
"""What is known of a pane changes in pane/ only: Pane and EditorContext have no data that others may write to, give no
reference to it away, have no friends and no setters of a pane's state. Others call the methods that keep the data in
step, which say what has happened.

  pane_state.py ROOT    status 1 and a line for each breach
  pane_state.py --self-test
"""
import os
import re
import sys

import sources

CLASSES = {"pane/Pane.h": "Pane", "pane/EditorContext.h": "EditorContext", "pane/CellEdit.h": "CellEdit"}
# Given away to be worked on: the controls, and objects with methods of their own, or what a comparison fills in one go.
OBJECTS = {"Tabella", "ListaTabelle", "nomelab", "IDtb", "txtEdit", "pane", "cellEdit", "listClicks", "commands",
           "gridCommands", "foundDifferences",
           "status", "remembered", "room"}
# What is entered once, when it is built; and what is chosen by a command and of no pane: nothing else hangs on it.
SETTERS = {"setControls", "setBelowFrames", "setOrigin"}
# Which pane is active brings colours and menus with it: activatePane() alone changes it.
OF_PANE = {"setIndexAttivo"}
CALL = re.compile(r"(?:\.|->)(%s)\(" % "|".join(sorted(OF_PANE)))
BEFORE = re.compile(r"^    (?:\[\[\w+\]\] |(?:inline|static|virtual|mutable|constexpr) )*")
TYPE = r"[\w:]+(?:<(?:[^<>]|<(?:[^<>]|<[^<>]*>)*>)*>)?"


def breaches(text, name):
    start = re.search(r"^class %s \{$" % name, text, re.M)
    if not start:
        return [f"class {name} was not found"]
    body = text[start.end():text.index("\n};", start.end())]
    found, public = [], False
    depth = 0
    for line in body.splitlines():
        code = line.split("//")[0].rstrip()
        at_member = depth == 0
        depth += code.count("{") - code.count("}")
        if code.strip() in ("public:", "private:", "protected:"):
            public = code.strip() == "public:"
            continue
        if re.match(r"\s*friend\b", code):
            found.append(f"{name} has a friend: {code.strip()}")
            continue
        if not public or not at_member or not code.strip():
            continue
        member = re.match(r"^(?!using|struct|class|enum|return|const |\S+ \&?operator)" + TYPE + r"[\s*&]+(\w+)\s*(?:[={][^;]*.*)?;$", BEFORE.sub("", code))
        if member:
            found.append(f"{name}::{member.group(1)} may be written by anybody")
        if re.match(r"^    struct \{", code) or re.match(r"^    \} \w+;", code):
            found.append(f"{name} has a nameless part that anybody may write")
        setter = re.match(r"^(?:void|bool) (set[A-Z]\w*)\(", BEFORE.sub("", code))
        if setter and setter.group(1) not in SETTERS | OF_PANE:
            found.append(f"{name}::{setter.group(1)}() sets what others should tell by what has happened")
        away = re.match(r"^(?!const\b)" + TYPE + r" ?[&*] ?(\w+)\([^)]*\)(?: const)?(?:;| \{)", BEFORE.sub("", code))
        if away and away.group(1) not in OBJECTS:
            found.append(f"{name}::{away.group(1)}() gives its state away")
    return found


def calls(path, text):
    """A line for each call, outside pane/, of what belongs to pane/."""
    if os.path.dirname(path) == "pane":
        return []
    return [f"{path}:{number}: {line.strip()}" for number, line in enumerate(text.splitlines(), 1) if CALL.search(line)]


def self_test():
    head = "class Pane {\npublic:\n"
    assert breaches(head + "    int line() const { return m_line; }\nprivate:\n    int m_line = -1;\n};\n", "Pane") == []
    assert len(breaches(head + "    int line = -1;\n};\n", "Pane")) == 1
    assert len(breaches(head + "    QString shown;\n};\n", "Pane")) == 1
    assert len(breaches(head + "    int &line() { return m_line; }\n};\n", "Pane")) == 1
    assert len(breaches(head + "    QString &shown();\n};\n", "Pane")) == 1
    assert len(breaches(head + "    int *line() { return &m_line; }\n};\n", "Pane")) == 1
    assert len(breaches(head + "    int room = 3;\n};\n", "Pane")) == 1
    assert len(breaches(head + "    [[nodiscard]] QString &shown();\n};\n", "Pane")) == 1
    assert len(breaches(head + "    inline QString &shown();\n};\n", "Pane")) == 1
    assert len(breaches(head + "    QHash<int, QList<QString>> &shown();\n};\n", "Pane")) == 1
    assert len(breaches(head + "    std::function<void()> f = [] {};\n};\n", "Pane")) == 1
    assert len(breaches(head + "    int line{f()};\n};\n", "Pane")) == 1
    assert breaches(head + "    struct {\n        int a;\n    } s;\n};\n", "Pane")
    assert len(breaches(head + "    friend class Other;\n};\n", "Pane")) == 1
    assert len(breaches(head + "    void setOpen(bool open) { m_open = open; }\n};\n", "Pane")) == 1
    assert breaches(head + "    void setControls(const PaneControls &controls);\n};\n", "Pane") == []
    assert calls("app/A.cpp", "m_editor.setIndexAttivo(1);\n") and not calls("pane/A.cpp", "editor.setIndexAttivo(1);\n")


def main(root):
    found = []
    for path, name in CLASSES.items():
        with open(os.path.join(root, path), encoding="utf-8") as file:
            found += [f"{path}: {line}" for line in breaches(file.read(), name)]
    for path in sources.all_files(root):
        with open(path, encoding="utf-8") as file:
            found += calls(os.path.relpath(path, root), file.read())
    print("\n".join(found) if found else "the panes' state is written in pane/ only")
    return 1 if found else 0


if __name__ == "__main__":
    self_test()
    sys.exit(0 if sys.argv[1:] == ["--self-test"] else main(sys.argv[1]))
