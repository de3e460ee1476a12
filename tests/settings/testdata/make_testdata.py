#!/usr/bin/env python3
"""Writes the golden and must-fail settings files byte by byte, independently of the C++ writer.

Run from this folder; the files it writes are committed, so it only needs running again when a
case is added. Pair order in the golden files is worked out by hand from the player's table
(buckets ascending, the most recent name of a bucket first) and written out literally here.
"""
import struct

READ_PAST = "SMSettingsReader: {}() attempted to read beyond end-of-stream.\n"
NESTED = ("SMSettingsReader: Nested arrays are not supported. They are currently not a use-case;"
          " IGNORING VALUE.\n")
UNKNOWN_ARRAY = ("SMSettingsReader: Unexpected data-type encountered when parsing array;"
                 " IGNORING VALUE.\n")


def pstring(text):
    data = text.encode("utf-8") if isinstance(text, str) else text
    return struct.pack(">H", len(data)) + data


def number(name, value):
    return pstring(name) + b"\x00" + struct.pack(">d", value) + b"\x00"


def boolean(name, flag):
    return pstring(name) + b"\x01" + (b"\x01" if flag else b"\x00") + b"\x00"


def string(name, text):
    return pstring(name) + b"\x02" + pstring(text) + b"\x00"


def array(name, elements):
    return pstring(name) + b"\x03" + b"".join(elements) + b"\x00\x00\x09" + b"\x00"


def element(name, type_byte, payload):
    return pstring(name) + bytes([type_byte]) + payload


def body(object_name, pairs, version=4):
    head = b"TCSO" + struct.pack(">H", version)
    if version == 4:
        head += b"\x00" * 4
    return head + pstring(object_name) + b"\x00" * 4 + b"".join(pairs)


def stream(body_bytes, tag_type=2, declared=None):
    length = len(body_bytes) if declared is None else declared
    if length < 63 and declared is None:
        return struct.pack(">H", (tag_type << 6) | length) + body_bytes
    return struct.pack(">HI", (tag_type << 6) | 63, length) + body_bytes


def write(path, data):
    with open(path, "wb") as out:
        out.write(data)


GOLDEN = {
    "empty-master": stream(body("settings", [])),
    # The seven defaults of a new site, in the order the player's table yields them.
    "site-defaults": stream(body("example.com/settings", [
        boolean("p2pallow", False), boolean("always", False), boolean("p2palways", False),
        boolean("allowsecure", False), boolean("alwayssecure", False), number("klimit", 100),
        boolean("allow", False)])),
    # Every type, a multi-byte name and an array with each element type; long header.
    "all-types": stream(body("caf\u00e9.example/settings", [
        boolean("q", True), number("a", -1.5), string("c", "gr\u00fc\u00dfe"),
        array("trustedPaths", [
            element("C:\\dev\\movie.swf", 1, b"\x01"),
            element("n", 0, struct.pack(">d", 1e300)),
            element("s", 2, pstring("text"))])])),
}

MUST_FAIL = {
    "tag-type-3": (stream(body("settings", []), tag_type=3), ""),
    "declared-length-beyond-end": (stream(body("settings", []), declared=200), ""),
    "bad-magic": (stream(body("settings", []).replace(b"TCSO", b"TCSX")), ""),
    "version-1": (stream(body("settings", [], version=1)), ""),
    "version-5": (stream(body("settings", [], version=5)), ""),
    "pair-end-byte-not-zero": (
        stream(body("settings", [boolean("ok", True), boolean("x", True)[:-1] + b"\x07"])), ""),
    "array-end-not-9": (stream(body("settings", [
        pstring("list") + b"\x03" + element("e", 1, b"\x01") + b"\x00\x00\x08\x00"])), ""),
    "one-byte": (b"\x00", READ_PAST.format("ReadU16")),
    # A nested array element: the reader goes on with the bytes after its type byte, here a
    # name longer than what is left, which ends the elements without the end byte 9.
    "nested-array-element": (stream(body("settings", [
        pstring("list") + b"\x03" + element("inner", 3, b"") + b"\x00\x05zz"])),
        NESTED + READ_PAST.format("ReadAndCopyPStringAsSimpleString")),
    # An unknown element type inside an array, whose payload is then read as the next name.
    "unknown-array-element-then-garbage": (stream(body("settings", [
        pstring("list") + b"\x03" + element("odd", 7, b"") + b"\x00\x01x\x05\x00\x00\x01"])),
        UNKNOWN_ARRAY + UNKNOWN_ARRAY),
}

for name, data in GOLDEN.items():
    write(f"golden/{name}.sol", data)
for name, (data, diagnostics) in MUST_FAIL.items():
    write(f"must-fail/{name}.sol", data)
    write(f"must-fail/{name}.stderr", diagnostics.encode())
