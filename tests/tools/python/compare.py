#!/usr/bin/env python3
"""Random databases: what reader.py reads of them must be what the component says is in them.

  compare.py --qirdb PROGRAM --page docs/file-format.md [--databases N] [--protected N] [--seed N]
"""
import argparse
import csv
import json
import os
import random
import re
import struct
import subprocess
import sys
import tempfile
import unicodedata

sys.dont_write_bytecode = True  # nothing is left in the folder of the sources
import reader  # noqa: E402

READER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "reader.py")
LETTERS = "abcXYZ 0123,;\"'|\\/?!.-_\u00e4\u00df\u00e9\u0416\u4e2d\u20ac\U0001F600"
TYPES = ["bool", "byte", "int", "long", "double", "date", "text"]
RANGES = {"bool": (0, 1), "byte": (0, 255), "int": (-2**15, 2**15 - 1), "long": (-2**31, 2**31 - 1)}
PASSWORD = "r\u00e9sum\u00e9 7"


def run(*arguments, status=0, data=None):
    result = subprocess.run(arguments, input=data, capture_output=True)
    if result.returncode != status:
        sys.exit(f"{arguments} ended with {result.returncode}: {result.stderr.decode()}")
    return result.stdout.decode()


def parsed(lines):
    """JSON lines; every number as the bits of its double, so that -0 and 0 are two."""
    def bits(text):
        return struct.pack("<d", float(text)).hex()
    return [json.loads(line, parse_int=bits, parse_float=bits) for line in lines.splitlines()]


def random_name(chance, taken):
    while True:
        name = "".join(chance.choice(LETTERS) for _ in range(chance.randint(1, 20))).strip()
        key = name.replace(" ", "").replace("?", "").replace("!", "").upper()  # further apart than they need to be
        if key and key not in taken and not name.startswith("-"):
            taken.add(key)
            return name


def random_double(chance):
    while True:
        number = chance.choice([chance.uniform(-1e6, 1e6), float(chance.randint(-10**6, 10**6)), -0.0,
                                struct.unpack("<d", chance.randbytes(8))[0]])
        if abs(number) < float("inf"):
            return number


def random_value(chance, kind, size):
    if kind == "text":
        return "".join(chance.choice(LETTERS + "\n\t") for _ in range(min(size, chance.randint(0, 30))))
    if kind == "double":
        return repr(random_double(chance))
    if kind == "date":
        return chance.choice(["2024-02-29", "2025-12-31T23:59:59", "20240229.0101", "20240101", "0", "2024"])
    return str(chance.choice([*RANGES[kind], chance.randint(*RANGES[kind])]))


def random_csv(chance, path):
    fields, names = [], set()
    for _ in range(chance.randint(1, 8)):
        fields.append((random_name(chance, names), chance.choice(TYPES), chance.choice([0, 1, 20, 65535])))
    records = chance.choice([0, 1, 2, 30, 30, 3000])
    with open(path, "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file, quoting=csv.QUOTE_ALL, lineterminator="\n")
        writer.writerow(f"{name}[text:{size}]" if kind == "text" else f"{name}[{kind}]" for name, kind, size in fields)
        for _ in range(records):
            writer.writerow(random_value(chance, kind, size) for _, kind, size in fields)
    return records * len(fields)


def check_random(chance, folder, qirdb, protected):
    """Makes a database and compares; gives its file and how many cells it has."""
    path, table, secret = (os.path.join(folder, name) for name in ("RANDOM.DDB", "table.csv", "secret"))
    if os.path.exists(path):
        os.remove(path)
    run(qirdb, "create", path)
    cells, names = 0, set()
    for _ in range(chance.randint(0, 4)):
        cells += random_csv(chance, table)
        run(qirdb, "import", path, random_name(chance, names), table)
    password = []
    if protected:
        with open(secret, "w", encoding="utf-8") as file:
            file.write(PASSWORD)
        run(qirdb, "passwd", path, "--new-password-file", secret)
        password = ["--password-file", secret]
    said = parsed(run(qirdb, "dump", "--format", "json", path, *password))
    read = parsed(run(sys.executable, READER, path, *([PASSWORD] if protected else [])))
    if said != read:
        different = next((pair for pair in zip(said, read) if pair[0] != pair[1]), "the number of lines")
        sys.exit(f"the reader differs: {different}")
    return path, cells


def check_damage(chance, path, qirdb, rounds):
    """A changed byte, a cut and an added byte: refused by both."""
    with open(path, "rb") as file:
        whole = file.read()
    for _ in range(rounds):
        at = chance.choice([i for i in range(len(whole)) if i != 13])  # as protected it would ask for a password
        changed = whole[:at] + bytes([whole[at] ^ chance.randint(1, 255)]) + whole[at + 1:]
        for damaged in (changed, whole[:at], whole + b"\0"):
            with open(path, "wb") as file:
                file.write(damaged)
            run(sys.executable, READER, path, status=1)
            run(qirdb, "verify", path, status=1)


def check_page(page, folder):
    """The two examples of the page hold what the page says."""
    with open(page, encoding="utf-8") as file:
        blocks = re.findall(r"```hex\n(.*?)```", file.read(), re.S)
    heading = {"table": "Pump", "fields": [{"name": "On", "type": "bool", "size": 0},
                                           {"name": "Speed", "type": "long", "size": 0},
                                           {"name": "Name", "type": "text", "size": 20}], "records": 2}
    content = [heading, [1, 1450, "Main"], [0, -2, "Zulauf \u00b0C"]]
    path = os.path.join(folder, "EXAMPLE.DDB")
    for block, password in zip(blocks, ([], ["p\u00f3mp-7"]), strict=True):
        with open(path, "wb") as file:
            for line in block.splitlines():
                file.write(bytes.fromhex(re.match(r"[0-9a-f]{3}  ((?:[0-9a-f]{2} ?)+)", line)[1]))
        read = [json.loads(line) for line in run(sys.executable, READER, path, *password).splitlines()]
        if read != content:
            sys.exit(f"the page's example holds {read}")


def check_keys(page):
    """The reader's keys of names are those of the page, by the page's version of Unicode."""
    with open(page, encoding="utf-8") as file:
        text = file.read()
    version = re.search(r"by Unicode (\d+\.\d+)", text)[1]
    if not unicodedata.unidata_version.startswith(version + "."):
        print(f"keys are compared by Unicode {unicodedata.unidata_version}, the page says {version}")
    lines = re.search(r"```keys\n(.*?)```", text, re.S)[1].splitlines()
    for name, key in map(json.loads, lines):
        if reader.key_of(name) != key:
            sys.exit(f"the page's key of {name!a} is {key!a}, the reader's {reader.key_of(name)!a}")
    print(f"{len(lines)} keys of names are those of the page")


if __name__ == "__main__":
    options = argparse.ArgumentParser()
    options.add_argument("--qirdb", required=True)
    options.add_argument("--page", required=True)
    options.add_argument("--databases", type=int, default=12)
    options.add_argument("--protected", type=int, default=2)
    options.add_argument("--damages", type=int, default=4)
    options.add_argument("--seed", type=int, default=random.randrange(2**32))
    given = options.parse_args()
    print(f"seed {given.seed}")
    source, total = random.Random(given.seed), 0
    with tempfile.TemporaryDirectory() as place:
        check_page(given.page, place)
        check_keys(given.page)
        for number in range(given.databases):
            made, size = check_random(source, place, given.qirdb, number < given.protected)
            total += size
            print(f"database {number + 1}: {size} cells{', protected' if number < given.protected else ''}")
        check_damage(source, made, given.qirdb, given.damages)
    print(f"{given.databases} databases ({given.protected} protected), {total} cells: all read the same")
