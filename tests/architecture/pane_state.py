#!/usr/bin/env python3
"""What is known of a pane changes in pane/ only: Pane and EditorContext have no data that others may write to, give no
reference to it away and have no friends. Others call the methods that keep the data in step.

  pane_state.py ROOT    status 1 and a line for each breach
  pane_state.py --self-test
"""
import os
import re
import sys

CLASSES = {"pane/Pane.h": "Pane", "pane/EditorContext.h": "EditorContext", "pane/CellEdit.h": "CellEdit"}
# Given away to be worked on: the controls, and objects with methods of their own, or what a comparison fills in one go.
OBJECTS = {"Tabella", "ListaTabelle", "nomelab", "IDtb", "txtEdit", "pane", "cellEdit", "listClicks",
           "gridCommands", "foundDifferences",
           "status", "remembered", "room"}
DATA = {"controls"}
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
        if member and member.group(1) not in DATA:
            found.append(f"{name}::{member.group(1)} may be written by anybody")
        if re.match(r"^    struct \{", code) or re.match(r"^    \} \w+;", code):
            found.append(f"{name} has a nameless part that anybody may write")
        away = re.match(r"^(?!const\b)" + TYPE + r" ?[&*] ?(\w+)\([^)]*\)(?: const)?(?:;| \{)", BEFORE.sub("", code))
        if away and away.group(1) not in OBJECTS:
            found.append(f"{name}::{away.group(1)}() gives its state away")
    return found


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


def main(root):
    found = []
    for path, name in CLASSES.items():
        with open(os.path.join(root, path), encoding="utf-8") as file:
            found += [f"{path}: {line}" for line in breaches(file.read(), name)]
    print("\n".join(found) if found else "the panes' state is written in pane/ only")
    return 1 if found else 0


if __name__ == "__main__":
    self_test()
    sys.exit(0 if sys.argv[1:] == ["--self-test"] else main(sys.argv[1]))
