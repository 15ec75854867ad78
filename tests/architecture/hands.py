#!/usr/bin/env python3
"""Tests of windows press, wait and release through tests/support/Hands.h: an event that is sent in one breath misses
what happens between a press and its release.

  hands.py ROOT     checks the tree; exit status 1 and a line for each offence
"""
import os
import re
import sys

FOLDERS = ["tests/window", "tests/platform", "tests/monkey"]
# Its subject is which single events the message loop holds back.
EXEMPT = {"tests/platform/message_loop_test.cpp", "tests/platform/message_loop_ends_test.cpp"}
IN_ONE_BREATH = re.compile(r"\bQTest::(?:mouse|key)\w+\s*\(|\bqt_handle(?:Mouse|Key)Event\b|\bQMouseEvent\s+\w+\s*[({]|\bnew\s+QMouseEvent\b|\busing\s+namespace\s+QTest\b")


def offences(path, text):
    return [f"{path}:{number}: {line.strip()}" for number, line in enumerate(text.splitlines(), 1)
            if path not in EXEMPT and IN_ONE_BREATH.search(line)]


def self_test():
    assert offences("tests/window/a.cpp", "QTest::mouseClick(button, Qt::LeftButton);")
    assert offences("tests/window/a.cpp", "QMouseEvent press(QEvent::MouseButtonPress, at);")
    assert offences("tests/window/a.cpp", "post(new QMouseEvent(type, at, at, at, button, button, {}));")
    assert not offences("tests/window/a.cpp", "hands::click(button, Qt::LeftButton);")
    assert not offences("tests/platform/message_loop_test.cpp", "QTest::keyClicks(line, text);")


def main(root):
    self_test()
    found, count = [], 0
    for folder in FOLDERS:
        for base, _, names in os.walk(os.path.join(root, folder)):
            for name in sorted(names):
                if name.endswith((".cpp", ".h")):
                    count += 1
                    path = os.path.join(base, name)
                    with open(path, encoding="utf-8") as file:
                        found += offences(os.path.relpath(path, root), file.read())
    print("\n".join(found) if found else f"{count} files of tests use hands")
    return 1 if found or not count else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
