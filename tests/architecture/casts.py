#!/usr/bin/env python3
"""Numbers, enumerations and pointers are cast in one way, by static_cast and its kin, in all sources.

  casts.py ROOT     checks the tree; exit status 1 and a line for each offence
"""
import os
import re
import sys

import sources

NUMBER = (r"(?:q?u?int(?:8|16|32|64)?|qu?longlong|char|uchar|float|double|unsigned|qsizetype|off_t|ssize_t|long|bool"
          r"|(?:std::)?size_t|std::u?int(?:8|16|32|64)_t|std::ptrdiff_t)")
# A type of a function, as in std::function<int(int)>, has a "<" before it.
BEFORE = r"(?<![\w:<>&*.~])(?<!operator )"
OF_NUMBER = re.compile(rf"{BEFORE}{NUMBER}\((?=[^)])")
# In the way of C; a value that is dropped by (void) is none. clang-format puts no blank behind it, and one behind the head of an "if"; "==(" begins an operator.
OF_C = re.compile(r"(?<![\w\])>=])\((?!void\))(?:const )?[A-Za-z_][\w:]*(?:<[^<>()]*>)?(?: ?[*&]+)?\)[A-Za-z_(]"
                  rf"|(?<![\w\])>])\((?:const )?{NUMBER}\s?\*?\)\s?[\w(]")
ENUMERATION = re.compile(r"\benum(?: class| struct)? (\w+)")
CLASS = re.compile(r"\b(?<!enum )(?:class|struct) (\w+)")
NO_CODE = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"', re.S)


def code_of(text):
    return NO_CODE.sub(lambda match: '""' if match[0][0] == '"' else "\n" * match[0].count("\n"), text)


def enumerations(codes):
    """The names that are those of enumerations, and of no class anywhere."""
    found, classes = set(), set()
    for code in codes:
        found.update(ENUMERATION.findall(code))
        classes.update(CLASS.findall(code))
    return sorted(found - classes)


def offences(path, code, enums=()):
    of_enum = re.compile(rf"{BEFORE}(?:\w+::)*(?:{'|'.join(enums)})\((?=[^)])") if enums else None
    return [f"{path}:{number}: {line.strip()}" for number, line in enumerate(code.splitlines(), 1)
            if OF_NUMBER.search(line) or OF_C.search(line) or (of_enum and of_enum.search(line))]


def self_test():
    assert offences("a.cpp", "auto size = int(list.size());")
    assert offences("a.cpp", "auto size = std::size_t(list.size());")
    assert offences("a.cpp", "auto size = (int)list.size();")
    assert offences("a.cpp", "auto *text = (char *)bytes;")
    assert offences("a.cpp", "auto &box = (const ListBox &)widget;")
    assert offences("a.cpp", "return (Kind)number;")
    assert offences("a.cpp", "return Kind(number);", ["Kind"])
    assert offences("a.cpp", "return Part::Kind(number);", ["Kind"])
    assert enumerations(["enum class Kind { A };", "enum Field { B };", "struct Field {};"]) == ["Kind"]
    assert not offences("a.cpp", code_of("std::function<int(QString)> count; // int(x)"))
    assert not offences("a.cpp", "auto size = static_cast<int>(list.size()); auto zero = int();")
    assert not offences("a.cpp", code_of('auto text = u"int(x)"_s; operator int(); QByteArrayView(bytes); print(1);'))
    assert not offences("a.cpp", "bool operator==(const Field &) const = default; void closed(Event *) override {")
    assert not offences("a.cpp", "Kind kind(int number); auto kind = static_cast<Kind>(number); if (isKind) (void)0;", ["Kind"])


def main(root):
    self_test()
    codes = {}
    for path in sources.all_files(root):
        with open(path, encoding="utf-8") as file:
            codes[os.path.relpath(path, root)] = code_of(file.read())
    enums = enumerations(codes.values())
    found = [line for path, code in codes.items() for line in offences(path, code, enums)]
    print("\n".join(found) if found else f"{len(codes)} sources cast in one way, to {len(enums)} enumerations too")
    return 1 if found or not codes or not enums else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
