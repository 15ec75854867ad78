#!/usr/bin/env python3
"""Every source file stands as clang-format lays it out, in the version that Debian 12 has: another one would lay out
some lines otherwise. Status 1 and clang-format's own lines where one does not; 77, not run, without that version.

  format.py ROOT
"""
import os
import shutil
import subprocess
import sys

import sources

VERSION = "14."
FILES_AT_ONCE = 100


def main(root):
    program = shutil.which("clang-format-14") or shutil.which("clang-format")
    version = subprocess.run([program, "--version"], capture_output=True, text=True).stdout if program else ""
    if f"version {VERSION}" not in version:
        print(f"not run: needs clang-format {VERSION}, found {version.strip() or 'none'}")
        return 77
    files = sources.all_files(root)
    wrong = 0
    for i in range(0, len(files), FILES_AT_ONCE):
        wrong |= subprocess.run([program, "--dry-run", "--Werror", *files[i:i + FILES_AT_ONCE]], cwd=root).returncode
    if not wrong:
        print(f"{len(files)} files are laid out")
    return 1 if wrong or not files else 0


if __name__ == "__main__":
    sys.exit(main(os.path.abspath(sys.argv[1])))
