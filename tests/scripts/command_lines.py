#!/usr/bin/env python3
"""Every command line of the documents works: it is run here as it stands, or with values for what it leaves open, or an
entry of ctest that is named here runs it. A line that this script does not know fails, so that nobody writes one that no
test runs.

  command_lines.py PROJECT BUILD

What builds, measures or draws for minutes is not run again: of presets, tools, benchmarks and entries of ctest it is
looked at whether they are there, with the options that the document gives. scripts_quiet runs ./run with stand-ins for what
it calls; here its options are looked at. git runs in a repository of its own in which nothing has changed since its last
commit: what it shows and merges is held by cli_commands_test.
"""
import glob
import json
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

PROJECT, BUILD = (os.path.abspath(path) for path in sys.argv[1:3])
BEGINS = re.compile(r"(?:\./(?:run|test)|qirdb|qir-editor|cmake|ctest|ninja|git|(?:tools|tests/reliability)/[\w-]+|"
                    r"bench/[\w-]+|build/\S+/bin/\S+)(?: |$)")

# What another entry of ctest reads out of the document and runs, or does as it stands there: the document, how the line
# begins, the entry.
ELSEWHERE = [
    ("docs/diff.md", "$ ", "cli_diff_test"),
    ("docs/fleet.md", "find site", "cli_commands_test"),
    ("docs/fleet.md", "split -n", "cli_commands_test"),
    ("docs/fleet.md", "for part in", "cli_commands_test"),
    ("docs/fleet.md", "qirdb audit --join", "cli_commands_test"),
    ("docs/fleet.md", "parallel ", "cli_commands_test"),
    ("docs/qirdb.md", "libreoffice ", "cli_exchange_test"),  # where there is LibreOffice
    ("docs/qirdb.md", "for file in site", "cli_exchange_test"),  # where there is PostgreSQL
    ("docs/component.md", "cmake -G Ninja -S docs/example-component", "example_component"),
    ("docs/component.md", "QIR_COMPONENT_PATH=build/example", "example_component"),
    ("README.md", "cmake --install", "installed"),
    ("README.md", "cmake -DMANIFEST", "installed"),
    ("", "qirdb install-git", "cli_commands_test"),
]
EXAMPLES = ("docs/qirdb.md", "## Examples")  # cli_commands_test runs each line of this section
NO_COMMANDS = [  # blocks of what stands in a file, is printed, or is a part of a command
    ("docs/component.md", "{ "), ("docs/qirdb.md", "{"), ("docs/qirdb.md", "# after the overhaul"),
    ("docs/qirdb.md", "set Pumps"), ("docs/qirdb.md", "add record"), ("docs/qirdb.md", "copy SPARE"),
    ("docs/diff.md", "{"), ("docs/qirdb.md", "host="), ("docs/qirdb.md", "postgresql://"), ("docs/speed.md", "build/bench/bin/NAME"),
    ("docs/qirdb.md", "qirdb: FILE: reason"),
]
NOT_RUN = [  # by no test: they need programs or machines that the tests have not
    ("docs/fleet.md", "sc.textFile"),  # but cli_commands_test runs what its pipe runs
]


def documents():
    names = ["README.md", "CONTRIBUTING.md", "samples/README.md", *glob.glob("docs/**/*.md", root_dir=PROJECT, recursive=True)]
    return sorted(names)


def lines_of(name):
    """The command lines of a document with the section that each stands in: of its blocks, and those within a sentence."""
    with open(os.path.join(PROJECT, name), encoding="utf-8") as file:
        text = file.read()
    text = re.sub(r"(?ms)^ *```\w*\n.*?^ *```$", "", text)  # bytes, and what the program prints
    section, found, blank, block, in_output, in_list = "", [], True, False, False, False
    for line in text.splitlines():
        if line.startswith("#"):
            section, in_list = line, False
        elif line and not line.startswith(" "):
            in_list = re.match(r"[-*] |\d+\. ", line) is not None
        indented = line.startswith(" " * (7 if in_list else 4))
        block = indented and (blank or block)
        if block:
            command = line.strip()
            in_output = command.startswith("$ ") or (in_output and not blank)
            if command.startswith("$ ") or not in_output:
                found.append((section, command))
        blank = not line.strip()
        in_output = in_output and not blank
    for code in re.findall(r"`([^`\n]+(?:\n[^`\n]+)?)`", re.sub(r"(?m)^    .*$", "", text)):
        code = " ".join(code.split()).replace("\\|", "|")
        if BEGINS.match(code):
            found.append(("", code))
    return found


def command_of(line):
    """Without what is told of it behind blanks or a "#", and without what may be left out."""
    return re.sub(r"\s*\[[^\]]*\]", "", re.split(r"\s{2,}|\s#\s", line)[0]).strip()


class Place:
    """A folder with the files that the documents name, and the programs where they say that they stand."""

    def __init__(self, folder):
        self.folder = folder
        for name in os.listdir(PROJECT):
            if name not in ("build", ".git"):
                os.symlink(os.path.join(PROJECT, name), os.path.join(folder, name))
        os.mkdir(os.path.join(folder, "build"))
        os.symlink(BUILD, os.path.join(folder, "build", "release"))
        self.environment = dict(os.environ, PATH=os.path.join(BUILD, "bin") + ":" + os.environ["PATH"], HOME=folder,
                                XDG_STATE_HOME=os.path.join(folder, "state"), QT_QPA_PLATFORM="offscreen")
        done = self.run("set -e; qirdb create TMP.DDB; printf 'FIELD[long],B[text:9]\\n1,x\\n2,y\\n' | qirdb import TMP.DDB TABLE -\n"
                        "for name in FILE A GOLDEN OLD.DDB GOLDEN.DDB A.DDB; do cp TMP.DDB $name; done\n"
                        "qirdb export TMP.DDB --to json A.json; qirdb export TMP.DDB --to sqlite A.sqlite\n"
                        "qirdb set TMP.DDB TABLE 1 FIELD 7; cp TMP.DDB B; cp TMP.DDB NEW.DDB; rm TMP.DDB\n"
                        "printf 'Name[text:20],Speed[long],Head[double]\nP-1,1500,2\nP-2,900,3\n' >FOLDER.csv; qirdb create PUMP.DDB\n"
                        "qirdb import PUMP.DDB Pumps FOLDER.csv; qirdb create SPARE.DDB; qirdb import SPARE.DDB Valves FOLDER.csv\n"
                        "mkdir FOLDER; mv FOLDER.csv FOLDER; cp OLD.DDB FOLDER/SAME.DDB; cp NEW.DDB FOLDER/OTHER.DDB\n"
                        "printf 'N[long]\\n1\\n' >CSV; echo 'set TABLE 2 FIELD 9' >SCRIPT; qirdb diff --patch A B >PATCH || [ $? = 1 ]")
        assert done.returncode == 0, done.stdout
        self.kept = self.state()
        done = self.run("set -e; git init -q repository; cd repository; git config user.name S; git config user.email s@example.org\n"
                        "qirdb install-git; cp ../A A.DDB; git add .; git commit -qm one; git branch other; git branch -q -u other")
        assert done.returncode == 0, done.stdout

    def state(self):
        return {name: open(os.path.join(self.folder, name), "rb").read()
                for name in ("FILE", "A", "B", "OLD.DDB", "NEW.DDB", "GOLDEN", "GOLDEN.DDB", "PUMP.DDB", "SPARE.DDB")}

    def restore(self):
        for name, content in self.kept.items():
            with open(os.path.join(self.folder, name), "wb") as file:
                file.write(content)

    def run(self, command):
        return subprocess.run(["bash", "-c", command], cwd=self.folder, env=self.environment, text=True, timeout=300,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)


class Checks:
    def __init__(self, place):
        self.place = place
        self.counts = {"run": 0, "looked at": 0, "of other tests": 0, "not run": 0}
        listed = subprocess.run(["ctest", "-N", "--test-dir", BUILD], text=True, stdout=subprocess.PIPE, check=True).stdout
        self.entries = re.findall(r"Test +#\d+: (\S+)", listed)
        with open(os.path.join(PROJECT, "CMakePresets.json"), encoding="utf-8") as file:
            self.presets = [preset["name"] for preset in json.load(file)["configurePresets"]]

    def works(self, command):
        """Ends with 0, or 1 for a negative answer, and within the options that the program knows."""
        self.place.restore()
        done = self.place.run(command)
        self.counts["run"] += 1
        return "" if done.returncode in (0, 1) else f"it ended with {done.returncode}: {done.stdout.strip()[-300:]}"

    def help_of(self, *words):
        return self.place.run(shlex.join([*words, "--help"])).stdout

    def form(self, command):
        """A line that tells a form, with alternatives, or options alone: the command and its options are known."""
        self.counts["looked at"] += 1
        words = command.replace("[", " ").replace("]", " ").replace("..", "").split()
        if len(words) == 1 or words[1] == "COMMAND":
            return ""
        known = self.help_of(*words[:2]) if words[0] == "qirdb" and not words[1].startswith("-") else self.help_of(words[0])
        unknown = [word for word in words if re.match(r"--\w", word) and word.split("|")[0] not in known]
        return f"unknown: {unknown}" if unknown or "Usage" not in known else ""

    def of_qirdb(self, command, line):
        words = self.filled(command.split())
        if len(words) == 2 and words[1] == "--help" or words[2:] == ["--help"] and words[1] != "COMMAND":
            return self.works(command)
        if words[1:2] == ["passwd"] or re.search(r"\||\.\.", command) or not self.can_run(words):
            return self.form(line)  # it asks for a password, or leaves open what is to be done
        return self.works(shlex.join(words) if words != command.split() else command)

    def filled(self, words):
        """The words of a form with files and values of the place for what it leaves open."""
        if len(words) < 3 or not words[0].endswith("qirdb"):
            return words
        made = f"MADE{self.counts['run']}"  # a name that nothing has
        values = {"LEFT": "A", "RIGHT": "B", "BASE": "OLD.DDB", "OURS": "A", "THEIRS": "NEW.DDB", "PATH": "FOLDER", "RECORD": "1",
                  "VALUE": "9", "SIZE": "9", "OUT": made, "NAME": "OTHER", "NEW": "OTHER",
                  "OLD": "TABLE" if "table" in words else "FIELD", "SOURCE": "A", "TARGET": made}
        if words[1] == "create":
            values["FILE"] = made
        elif words[1] == "copy":
            values["TARGET"] = "SPARE.DDB"
        elif words[1] == "import" and "--from" in words:
            values |= {"FILE": "SPARE.DDB", "SOURCE": "A." + words[words.index("--from") + 1]}
        elif words[1] == "import" and not {"--append", "--replace"} & set(words):
            values["TABLE"] = "OTHER"
        elif words[1] == "remove":
            values["NAME"] = "TABLE"
        elif words[1] == "resize":
            values["FIELD"] = "B"  # a text
        return [values.get(word, word) for word in words]

    def can_run(self, words):
        """Whether what it names is there, and nothing is left open any more."""
        server = "postgresql" in words  # those lines have a test of their own, where there is a server
        there = words[1:2] == ["create"] or any(os.path.exists(os.path.join(self.place.folder, word)) for word in words[1:])
        return there and not {"N", "C", "CODE", "COMMAND"} & set(words) and not server

    def of_git(self, command):
        """git ends with 1 for a command that it does not know, and with more for an option."""
        self.counts["run"] += 1
        done = self.place.run("cd repository && " + command)
        told = f"it ended with {done.returncode}: {done.stdout.strip()[-300:]}" if done.returncode != 0 else ""
        for tool in re.findall(r"^git difftool .*?-t (\S+)", command):  # which git looks up only where there is a difference
            if self.place.run(f"cd repository && git config difftool.{tool}.cmd").returncode != 0:
                told += f"install-git writes no tool {tool}"
        return told

    def of_run(self, command):
        self.counts["of other tests"] += 1
        with open(os.path.join(PROJECT, "run"), encoding="utf-8") as file:
            own = re.findall(r'"\$\{1:-\}" = (--\w+)', file.read())
        known = own + re.findall(r"--[\w-]+", self.help_of("qir-editor"))
        unknown = [word for word in command.split() if word.startswith("-") and word not in known]
        return f"it does not know {unknown}" if unknown or "scripts_quiet" not in self.entries else ""

    def of_editor(self, command):
        if "--left" in command:
            return self.works(command + " --picture shown.png")
        return self.form(command)

    def of_tool(self, command):
        self.counts["looked at"] += 1
        words = command.split()
        path = os.path.join(PROJECT, words[0])
        if not os.access(path, os.X_OK):
            return "there is no such tool"
        with open(path, encoding="utf-8") as file:
            text = file.read()
        unknown = [word for word in words[1:] if word.startswith("-") and word not in text]
        return f"it does not know {unknown}" if unknown else ""

    def of_cmake(self, command):
        self.counts["looked at"] += 1
        unknown = [name for name in re.findall(r"--preset (\S+)", command) if name not in self.presets]
        targets = re.fullmatch(r"cmake --build build/(?:release|asan)((?: --target)?(?: [\w-]+)*)", command)
        if "--preset" not in command and targets is None:
            return "no test runs it"
        if targets is not None:
            unknown += [name for name in targets.group(1).split() if name != "--target" and name not in self.entries]
        return f"unknown: {unknown}" if unknown else ""

    def of_ctest(self, command):
        self.counts["looked at"] += 1
        wanted = [name.strip("\"'") for name in re.findall(r"-R (\S+)", command)]
        found = all(any(re.search(name, entry) for entry in self.entries) for name in wanted)
        return "" if found else "there is no such entry"

    def of_benchmark(self, name):
        self.counts["looked at"] += 1
        told = "".join(open(path, encoding="utf-8").read() for path in glob.glob(os.path.join(PROJECT, "bench", "CMakeLists.txt")))
        return "" if re.search(rf"\b{name}\b", told) or os.path.exists(os.path.join(PROJECT, "bench", name)) else "there is none"

    def check(self, document, section, line):
        if any(document == name and line.startswith(begin) for name, begin in NO_COMMANDS):
            return ""
        if any(document == name and line.startswith(begin) for name, begin in NOT_RUN):
            self.counts["not run"] += 1
            return ""
        if (document, section) == EXAMPLES:
            self.counts["of other tests"] += 1
            return "" if "cli_commands_test" in self.entries else "its test has gone"
        for name, begin, entry in ELSEWHERE:
            if name in ("", document) and line.startswith(begin):
                self.counts["of other tests"] += 1
                return "" if entry in self.entries else f"there is no entry {entry}"
        command = command_of(line)
        program = command.split()[0] if command else ""
        if program.endswith("qirdb"):
            return self.of_qirdb(command, line)
        if program == "qir-editor":
            return self.of_editor(command)
        if program == "git":
            return self.of_git(command)
        if program == "./run":
            return self.of_run(command)
        if program in ("./test", "ctest"):
            return self.of_ctest(command)
        if program == "cmake":
            return self.of_cmake(command)
        if program.startswith("build/bench/bin/"):
            return self.of_benchmark(os.path.basename(program))
        if program.startswith("bench/"):
            return self.of_benchmark(os.path.basename(program))
        if program.startswith(("tools/", "tests/")):
            return self.of_tool(command)
        return "no test runs it"


def main():
    folder = tempfile.mkdtemp(prefix="qir-lines-")
    try:
        checks = Checks(Place(folder))
        wrong = [f"{document}: {line}: {told}" for document in documents() for section, line in lines_of(document)
                 if (told := checks.check(document, section, line))]
    finally:
        shutil.rmtree(folder)
    print("\n".join(wrong))
    print(", ".join(f"{count} {how}" for how, count in checks.counts.items()))
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
