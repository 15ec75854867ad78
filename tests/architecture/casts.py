#!/usr/bin/env python3
"""Numbers are cast in one way, with static_cast, in all sources.

  casts.py ROOT     checks the tree; exit status 1 and a line for each offence
"""
import os
import re
import sys

import sources

NUMBER = (r"(?:q?u?int(?:8|16|32|64)?|qu?longlong|char|uchar|float|double|unsigned|qsizetype|off_t|ssize_t|long|bool"
          r"|(?:std::)?size_t|std::u?int(?:8|16|32|64)_t|std::ptrdiff_t)")
# A type of a function, as in std::function<int(int)>, has a "<" before it.
CAST = re.compile(rf"(?<![\w:<>&*.])(?<!operator ){NUMBER}\((?=[^)])|(?<![\w\])>])\((?:const )?{NUMBER}\s?\*?\)\s?[\w(]")
NO_CODE = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"', re.S)


def offences(path, text):
    code = NO_CODE.sub(lambda match: '""' if match[0][0] == '"' else "", text)
    return [f"{path}:{number}: {line.strip()}" for number, line in enumerate(code.splitlines(), 1)
            if CAST.search(line)]


def self_test():
    assert offences("a.cpp", "auto size = int(list.size());")
    assert offences("a.cpp", "auto size = std::size_t(list.size());")
    assert offences("a.cpp", "auto size = (int)list.size();")
    assert not offences("a.cpp", "std::function<int(QString)> count; // int(x)")
    assert not offences("a.cpp", "auto size = static_cast<int>(list.size()); auto zero = int();")
    assert not offences("a.cpp", 'auto text = u"int(x)"_s; operator int(); QByteArrayView(bytes); print(1);')


def main(root):
    self_test()
    found, count = [], 0
    for count, path in enumerate(sources.all_files(root), 1):
        with open(path, encoding="utf-8") as file:
            found += offences(os.path.relpath(path, root), file.read())
    print("\n".join(found) if found else f"{count} sources cast in one way")
    return 1 if found or not count else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
