#!/usr/bin/env python3
"""The release build compiles the sources of a library together: in what stands in their unnamed namespaces no two of
them share a name, but for those that cmake/QirTargets.cmake lists as compiled alone.

  unity.py ROOT     status 1 and a line for each name that two sources of a library have
"""
import os
import re
import sys

LISTS = "cmake/QirTargets.cmake"
LIBRARY = re.compile(r"qir_library\((\w+)(.*?)(?:\bLINK\b|\))", re.S)
NAMELESS = re.compile(r"^namespace \{\n(.*?)^\} // namespace\n", re.M | re.S)
# Two of one name are no clash where both only stand for another type, or where functions take other arguments.
NAME = re.compile(r"^(?!using )(?:[A-Za-z_][\w:<>,&* ]*?)[ &*]+(\w+)(?:(\([^()]*\))|\(|;| =|\{| \{|$)", re.M)


def listed(cmake, name):
    """The words of a list of CMake, without its comments."""
    found = re.search(r"set\(%s\b([^)]*)\)" % name, re.sub(r"#.*", "", cmake))
    return set(found.group(1).split())


def taken(arguments):
    """The types that a function takes, without names and what is given where they are left out."""
    return ", ".join(re.sub(r"(?<=[\w>&* ])\b\w+$", "", part.split("=")[0].strip()).strip()
                     for part in arguments.strip("()").split(","))


def names(text):
    return {name + (f"({taken(arguments)})" if arguments else "")
            for part in NAMELESS.findall(text) for name, arguments in NAME.findall(part)}


def clashes(library, texts):
    """A line for each name that two of these sources have. texts: {path: text}."""
    owners = {}
    for path, text in sorted(texts.items()):
        for name in names(text):
            owners.setdefault(name, []).append(path)
    return [f"{library}: {name} stands in {' and '.join(paths)}" for name, paths in sorted(owners.items())
            if len(paths) > 1]


def libraries(root):
    """(library, its sources) of each folder."""
    for base, below, files in os.walk(root):
        below[:] = [name for name in below if name not in ("build", "tests", "bench", "fuzz", "docs")]
        if "CMakeLists.txt" in files and base != root:
            with open(os.path.join(base, "CMakeLists.txt"), encoding="utf-8") as file:
                text = re.sub(r"#.*", "", file.read())
            for name, inside in LIBRARY.findall(text):
                yield name, [os.path.join(base, word) for word in inside.split() if word.endswith(".cpp")]


def self_test():
    one = "namespace {\n\nconstexpr int most = 3;\n\nint countOf(int a) {\n    int b = a;\n    return b;\n}\n\n} // namespace\n"
    other = "namespace {\n\nclass Most {};\n\nQString &countOf(const QString &a);\n\n} // namespace\n"
    assert names(one) == {"most", "countOf(int)"}, names(one)
    assert names(other) == {"Most", "countOf(const QString &)"}, names(other)
    assert clashes("l", {"a.cpp": one, "b.cpp": other}) == []
    assert clashes("l", {"a.cpp": one, "b.cpp": one}) == [f"l: {name} stands in a.cpp and b.cpp"
                                                          for name in ("countOf(int)", "most")]
    assert clashes("l", {"a.cpp": one, "b.cpp": one.replace("namespace {", "namespace x {")}) == []
    assert listed("set(A one # why\n    two) # three\n", "A") == {"one", "two"}


def main(root):
    self_test()
    with open(os.path.join(root, LISTS), encoding="utf-8") as file:
        cmake = file.read()
    apart, alone = listed(cmake, "QIR_LIBRARIES_APART"), listed(cmake, "QIR_SOURCES_APART")
    found, count = [], 0
    for library, paths in libraries(root):
        if library in apart:
            continue
        texts = {}
        for path in paths:
            if os.path.basename(path) not in alone:
                with open(path, encoding="utf-8") as file:
                    texts[os.path.relpath(path, root)] = file.read()
        count += len(texts)
        found += clashes(library, texts)
    print("\n".join(found) if found else f"{count} sources can be compiled together")
    return 1 if found or not count else 0


if __name__ == "__main__":
    sys.exit(main(os.path.abspath(sys.argv[1])))
