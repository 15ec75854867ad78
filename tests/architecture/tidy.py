#!/usr/bin/env python3
"""Shows that tools/tidy finds a planted breach, and passes a source without one.

  tidy.py ROOT     status 77, not run, without clang-tidy
"""
import json
import os
import subprocess
import sys
import tempfile

NOT_RUN = 77
GOOD = "const int *first(const int *values) {\n    return values != nullptr ? values + 1 : nullptr;\n}\n"
BREACH = "const int *first(const int *values) {\n    return values != 0 ? values + 1 : 0;\n}\n"


def look(root, folder, text):
    """tools/tidy over one source of that text."""
    path = os.path.join(folder, "planted.cpp")
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    with open(os.path.join(folder, "compile_commands.json"), "w", encoding="utf-8") as file:
        json.dump([{"directory": folder, "command": f"c++ -std=c++20 -c {path}", "file": path}], file)
    return subprocess.run([os.path.join(root, "tools", "tidy"), path], env={**os.environ, "QIR_BUILD": folder},
                          stdout=subprocess.PIPE, text=True, check=False)


def main(root):
    with tempfile.TemporaryDirectory() as folder:
        good, breach = look(root, folder, GOOD), look(root, folder, BREACH)
    if NOT_RUN in (good.returncode, breach.returncode):
        print(good.stdout.strip())
        return NOT_RUN
    assert good.returncode == 0, good.stdout
    assert breach.returncode != 0 and "modernize-use-nullptr" in breach.stdout, breach.stdout
    print("a planted breach is found")
    return 0


if __name__ == "__main__":
    sys.exit(main(os.path.abspath(sys.argv[1])))
