#!/usr/bin/env python3
"""A second reader of database files, written from docs/file-format.md alone.

  reader.py FILE [PASSWORD]    prints the tables as JSON lines; exit status 1 and the reason when the file is refused
"""
import hashlib
import json
import math
import os
import struct
import sys
import unicodedata

import xxhash
from nacl import bindings as sodium

TYPES = {1: "bool", 2: "byte", 3: "int", 4: "long", 7: "double", 8: "date", 10: "text"}
COLUMNS = {1: "B", 2: "B", 3: "h", 4: "i", 7: "d", 8: "d"}
KIB = 1024
BLANKS = "".join(map(chr, [*range(0x09, 0x0E), 0x20, 0x85, 0xA0, 0x1680, *range(0x2000, 0x200B), 0x2028, 0x2029, 0x202F,
                           0x205F, 0x3000]))


class Refused(Exception):
    """The file is none of ours, damaged, newer, or the password is wrong."""


def require(condition, reason):
    if not condition:
        raise Refused(reason)


class Bytes:
    """Bytes taken from the front; nothing is taken that is not there."""

    def __init__(self, data):
        self.data, self.at = data, 0

    def take(self, size):
        require(size <= len(self.data) - self.at, "a length passes the bytes that are there")
        self.at += size
        return self.data[self.at - size:self.at]

    def numbers(self, layout):
        return struct.unpack("<" + layout, self.take(struct.calcsize("<" + layout)))

    def at_end(self):
        return self.at == len(self.data)


class Header:
    def __init__(self, data):
        """`data` is the file's first bytes: the ten digits and the header."""
        self.bytes = data
        head = data[10:]
        require(head[:3] == b"QIR", "no QIR")
        self.digest = head[-32:]
        require(hashlib.blake2b(data[:-32], digest_size=32).digest() == self.digest, "the header is damaged")
        self.protected = head[3:4] == b"1"
        (self.major, _, required, _, reserved, chunk, derivation, cipher, digest, self.length, file_id, save_id, _,
         reserved2, self.passes, self.memory, lanes, reserved3, self.salt,
         reserved4) = struct.unpack("<HHIIIBBBBQ16s16sQQIIII16s16s", head[4:128])
        require(self.major == 1, "another major version")
        require(required == 0, "it needs what this reader does not know")
        require(reserved == reserved2 == reserved3 == 0 and not any(reserved4), "reserved bytes are used")
        require(12 <= chunk <= 20 and digest == 1, "unknown chunks")
        self.chunk, self.count = 1 << chunk, max(1, -(-self.length >> chunk))
        require(any(file_id) and any(save_id), "an id is missing")
        self.mac = head[-64:-32]
        if self.protected:
            require(derivation == cipher == lanes == 1, "unknown methods")
        else:
            require(not (derivation or cipher or lanes or self.passes or self.memory or any(self.salt)
                         or any(self.mac)), "an open file with a key derivation")
        extensions = Bytes(head[128:-64])
        while not extensions.at_end():
            kind, size = extensions.numbers("HH")
            extensions.take(size)
            require(kind < 0x8000, "an unknown extension")

    def chunks(self):
        """The plain size of each chunk."""
        return (min(self.chunk, self.length - i * self.chunk) for i in range(self.count))

    def file_size(self):
        return len(self.bytes) + self.length + (24 + self.count * 17 if self.protected else self.count * 16)


def keyed(key, data, **parameters):
    return hashlib.blake2b(data, digest_size=32, key=key, **parameters).digest()


def body_key(header, password):
    require(1 <= header.passes <= 64 and 8 * KIB <= header.memory <= KIB * KIB
            and header.passes * header.memory <= 16384 * KIB, "absurd costs of the key derivation")
    master = sodium.crypto_pwhash_alg(32, unicodedata.normalize("NFC", password).encode(), header.salt, header.passes,
                                      header.memory * KIB, sodium.crypto_pwhash_ALG_ARGON2ID13)
    head_key = keyed(master, b"", salt=struct.pack("<QQ", 1, 0), person=b"QIR head")
    require(keyed(head_key, header.bytes[:-64]) == header.mac, "the password is wrong")
    return keyed(master, header.digest)


def open_chunks(header, data):
    seed = struct.unpack("<Q", header.digest[:8])[0]
    for i, size in enumerate(header.chunks()):
        plain, tag = data.take(size), data.take(16)
        expected = xxhash.xxh3_128_intdigest(plain, (seed + i) % 2**64)
        require(expected == int.from_bytes(tag, "little"), f"chunk {i} is damaged")
        yield plain


def sealed_chunks(header, data, password):
    key = body_key(header, password)
    state = sodium.crypto_secretstream_xchacha20poly1305_state()
    sodium.crypto_secretstream_xchacha20poly1305_init_pull(state, data.take(24), key)
    for i, size in enumerate(header.chunks()):
        try:
            plain, tag = sodium.crypto_secretstream_xchacha20poly1305_pull(state, data.take(size + 17), None)
        except Exception as error:
            raise Refused(f"chunk {i} is damaged") from error
        require(tag == (3 if i + 1 == header.count else 0), f"chunk {i} stands in the wrong place")
        yield plain


def body_of(name, password):
    require(os.path.isfile(name), "no regular file")
    with open(name, "rb") as file:
        digits = file.read(10)
        require(len(digits) == 10 and all(0x30 <= d <= 0x39 for d in digits), "no ten digits")
        require(192 <= int(digits) <= 4096, "no length of a header")
        head = file.read(int(digits))
        require(len(head) == int(digits), "truncated")
        header = Header(digits + head)
        require(header.file_size() == os.path.getsize(name), "truncated, or with bytes that do not belong there")
        data = Bytes(file.read())
    chunks = sealed_chunks(header, data, password) if header.protected else open_chunks(header, data)
    return b"".join(chunks)


def key_of(name):
    """What names are told apart by."""
    kept = ""
    for character in name.strip(BLANKS):
        if character in "?!" and kept.endswith(" "):
            kept = kept[:-1]
        else:
            kept += character
    return kept.strip(BLANKS).upper()


def take_name(data, taken):
    name = data.take(*data.numbers("H")).decode()
    require(1 <= len(name) <= 255 and key_of(name) and key_of(name) not in taken, "a name is empty, too long or taken")
    taken.add(key_of(name))
    return name


def take_column(data, kind, size, records):
    if kind == 10:
        texts = [data.take(length).decode() for length in data.numbers(f"{records}I")]
        require(all(len(text) <= size for text in texts), "a text is longer than its field")
        return texts
    values = data.numbers(f"{records}{COLUMNS[kind]}")
    require(all(math.isfinite(value) for value in values), "a number is not finite")
    require(kind != 1 or all(value < 2 for value in values), "a bool is neither 0 nor 1")
    return values


def take_table(data, taken):
    records, count = data.numbers("IH")
    require(records <= 2**24 and count <= 1024, "too many records or fields")
    require(count > 0 or records == 0, "records without fields")
    name, fields, names = take_name(data, taken), [], set()
    for _ in range(count):
        kind, size = data.numbers("BH")
        require(kind in TYPES and (kind == 10 or size == 0), "an unknown type or a size without a text")
        fields.append((take_name(data, names), kind, size))
    columns = [take_column(data, kind, size, records) for _, kind, size in fields]
    require(data.at_end(), "bytes after a table")
    heading = [{"name": field, "type": TYPES[kind], "size": size} for field, kind, size in fields]
    rows = list(zip(*columns))
    return {"table": name, "fields": heading, "records": records}, rows


def tables_of(body):
    data, taken, tables_ended = Bytes(body), set(), False
    while True:
        kind, flags, reserved, length = data.numbers("BBHQ")
        payload = Bytes(data.take(length))
        require(reserved == 0 and flags < 2, "unknown flags of a section")
        if kind == 0:
            require(flags == 1 and length == 0 and data.at_end(), "the end is not at the end")
            return
        if kind == 1:
            require(flags == 1 and not tables_ended and len(taken) < 4096, "a table out of place")
            yield take_table(payload, taken)
        else:
            require(flags == 0, "an unknown section that must be known")
            tables_ended = True


if __name__ == "__main__":
    try:
        for heading_line, record_lines in tables_of(body_of(sys.argv[1], "".join(sys.argv[2:3]))):
            for line in (heading_line, *record_lines):
                print(json.dumps(line, ensure_ascii=False))
    except (Refused, OSError, UnicodeDecodeError) as refusal:
        sys.exit(f"reader.py: {sys.argv[1]}: {refusal}")
