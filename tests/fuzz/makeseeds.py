#!/usr/bin/env python3
"""Writes files to begin with: makeseeds.py FOLDER makes FOLDER/libraryfuzz and FOLDER/containerfuzz."""
import pathlib
import struct
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "endtoend"))
from librarywriter import *  # noqa: E402,F403


def rich(version=7):
    library = Library(version=version, names={"us": "Shelf", "de": "Regal"}, category="wood")
    raw = library.data(1, b"raw bytes")
    small = packed(b"packed " * 20)
    deflated = library.data(2, small)
    shown = library.preview(2, picture())
    library.item(1, "Wood/Oak", data=(raw, 0, 9), more={16: nested({language("us"): text("Oak"), language("de"): text("Eiche")})})
    library.item(2, "Wood/Élm \udc80", data=(deflated, 2, 140), previews={0: (2, 1, shown), 3: (2, 1, 0)})
    old = library.item(3, "Metal")
    library.kill(old)
    library.item(3, "Metal/Rust", more={10: nested({0: int32(5), 10: int32(7), 6: nested({4: int32(1), 5: int32(2)})}),
                                        22: nested({0: int32(1), 1: int32(2), 2: number(0.5)}), 15: nested({1: truth(1)})})
    return library


def very_old():
    library = Library(version=2)
    records = b""
    for own, path in ((1, "a"), (2, "b")):
        full = library.url + "/" + path
        record = container({6: nested({0: text(full), 2: int32(1), 1: nested({0: nested({5: int64(99)})})}), 1: int32(5)}, own)
        records += struct.pack(">i", len(record)) + record
    library.append(b"dbas", 0, records)
    library.item(4, "header without id", header=0)
    return library


def write(folder, name, content):
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(content)


def main(target):
    libraries = {"empty": b"", "new": chunk(b"dbfh", 0) + CLOSING, "fresh": Library().closed(), "rich": rich().closed(),
                 "open": rich().bytes, "older": rich(6).closed(), "old": rich(4).closed(), "veryold": very_old().closed(),
                 "frozen": Library(read_only=1).closed(), "torn": rich().bytes[:-30]}
    for name, content in libraries.items():
        write(target / "libraryfuzz", name, content)
    images = [image({}), image({1: int32(-2), -3: truth(1), 4: number(0.5), 6: int64(1 << 40)}, 1000),
              image({2: text("aé😀\udcff"), 5: nested({1: Value(BYTES, run(b"hi")), 2: nested({}, 9)}, 7)}),
              image({key: int32(key) for key in range(40)}), image({6: nested({0: text("preset://a.libvx/x"), 2: int32(7)})}, 1)]
    for place, content in enumerate(images):
        write(target / "containerfuzz", f"image{place}", b"\0" + content)
        write(target / "containerfuzz", f"changed{place}", b"\3" + content + bytes(range(100, 109)))


main(pathlib.Path(sys.argv[1]))
