#!/usr/bin/env python3
"""No function of more lines than one can take in at a glance. Reads the sources as clang-format lays them out: a body
ends where a closing brace stands as far to the left as the line that the function begins with.

  functions.py ROOT    prints the longest ones; status 1 and a line for each that is too long
  functions.py --self-test
"""
import os
import re
import sys

MOST_LINES = 60
FOLDERS = ["app", "base", "bench", "cli", "compare", "db", "dialogs", "fuzz", "pane", "platform", "qirtbase", "samples",
           "structure", "tests", "view"]
NO_FUNCTION = re.compile(r"^\s*(namespace|(?:class|struct)(?=[^(]*$)|enum|union|extern \"C\"|public|private|protected|template|"
                         r"if|else|for|while|switch|case|do|try|catch|return|//|#)\b")


def functions(text):
    """(first line, name, number of lines) of each function with a body of its own lines."""
    lines = text.splitlines()
    found = []
    for i, line in enumerate(lines):
        # A lambda is a part of the function that it stands in.
        if not line.rstrip().endswith("{") or "=" in re.sub(r"operator\S+", "", line.split("(")[0]) or re.search(r"\[[^\]]*\](\(.*\).*)? ?\{$", line):
            continue
        # The head of a function may run over several lines: it begins where the indentation is least.
        first = i
        indent = len(line) - len(line.lstrip())
        while first > 0 and lines[first - 1].strip() and not lines[first - 1].rstrip().endswith((";", "{", "}", ":", ">")) \
                and not lines[first - 1].lstrip().startswith(("//", "#")) and "(" not in lines[first]:
            first -= 1
        if line.lstrip().startswith(("}", ")", ":", ",")) or "(" not in line:
            while first > 0 and (lines[first].lstrip().startswith((":", ",")) or
                                 len(lines[first]) - len(lines[first].lstrip()) > indent) and lines[first - 1].strip():
                first -= 1
        head = lines[first]
        indent = len(head) - len(head.lstrip())
        if indent not in (0, 4, 8) or NO_FUNCTION.match(head) or "(" not in " ".join(lines[first:i + 1]):
            continue
        end = i + 1
        while end < len(lines) and not re.match(r"^ {%d}\}" % indent, lines[end]):
            end += 1
        name = re.search(r"([\w:~]+|operator\S+)\(", " ".join(lines[first:i + 1]))
        found.append((first + 1, name.group(1) if name else head.strip(), end - first + 1))
    return found


def read_all(root):
    for folder in FOLDERS:
        for base, folders, names in os.walk(os.path.join(root, folder)):
            folders[:] = [f for f in folders if f not in ("corpus", "found")]
            for name in sorted(names):
                if name.endswith((".h", ".cpp")):
                    path = os.path.join(base, name)
                    with open(path, encoding="utf-8") as file:
                        yield os.path.relpath(path, root), file.read()


def self_test():
    body = "    step();\n"
    assert functions("void f() {\n" + body * 3 + "}\n") == [(1, "f", 5)]
    assert functions("void A::g(int a,\n          int b) {\n" + body + "}\n") == [(1, "A::g", 4)]
    assert functions("A::A()\n    : m_a(1)\n    , m_b(2) {\n" + body + "}\n") == [(1, "A::A", 5)]
    assert functions("class A {\n    void h() {\n    " + body * 2 + "    }\n};\n") == [(2, "h", 4)]
    assert functions("namespace {\n\nconst int a[] = {\n    1,\n};\n\n} // namespace\n") == []
    assert functions("TEST(A, B) {\n    if (a) {\n" + body + "    }\n}\n") == [(1, "TEST", 5)]


def main(root):
    all_functions = [(count, path, line, name) for path, text in read_all(root) for line, name, count in functions(text)]
    if not all_functions:
        print("no function found")
        return 1
    all_functions.sort(reverse=True)
    lengths = sorted(count for count, *_ in all_functions)
    print(f"{len(lengths)} functions, half of them of at most {lengths[len(lengths) // 2]} lines, "
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
