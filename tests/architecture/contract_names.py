#!/usr/bin/env python3
"""Only db/QirDatabase.cpp knows the component's members by name, and nothing else is connected by name: a member that
is renamed or taken away is then seen in one place. platform/automation calls any member of any name, and knows none.

  contract_names.py ROOT     checks the tree; exit status 1 and a line for each offence
"""
import os
import re
import sys

import sources

GATEWAY = "db/QirDatabase.cpp"
BUS = "app/look/DesktopColours.cpp"  # a signal of the session bus can be connected by name alone
MEMBER = re.compile(r'\b(?:Method|Property)<.*>\s+\w+\{"(\w+)"\}')
SIGNAL = re.compile(r'\bindexOfSignal\("(\w+)\(')
PROPERTY = re.compile(r'\bindexOfProperty\("(\w+)"\)')
# A comment (left out), a raw string, a string, a character.
TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\((.*?)\)\1"|"((?:[^"\\\n]|\\.)*)"|\'(?:[^\'\\\n]|\\.)+\'', re.DOTALL)
BY_NAME = re.compile(r"\b(?:SIGNAL|SLOT)\s*\(")


def names_in(gateway):
    return sorted(set(MEMBER.findall(gateway)) | set(SIGNAL.findall(gateway)) | set(PROPERTY.findall(gateway)))


def offences(path, text, names):
    """A line for each string that is a member's name, alone or with its arguments, and for each SIGNAL( and SLOT(."""
    if path == GATEWAY:
        return []
    member = re.compile(r"\s*[012]?(?:%s)\s*(?:\(.*)?" % "|".join(names), re.DOTALL)
    found = []

    def look(token):
        literal = token.group(3) if token.group(3) is not None else token.group(2)
        if literal is not None and member.fullmatch(literal):
            found.append((text.count("\n", 0, token.start()) + 1, f'"{literal}" is a member of the component'))
        return re.sub(r"[^\n]", " ", token.group())

    for hit in BY_NAME.finditer(TOKEN.sub(look, text)):
        if path == BUS:
            continue
        found.append((text.count("\n", 0, hit.start()) + 1, f"{hit.group()} connects by name"))
    return [f"{path}:{number}: {what}" for number, what in sorted(found)]


def self_test():
    names = names_in('const Method<void(int, QStringList &)> get{"GetRecord"};\nconst Property<bool> is{"HasChanged"};\n'
                     'metaObject->indexOfSignal("Told(QString)");\nmetaObject->indexOfProperty("Stands");\n')
    assert names == ["GetRecord", "HasChanged", "Stands", "Told"], names
    assert offences("cli/a.cpp", 'f("HasChanged");', names) == ['cli/a.cpp:1: "HasChanged" is a member of the component']
    assert offences("view/a.cpp", '\nf(u"GetRecord(int,QStringList&)"_s);', names)
    assert offences("app/a.cpp", 'f(R"x(Told)x");', names)
    assert offences("cli/a.cpp", "connect(a, SIGNAL(anything()), b, f);", names) == ["cli/a.cpp:1: SIGNAL( connects by name"]
    assert offences("cli/a.cpp", "connect(a, f, b, SLOT (anything()));", names)
    assert not offences(GATEWAY, 'f("HasChanged"); SIGNAL(x())', names)
    assert not offences("cli/a.cpp", '// "HasChanged", SIGNAL(x())\n/* "Told" */ f("Told me so"); GetRecord(\'"\');', names)
    assert not offences("cli/a.cpp", 'f("say \\"HasChanged\\"");', names)


def main(root):
    self_test()
    with open(os.path.join(root, GATEWAY), encoding="utf-8") as file:
        names = names_in(file.read())
    found, count = [], 0
    for count, path in enumerate(sources.all_files(root, sources.program_folders(root)), 1):
        with open(path, encoding="utf-8") as file:
            found += offences(os.path.relpath(path, root), file.read(), names)
    print("\n".join(found) if found else f"{count} files know none of the {len(names)} members by name")
    return 1 if found or not count or not names else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
