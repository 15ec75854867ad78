#!/usr/bin/env python3
"""Every text that a component may tell stands among the forms of base/words/StorageWords.cpp, by which the editor tells it
in its user's language.

  storage_words.py ROOT     status 1 and a line for each text that is missing there
  storage_words.py --self-test
"""
import os
import re
import sys

import sources

FORMS = os.path.join("base", "words", "StorageWords.cpp")
# What the component says by itself, and what the system and the state folder answer it.
FOLDERS = ["qirtbase", "base/columns", "compare/conflicts"]
FILES = ["base/FileOps.cpp", "base/FileNames.cpp", "base/ErrorWords.cpp", "base/state/StateFolder.cpp"]
# Data in words.
DATA = {"QIR head", "yyyy-MM-dd HH.mm.ss"}
PIECE = r'"(?:[^"\\\n]|\\.)*"'
LITERAL = re.compile(rf'(u?)({PIECE}(?:\s*{PIECE})*)(_s)?')
COMMENT = re.compile(rf'({PIECE})|//[^\n]*|#include[^\n]*')
# What stands before a literal that nobody is told.
NOT_TOLD = re.compile(r"(?:QByteArrayView \w+\(|length_error\(|qFatal\(|Q_ASSERT_X\([^;]*|static_assert\([^;]*)$")


def joined(pieces):
    text = "".join(piece[1:-1] for piece in re.findall(PIECE, pieces))
    return text.replace('\\"', '"').replace("\\n", "\n").replace("\\\\", "\\")


def shape(text):
    """The text, with each place to fill in alike."""
    return re.sub(r"(?:%\d)+", "%", text)


def texts_of(source):
    """The texts in words of a source file."""
    source = COMMENT.sub(lambda token: token.group(1) or "", source)
    for match in LITERAL.finditer(source):
        text = joined(match.group(2))
        if len(re.findall(r"[A-Za-z]{2,}", re.sub(r"%\d", "", text))) < 2 or text in DATA:
            continue
        if " " in text and not NOT_TOLD.search(source[max(0, match.start() - 200):match.start()]):
            yield text


def known_forms(source):
    return [shape(joined(match.group(1)))
            for match in re.finditer(rf'QT_TRANSLATE_NOOP\("Storage",\s*({PIECE}(?:\s*{PIECE})*)\)', source)]


def is_known(text, forms):
    wanted = shape(text)
    if wanted in forms:
        return True
    # What is put behind another text.
    return wanted[0] in "; " and any(wanted in form for form in forms)


def self_test():
    forms = known_forms('QT_TRANSLATE_NOOP("Storage", "%1: it is "\n   "gone: %2"),\nQT_TRANSLATE_NOOP("Storage", "%1; cut"),')
    assert forms == ["%: it is gone: %", "%; cut"], forms
    assert list(texts_of('f(u"it is %1"_s.arg(x)); // "no text here"\n#include "a b"\ng("x");')) == ["it is %1"]
    assert list(texts_of('raise(u"one "\n  "two"_s);')) == ["one two"]
    assert list(texts_of('throw std::length_error("more text than fits");')) == []
    assert is_known("%1: it is gone: %2%3", forms) and is_known("; cut", forms)
    assert not is_known("it is gone", forms)


def main():
    if sys.argv[1:] == ["--self-test"]:
        self_test()
        return 0
    root = sys.argv[1]
    with open(os.path.join(root, FORMS), encoding="utf-8") as file:
        forms = set(known_forms(file.read()))
    missing = 0
    paths = list(sources.all_files(root, FOLDERS)) + [os.path.join(root, name) for name in FILES]
    for path in sorted(set(paths)):
        with open(path, encoding="utf-8") as file:
            for text in texts_of(file.read()):
                if not is_known(text, forms):
                    print(f"{os.path.relpath(path, root)}: {text!r} is not in {FORMS}")
                    missing += 1
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
