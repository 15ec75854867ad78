#!/usr/bin/env python3
"""System calls that fail, and kills in the middle of them, under the program as people run it.

    system_calls.py --programs FOLDER --place ext4|tmpfs|overlayfs|fuse [--cases N] [--seed N] [--build FOLDER] [--keep]

Each case runs one command of qirdb on a small database under strace, which lets one system call fail (once, or from then
on), or kills the program as it enters the call. Afterwards the file must be the old or the new version, whole; a command
that said that it was done must have done it; one that failed must have said why, and the old version must stand there even
after the next reader, unless it said that the file was written all the same. FOLDER holds qirdb and its component, built
without sanitizers; --build brings it up to date first. Exit status 77: not run, with the reason.

As root it mounts what overlayfs and fuse need and goes on as an ordinary user; other users have ext4 and tmpfs only.
"""
import argparse
import collections
import contextlib
import fcntl
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile

NOT_RUN = 77
NOBODY = 65534
FAILED = 2  # qirdb's status for trouble
LONGEST = 60  # seconds for one command

# All that loading, saving and exporting ask of the system.
CALLS = ["openat", "close", "read", "pread64", "write", "pwrite64", "fsync", "fdatasync", "ftruncate", "fallocate",
         "fchmod", "fchown", "linkat", "renameat", "renameat2", "unlinkat", "mkdirat", "flock", "fstat", "newfstatat",
         "statx", "getdents64", "readlinkat", "readlink", "flistxattr", "fgetxattr", "fsetxattr"]
ERRORS = ["EIO", "ENOSPC", "EDQUOT", "EACCES", "EPERM", "EROFS", "EINTR", "ENOMEM"]


class NotRun(Exception):
    """Why there is nothing to look at on this machine."""


class Wrong(Exception):
    """A promise that did not hold."""


class Programs:
    """qirdb, run with a state folder of its own."""
    def __init__(self, folder):
        self.qirdb = os.path.join(folder, "qirdb")

    def environment(self, state):
        environment = {name: value for name, value in os.environ.items() if not name.startswith("QIR_")}
        return dict(environment, XDG_STATE_HOME=state, LC_ALL="C.UTF-8", LD_BIND_NOW="1")

    def run(self, state, *arguments, under=()):
        return subprocess.run([*under, self.qirdb, *arguments], env=self.environment(state), stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=LONGEST, check=False)

    def done(self, state, *arguments):
        result = self.run(state, *arguments)
        if result.returncode != 0:
            raise Wrong(f"qirdb {' '.join(arguments)}: {result.stderr.decode(errors='replace')}")
        return result.stdout


class Kind:
    """One thing that people do with a file. What stands in `folder` is made by prepare(), as the ordinary user."""
    def __init__(self, name, weight, arguments, *, target="PUMP.DDB", prepare=None, password=None, reads=False):
        self.name = name
        self.weight = weight
        self.arguments = arguments
        self.target = target
        self.further = prepare
        self.password = password  # the file that holds it, for the new version
        self.reads = reads

    def prepare(self, folder, base):
        os.makedirs(folder)
        for name in ("PUMP.DDB", "more.csv", "secret"):
            shutil.copy(os.path.join(base, name), folder)
        if self.further:
            self.further(folder)

    def command(self, folder):
        return [argument.replace("@", folder + "/") for argument in self.arguments]

    def content(self, programs, folder, state):
        """What stands in the target for whoever opens it next; None where there is none."""
        path = os.path.join(folder, self.target)
        if not os.path.exists(path):
            return None
        if self.target.endswith(".csv"):
            with open(path, "rb") as file:
                return file.read()
        for opened_by in ("anybody", self.password):
            further = [] if opened_by == "anybody" else ["--password-file", os.path.join(folder, opened_by)]
            result = programs.run(state, "dump", "--format", "json", *further, path)
            if result.returncode == 0 or not self.password:
                break
        if result.returncode != 0:
            raise Wrong("the next reader refuses the file: " + result.stderr.decode(errors="replace"))
        return opened_by, result.stdout


def linked(folder):
    os.mkdir(os.path.join(folder, "elsewhere"))
    os.rename(os.path.join(folder, "PUMP.DDB"), os.path.join(folder, "elsewhere", "PUMP.DDB"))
    os.symlink("elsewhere/PUMP.DDB", os.path.join(folder, "PUMP.DDB"))


def twice(folder):
    os.link(os.path.join(folder, "PUMP.DDB"), os.path.join(folder, "TWIN.DDB"))


def closed(folder):
    os.mkdir(os.path.join(folder, "closed"))
    os.rename(os.path.join(folder, "PUMP.DDB"), os.path.join(folder, "closed", "PUMP.DDB"))
    os.chmod(os.path.join(folder, "closed"), 0o555)


def exported(folder):
    with open(os.path.join(folder, "OUT.csv"), "w", encoding="utf-8") as file:
        file.write("what stood there\n" * 100)


IMPORT = ["import", "@PUMP.DDB", "More", "@more.csv"]
KINDS = [
    Kind("replaced", 6, IMPORT),
    Kind("through a link", 2, IMPORT, prepare=linked),
    Kind("in place, hard-linked", 4, IMPORT, prepare=twice),
    Kind("in place, folder takes no file", 2, ["import", "@closed/PUMP.DDB", "More", "@more.csv"],
         target="closed/PUMP.DDB", prepare=closed),
    Kind("new", 3, ["create", "@NEW.DDB"], target="NEW.DDB"),
    Kind("protected", 1, ["passwd", "--new-password-file", "@secret", "@PUMP.DDB"], password="secret"),
    Kind("exported", 3, ["export", "@PUMP.DDB", "Pumps", "@OUT.csv"], target="OUT.csv", prepare=exported),
    Kind("read", 3, ["dump", "--format", "json", "@PUMP.DDB"], reads=True),
]


class Case:
    def __init__(self, kind, call, number, action, forever):
        self.kind = kind
        self.call = call
        self.number = number
        self.action = action
        self.forever = forever

    @property
    def kills(self):
        return self.action == "signal=KILL"

    @property
    def silences(self):
        """Whether nothing can be said any more."""
        return self.call == "write" and self.forever

    def inject(self):
        # Nobody is interrupted for ever, and the libraries try again until they are not.
        last = (f"..{self.number + 99}" if self.action == "error=EINTR" else "+") if self.forever else ""
        return f"inject={self.call}:{self.action}:when={self.number}{last}"

    def __str__(self):
        return f"{self.kind.name}: {self.inject()}"


def strace(log, *options):
    return ["strace", "-f", "--seccomp-bpf", "-qq", "-o", log, *options]


class Trial:
    """The cases of one place."""
    def __init__(self, programs, folder, base):
        self.programs = programs
        self.folder = folder
        self.base = base
        self.before = {}
        self.after = {}
        self.printed = {}

    def learn(self, kind, number):
        """Runs a kind undisturbed; gives the cases that can be made of it."""
        folder = os.path.join(self.folder, f"undisturbed-{number}")
        state = folder + ".state"
        self.before[kind] = kind.content(self.programs, folder, state)
        log = folder + ".log"
        result = self.programs.run(state, *kind.command(folder), under=strace(log, "-e", "trace=" + ",".join(CALLS)))
        if result.returncode != 0:
            raise Wrong(f"{kind.name}, undisturbed: {result.stderr.decode(errors='replace')}")
        self.printed[kind] = result.stdout
        self.after[kind] = kind.content(self.programs, folder, state)
        if (self.before[kind] == self.after[kind]) != kind.reads:
            raise Wrong(f"{kind.name}, undisturbed: it changes the file, or does not")
        counts = collections.Counter()
        cases = []
        with open(log, encoding="utf-8", errors="replace") as file:
            for line in file:
                match = re.match(r"\d+\s+(\w+)\(", line)
                if not match:
                    continue
                call = match.group(1)
                counts[call] += 1
                if folder not in line and not cases:
                    continue  # the program is still being loaded
                cases += [Case(kind, call, counts[call], "error=" + error, forever)
                          for error in ERRORS for forever in (False, True)]
                cases.append(Case(kind, call, counts[call], "signal=KILL", False))
        return cases

    def check(self, case, folder):
        """Runs one case; False where the call was not met."""
        state = folder + ".state"
        log = folder + ".log"
        kind = case.kind
        try:
            result = self.programs.run(state, *kind.command(folder),
                                       under=strace(log, "-e", "trace=" + case.call, "-e", case.inject()))
        except subprocess.TimeoutExpired as error:
            raise Wrong("it does not end") from error
        if case.kills:
            if result.returncode != -signal.SIGKILL:
                return False
            self.check_killed(kind, folder, state)
            return True
        with open(log, encoding="utf-8", errors="replace") as file:
            if "(INJECTED)" not in file.read():
                return False
        self.check_ended(case, folder, state, result)
        return True

    def check_killed(self, kind, folder, state):
        found = kind.content(self.programs, folder, state)
        if found not in (self.before[kind], self.after[kind]):
            raise Wrong("neither the old nor the new version")

    def check_ended(self, case, folder, state, result):
        kind = case.kind
        said = result.stderr.decode(errors="replace")
        if result.returncode not in (0, FAILED):
            raise Wrong(f"status {result.returncode}: {said}")
        found = kind.content(self.programs, folder, state)
        if result.returncode == 0:
            if found != self.after[kind]:
                raise Wrong(f"it said that it was done, and it is not: {said}")
            if kind.reads and result.stdout != self.printed[kind]:
                raise Wrong("what it printed is not what stands in the file")
            return
        tells = re.search(r"^qirdb: .*(\.DDB|\.csv|secret|standard output|component)", said, re.MULTILINE)
        if not tells and not case.silences:
            raise Wrong(f"it does not tell what failed: '{said}'")
        if found == self.before[kind]:
            return
        # An export has no words for that: what stands there must be whole.
        written_all_the_same = re.search("was saved, but|it is incomplete now", said) or kind.target.endswith(".csv")
        if found != self.after[kind] or not written_all_the_same:
            raise Wrong(f"it said that it failed, and the next reader finds another version: {said}")


def make_base(programs, folder, count):
    """What the cases start from, made as the ordinary user."""
    os.makedirs(folder)
    base = os.path.join(folder, "base")
    os.mkdir(base)
    state = os.path.join(folder, "base.state")
    pumps = os.path.join(base, "pumps.csv")
    with open(pumps, "w", encoding="utf-8") as file:
        file.write("Name[text:20],Speed[long],Head[double]\n")
        file.writelines(f"P-{number},{number * 7},{number / 8}\n" for number in range(200))
    with open(os.path.join(base, "more.csv"), "w", encoding="utf-8") as file:
        file.write("Name[text:20]\n")
        file.writelines(f"another {number}\n" for number in range(5000))
    with open(os.path.join(base, "secret"), "w", encoding="utf-8") as file:
        file.write("a password\n")
    programs.done(state, "create", os.path.join(base, "PUMP.DDB"))
    programs.done(state, "import", os.path.join(base, "PUMP.DDB"), "Pumps", pumps)
    for number, kind in enumerate(KINDS):
        kind.prepare(os.path.join(folder, f"undisturbed-{number}"), base)
    for number, kind in enumerate(kinds_of(folders_for(count))):
        kind.prepare(os.path.join(folder, f"case-{number}"), base)


def folders_for(count):
    """Some more: a call that was made once need not be met again."""
    return count + count // 10 + 5


def kinds_of(count):
    """Which kind each case is of, by their weights."""
    round_of_all = [kind for kind in KINDS for _ in range(kind.weight)]
    random.Random(1).shuffle(round_of_all)
    return [round_of_all[number % len(round_of_all)] for number in range(count)]


def run_cases(programs, folder, count, seed):
    trial = Trial(programs, folder, os.path.join(folder, "base"))
    chance = random.Random(seed)
    waiting = {}
    for number, kind in enumerate(KINDS):
        cases = trial.learn(kind, number)
        chance.shuffle(cases)
        waiting[kind] = cases
    met = collections.Counter()
    wrong = []
    missed = 0
    for number, kind in enumerate(kinds_of(folders_for(count))):
        if sum(met.values()) == count:
            break
        if not waiting[kind]:
            continue
        case = waiting[kind].pop()
        try:
            if trial.check(case, os.path.join(folder, f"case-{number}")):
                met[kind.name] += 1
            else:
                missed += 1
        except Wrong as problem:
            met[kind.name] += 1
            wrong.append(f"{case} (case {number}): {problem}")
            print("WRONG", wrong[-1], flush=True)
    kinds = ", ".join(f"{name} {met[name]}" for name in met)
    print(f"{sum(met.values())} cases ({kinds}), {len(wrong) or 'none'} wrong; {missed} calls not met again")
    return 1 if wrong or not met else 0


# ------------------------------------------------------------------------------------------------------------- places

def file_system_of(folder):
    return subprocess.run(["stat", "--file-system", "--format=%T", folder], stdout=subprocess.PIPE, text=True,
                          check=True).stdout.strip()


@contextlib.contextmanager
def mounted(what, *command, at):
    if os.geteuid() != 0:
        raise NotRun(f"only root can mount {what}")
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if done.returncode != 0:
        raise NotRun(f"{what} cannot be mounted: {done.stdout.strip()}")
    try:
        yield
    finally:
        subprocess.run(["umount", at], check=True)


def own(folder):
    if os.geteuid() == 0:
        os.chown(folder, NOBODY, NOBODY)


@contextlib.contextmanager
def place(name, keep):
    """Gives (the folder in which to prepare, a function that makes it ready, the folder in which to run)."""
    top = "/dev/shm" if name in ("tmpfs", "overlayfs") else tempfile.gettempdir()
    if not os.path.isdir(top):
        raise NotRun(f"there is no {top}")
    wanted = {"ext4": "ext2/ext3", "tmpfs": "tmpfs"}.get(name)
    if wanted and file_system_of(top) != wanted:
        raise NotRun(f"{top} is not on {name}")
    folder = tempfile.mkdtemp(prefix="qir-calls-", dir=top)
    os.chmod(folder, 0o755)
    try:
        inner = {part: os.path.join(folder, part) for part in ("programs", "lower", "upper", "work", "run")}
        for part in inner.values():
            os.mkdir(part)
            own(part)
        yield inner
    finally:
        if keep:
            print("kept:", folder)
        else:
            subprocess.run(["chmod", "-R", "u+rwX", folder], check=False)
            shutil.rmtree(folder)


def layers(name, inner):
    """What to mount at the folder in which to run."""
    if name == "overlayfs":
        options = f"lowerdir={inner['lower']},upperdir={inner['upper']},workdir={inner['work']}"
        return mounted(name, "mount", "-t", "overlay", "overlay", "-o", options, inner["run"], at=inner["run"])
    if name == "fuse":
        if not os.path.exists("/dev/fuse") or shutil.which("bindfs") is None:
            raise NotRun("there is no /dev/fuse, or no bindfs")
        return mounted(name, "bindfs", "-o", "allow_other", inner["lower"], inner["run"], at=inner["run"])
    return contextlib.nullcontext()


# --------------------------------------------------------------------------------------------------------------- start

def bring_up_to_date(build):
    if not os.path.exists(os.path.join(build, "build.ninja")):
        raise NotRun("there is no build without sanitizers; make one by: cmake --preset release")
    with open(os.path.join(build, ".tests-lock"), "w", encoding="utf-8") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)  # several tests may want that at once
        subprocess.run(["cmake", "--build", build, "--target", "qirdb", "QIRTBase"], check=True,
                       stdout=subprocess.DEVNULL)


def can_trace():
    if shutil.which("strace") is None:
        raise NotRun("there is no strace")
    done = subprocess.run(["strace", "-f", "--seccomp-bpf", "-qq", "-o", "/dev/null", "-e", "trace=close", "true"],
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if done.returncode != 0:
        raise NotRun("nothing can be traced here: " + done.stdout.strip())


def become_ordinary():
    if os.geteuid() == 0:
        os.setgroups([])
        os.setresgid(NOBODY, NOBODY, NOBODY)
        os.setresuid(NOBODY, NOBODY, NOBODY)


def as_ordinary_user(work):
    """Runs a function in a process of its own that is no root; gives its status."""
    sys.stdout.flush()
    child = os.fork()
    if child == 0:
        status = 1
        try:
            become_ordinary()
            status = work()
        except Wrong as problem:
            print("WRONG", problem)
        except subprocess.SubprocessError as problem:
            print("FAILED", problem)
        finally:
            sys.stdout.flush()
            os._exit(status)
    return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])


def copy_programs(source, folder):
    """Where the ordinary user may run them, wherever they were built."""
    shutil.copy(os.path.join(source, "qirdb"), folder)
    shutil.copytree(os.path.join(source, "components"), os.path.join(folder, "components"))


def run(arguments):
    can_trace()
    if arguments.build:
        bring_up_to_date(arguments.build)
    with place(arguments.place, arguments.keep) as inner:
        copy_programs(arguments.programs, inner["programs"])
        programs = Programs(inner["programs"])
        layered = arguments.place in ("overlayfs", "fuse")
        layers_of_it = layers(arguments.place, inner)
        made = as_ordinary_user(lambda: make_base(programs, os.path.join(inner["lower" if layered else "run"], "cases"),
                                                  arguments.cases) or 0)
        if made != 0:
            return 1
        with layers_of_it:
            print(f"on {arguments.place}, seed {arguments.seed}, as user {NOBODY if os.geteuid() == 0 else os.geteuid()}")
            return as_ordinary_user(lambda: run_cases(programs, os.path.join(inner["run"], "cases"), arguments.cases,
                                                      arguments.seed))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--programs", required=True)
    parser.add_argument("--place", required=True, choices=["ext4", "tmpfs", "overlayfs", "fuse"])
    parser.add_argument("--cases", type=int, default=25)
    parser.add_argument("--seed", type=int, default=20240609)
    parser.add_argument("--build")
    parser.add_argument("--keep", action="store_true", help="leave the folders of the cases")
    arguments = parser.parse_args()
    try:
        return run(arguments)
    except NotRun as reason:
        print("not run:", reason)
        return NOT_RUN


sys.exit(main())
