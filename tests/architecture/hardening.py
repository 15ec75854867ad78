#!/usr/bin/env python3
"""The built programs and the component's library have what the build hardens them with.

  hardening.py FOLDER              reads bin/ of a release build, and its compile commands for what no program shows:
                                   how far copies are checked; exit status 77 where there is none
  hardening.py --sees-all CXX      builds a small program without each of it in turn: the lack must be seen
"""
import json
import os
import re
import shlex
import subprocess
import sys
import tempfile

FLAGS = {
    "no position independent program": (["-fPIE", "-pie"], ["-fno-pie", "-no-pie"]),
    "no read-only table of addresses": (["-Wl,-z,relro"], ["-Wl,-z,norelro"]),
    "addresses are looked up late": (["-Wl,-z,now"], ["-Wl,-z,lazy"]),
    "the stack may be run": (["-Wl,-z,noexecstack"], ["-Wl,-z,execstack"]),
    "no guards on the stack": (["-fstack-protector-strong"], ["-fno-stack-protector"]),
    "no checked copies": (["-U_FORTIFY_SOURCE", "-D_FORTIFY_SOURCE=3"], ["-U_FORTIFY_SOURCE"]),
}
# As far as the compiler can: with less, copies into room that is not known before the program runs go unchecked.
FORTIFIED = "3"
WEAKER = ([], ["-D_FORTIFY_SOURCE=1"], ["-D_FORTIFY_SOURCE=2"], ["-D_FORTIFY_SOURCE=3", "-U_FORTIFY_SOURCE"],
          ["-D_FORTIFY_SOURCE=3", "-D_FORTIFY_SOURCE=2"], ["-D", "_FORTIFY_SOURCE=2"])
PROGRAM = """
#include <cstdio>
#include <cstring>
int main(int count, char **arguments) {
    char text[64];
    std::strcpy(text, arguments[count - 1]);
    return std::printf("%s", text);
}
"""


def readelf(path):
    command = ["readelf", "--wide", "--file-header", "--program-headers", "--dynamic", "--dyn-syms", path]
    return subprocess.run(command, capture_output=True, text=True, check=True, env={**os.environ, "LC_ALL": "C"}).stdout


def lacks(path, program):
    """What a file lacks, in the words of FLAGS."""
    told = readelf(path)
    imported = set(re.findall(r" UND (\w+)", told))
    stack = re.search(r"^ *GNU_STACK .*$", told, re.M)
    flags = " ".join(re.findall(r"\(FLAGS(?:_1)?\)(.*)", told))
    found = {
        "no position independent program": re.search(r"Type: +DYN", told) and (not program or "PIE" in flags.split()),
        "no read-only table of addresses": re.search(r"^ *GNU_RELRO ", told, re.M),
        "addresses are looked up late": "BIND_NOW" in flags or "NOW" in flags.split(),
        "the stack may be run": stack and "RWE" not in stack[0],
        "no guards on the stack": "__stack_chk_fail" in imported,
        "no checked copies": any(name.endswith("_chk") for name in imported),
    }
    return [words for words, there in found.items() if not there]


def built_files(folder):
    """Programs, then libraries; a release build has all of them."""
    programs = [os.path.join(folder, "bin", name) for name in ("qir-editor", "qirdb")]
    components = os.path.join(folder, "bin", "components")
    libraries = [os.path.join(components, name) for name in sorted(os.listdir(components)) if name.endswith(".so")]
    return [(path, True) for path in programs] + [(path, False) for path in libraries]


def fortified(words):
    """The level of checks that a compile command asks for, "" for none; of several flags the last one counts."""
    level = ""
    joined = re.sub(r"(^|\n)(-[DU])\n", r"\1\2", "\n".join(words))
    for sign, value in re.findall(r"^-([DU])_FORTIFY_SOURCE(?:=(.*))?$", joined, re.M):
        level = (value or "1") if sign == "D" else ""
    return level


def weakly_fortified(folder):
    """The sources that are compiled with less, and how many there are."""
    with open(os.path.join(folder, "compile_commands.json"), encoding="utf-8") as file:
        entries = json.load(file)
    return [entry["file"] for entry in entries if fortified(shlex.split(entry["command"])) != FORTIFIED], len(entries)


def check(folder):
    if not os.path.isfile(os.path.join(folder, "bin", "qirdb")):
        print(f"not run: there is no release build in {folder}")
        return 77
    wrong = 0
    files = built_files(folder)
    for path, program in files:
        for words in lacks(path, program):
            print(f"{path}: {words}")
            wrong += 1
    weak, sources = weakly_fortified(folder)
    for source in weak:
        print(f"{source}: copies are checked less than they can be")
    print(f"{len(files)} files and the commands of {sources} sources read")
    return 1 if wrong or weak or len(files) < 3 or sources == 0 else 0


def sees_all(compiler):
    wrong = 0
    with tempfile.TemporaryDirectory() as place:
        source, built = os.path.join(place, "small.cpp"), os.path.join(place, "small")
        with open(source, "w", encoding="utf-8") as file:
            file.write(PROGRAM)
        for left_out in [None, *FLAGS]:
            flags = [flag for words, (given, other) in FLAGS.items() for flag in (other if words == left_out else given)]
            subprocess.run([compiler, "-O2", "-w", source, "-o", built, *flags], check=True)
            seen, expected = lacks(built, True), [left_out] if left_out else []
            if seen != expected:
                print(f"without {left_out}: seen {seen}")
                wrong += 1
        for flags in [FLAGS["no checked copies"][0], *WEAKER]:
            with open(os.path.join(place, "compile_commands.json"), "w", encoding="utf-8") as file:
                json.dump([{"file": source, "command": shlex.join([compiler, *flags, source])}], file)
            weak, _ = weakly_fortified(place)
            if weak != ([source] if flags in WEAKER else []):
                print(f"with {flags}: seen {weak}")
                wrong += 1
    print(f"{len(FLAGS) + len(WEAKER)} lacks looked for")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(sees_all(sys.argv[2]) if sys.argv[1] == "--sees-all" else check(sys.argv[1]))
