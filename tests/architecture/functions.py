#!/usr/bin/env python3
"""No function of more lines than one can take in at a glance. Counts braces, with comments and literals left out.

  functions.py ROOT    prints the longest ones; status 1 and a line for each that is too long
  functions.py --self-test
"""
import os
import re
import sys

import sources

MOST_LINES = 60
# What holds functions and is none, and words that may stand before a function's head.
SCOPE = re.compile(r"(?:namespace|enum|union|extern)\b|(?:class|struct)\b[^()]*$")
BEFORE_HEAD = re.compile(r"(?:\s+|(?:public|private|protected)(?:\s+(?:Q_SLOTS|slots))?\s*:|Q_SIGNALS\s*:|Q_OBJECT\b|Q_GADGET\b|"
                         r"\[\[\w+\]\]|template\s*<(?:[^<>]|<(?:[^<>]|<[^<>]*>)*>)*>)+")
# Comments, raw strings, strings, characters, and lines of the preprocessor.
LITERAL = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\\n]|\\.)+\'|'
                     r'^[ \t]*#(?:[^\n\\]|\\.)*', re.DOTALL | re.MULTILINE)


def blanked(text):
    """The text with every literal and comment blank, and every line where it was."""
    separators = re.sub(r"(?<=\d)'(?=\d)", " ", text)  # of digits
    return LITERAL.sub(lambda token: re.sub(r"[^\n]", " ", token.group()), separators)


def is_function(head):
    """Whether the brace behind this head opens a function's body."""
    if "(" not in head or SCOPE.match(head):
        return False
    last = head.rstrip()[-1:]
    if re.search(r"[)}]\s*(?:noexcept\s*)?:(?!:)", head) and last not in ")}":
        return False  # a member in a constructor's list, initialised by braces
    # What is initialised by braces has no function's end: ")", const and the like, or a type behind "->".
    return last in ")}]" or re.search(r"(?:\b(?:const|noexcept|override|final|mutable|try)|&|->\s*[\w:<>,\s*&]+)\s*$", head) is not None


def functions(text):
    """(first line, name, number of lines) of each function with a body of its own lines."""
    plain = blanked(text)
    found = []
    scopes = []  # of each open brace: (what it is, where its head begins, the head)
    start = 0
    parentheses = 0
    for i, sign in enumerate(plain):
        if sign == "(":
            parentheses += 1
        elif sign == ")":
            parentheses -= 1
        elif sign == "{":
            head = plain[start:i]
            skipped = BEFORE_HEAD.match(head)
            begin = start + (skipped.end() if skipped else 0)
            head = plain[begin:i]
            inside = any(kind == "function" for kind, *_ in scopes)
            kind = "part"
            if not inside and parentheses == 0:
                kind = "function" if is_function(head) else "scope" if SCOPE.match(head) else "part"
            scopes.append((kind, begin, head))
            if kind != "part":
                start = i + 1
        elif sign == "}" and scopes:
            kind, begin, head = scopes.pop()
            if kind == "function":
                first = plain.count("\n", 0, begin) + 1
                name = re.search(r"(operator\s*[^\s\w(]+|[\w:~]+)\s*\(", head)
                lines = plain.count("\n", begin, i) + 1
                if lines > 1:
                    found.append((first, name.group(1) if name else head.split()[0], lines))
            if kind != "part":
                start = i + 1
        elif sign == ";" and parentheses == 0 and not any(kind == "function" for kind, *_ in scopes):
            start = i + 1
    return found


def self_test():
    body = "    step();\n"
    assert functions("void f() {\n" + body * 3 + "}\n") == [(1, "f", 5)]
    assert functions("void A::g(int a,\n          int b) {\n" + body + "}\n") == [(1, "A::g", 4)]
    assert functions("A::A()\n    : m_a(1)\n    , m_b(2) {\n" + body + "}\n") == [(1, "A::A", 5)]
    assert functions("A::A()\n    : m_a{1}\n    , m_b(2) {\n" + body + "}\n") == [(1, "A::A", 5)]
    assert functions("A::A()\n    : m_a({1, [] {\n    }}) {\n" + body + "}\n") == [(1, "A::A", 5)]
    assert functions("class A {\n    void h() {\n    " + body * 2 + "    }\n};\n") == [(2, "h", 4)]
    assert functions("class A : public B {\npublic:\n    int h() const override {\n    " + body + "    }\n};\n") == [(3, "h", 3)]
    assert functions("namespace {\n\nconst int a[] = {\n    1,\n};\n\n} // namespace\n") == []
    assert functions("TEST(A, B) {\n    if (a) {\n" + body + "    }\n}\n") == [(1, "TEST", 5)]
    assert functions("void f(int a,\n       int b = 2) {\n" + body + "}\n") == [(1, "f", 4)]
    assert functions("void f(const std::function<void(int)> &g) {\n" + body + "}\n") == [(1, "f", 3)]
    assert functions("template <class T = int> void f() {\n" + body + "}\n") == [(1, "f", 3)]
    assert [lines for _, _, lines in functions("const auto f = [](int a) {\n" + body + "};\n")] == [3]
    assert functions('const char *a = "{";\nvoid f() { // {\n    b(\'{\');\n}\n') == [(2, "f", 3)]
    assert functions("bool A::operator==(const A &o) const {\n" + body + "}\n") == [(1, "operator==", 3)]
    assert functions("auto f() -> std::vector<int> {\n" + body + "}\n") == [(1, "f", 3)]
    assert functions("std::map<int, int> a = {\n    {1, f(2)},\n};\nvoid g() {\n" + body + "}\n") == [(4, "g", 3)]


def main(root):
    all_functions = []
    for path in sources.all_files(root):
        with open(path, encoding="utf-8") as file:
            all_functions += [(count, os.path.relpath(path, root), line, name)
                              for line, name, count in functions(file.read())]
    if not all_functions:
        print("no function found")
        return 1
    all_functions.sort(reverse=True)
    lengths = sorted(count for count, *_ in all_functions)
    print(f"{len(lengths)} functions of more than a line, half of them of at most {lengths[len(lengths) // 2]} lines, "
          f"99 of 100 of at most {lengths[len(lengths) * 99 // 100]}; the longest:")
    for count, path, line, name in all_functions[:5]:
        print(f"  {count:3} {path}:{line} {name}")
    too_long = [f"{path}:{line}: {name} has {count} lines, more than {MOST_LINES}"
                for count, path, line, name in all_functions if count > MOST_LINES]
    print("\n".join(too_long))
    return 1 if too_long else 0


if __name__ == "__main__":
    self_test()
    sys.exit(0 if sys.argv[1:] == ["--self-test"] else main(sys.argv[1]))
