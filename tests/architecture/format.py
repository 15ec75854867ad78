#!/usr/bin/env python3
"""Every source file stands as clang-format lays it out, in the version that Debian 12 has: another one would lay out
some lines otherwise. Status 1 and clang-format's own lines where one does not; 77, not run, without that version.

  format.py ROOT
"""
import os
import shutil
import subprocess
import sys
import tempfile

import sources

VERSION = "14."
FILES_AT_ONCE = 100


def run(program, files, folder, **options):
    """Status of clang-format: not 0 where it would lay out one of these files otherwise."""
    return subprocess.run([program, "--dry-run", "--Werror", *files], cwd=folder, **options).returncode


def self_test(program, root):
    """A planted file that stands otherwise is found, one that stands right is not."""
    with tempfile.TemporaryDirectory() as folder:
        shutil.copy(os.path.join(root, ".clang-format"), folder)
        for text, expected in (("int f() {\n    return 1;\n}\n", False), ("int f()\n{ return  1; }\n", True)):
            path = os.path.join(folder, "a.cpp")
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)
            assert (run(program, [path], folder, stderr=subprocess.DEVNULL) != 0) == expected, text


def main(root):
    program = shutil.which("clang-format-14") or shutil.which("clang-format")
    version = subprocess.run([program, "--version"], capture_output=True, text=True).stdout if program else ""
    if f"version {VERSION}" not in version:
        print(f"not run: needs clang-format {VERSION}, found {version.strip() or 'none'}")
        return 77
    self_test(program, root)
    files = sources.all_files(root)
    parts = [files[i:i + FILES_AT_ONCE] for i in range(0, len(files), FILES_AT_ONCE)]
    found = [part for part in parts if run(program, part, root) != 0]
    if not found:
        print(f"{len(files)} files are laid out")
    return 1 if found or not files else 0


if __name__ == "__main__":
    sys.exit(main(os.path.abspath(sys.argv[1])))
