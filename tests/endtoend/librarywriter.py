"""Writes library files byte by byte, as docs/libraryformat.md tells, and knows nothing of the program's reader."""
import struct
import zlib

INT32, INT64, FLOAT, TRUTH, TEXT, NESTED, BYTES = 1, 2, 3, 4, 5, 6, 8
CLOSING = struct.pack(">4siQ", b"dbfe", 0, 0)
HEADER = 16


class Value:
    def __init__(self, kind, content):
        self.kind = kind
        self.content = content


def groups(natural):
    """Seven bits in a byte, the lowest first; all bytes but the last have the high bit."""
    written = b""
    while natural > 0x7F:
        written += bytes([natural & 0x7F | 0x80])
        natural >>= 7
    return written + bytes([natural])


def signed(whole):
    return groups(whole << 1 if whole >= 0 else (-whole << 1) - 1)


def run(content):
    return groups(len(content)) + content


def int32(whole):
    return Value(INT32, signed(whole))


def unsigned(bits):
    return int32(bits - (1 << 32) if bits >= 1 << 31 else bits)


def int64(whole):
    return Value(INT64, signed(whole))


def text(characters):
    return Value(TEXT, run(characters.encode("utf-8", "surrogatepass")))


def truth(value):
    return Value(TRUTH, bytes([value]))


def number(value):
    return Value(FLOAT, struct.pack(">d", value))


def image(entries, own=0):
    """`entries`: values by key, in the order of the file."""
    written = signed(own) + groups(len(entries))
    for key, value in entries.items():
        content = run(value.content) if value.kind == NESTED else value.content
        written += signed(key) + bytes([value.kind]) + content
    return written


def nested(entries, own=0):
    return Value(NESTED, image(entries, own))


def container(entries, own=0):
    """The payload of a chunk: a data file with one container."""
    written = image(entries, own)
    return b"VX3d" + struct.pack(">I4sQ", 2, b"brow", len(written)) + written


def chunk(tag, number_, payload=b"", length=None):
    return struct.pack(">4siQ", tag, number_, len(payload) if length is None else length) + payload


def packed_date(year, month, day, hour, minute, second):
    return nested({0: int32((year << 16) + (month << 8) + day), 1: int32((hour << 26) + (minute << 20) + (second << 14))})


def language(code):
    return struct.unpack(">i", code.encode().ljust(4, b"\0"))[0]


def path_hash(path):
    """Right for paths whose lower case Python and the format agree upon."""
    return zlib.crc32(path.lower().encode("utf-16-be", "surrogatepass"))


def packed(data):
    return struct.pack(">I", len(data)) + zlib.compress(data, 9)


class Library:
    """A file that grows as a program writes it; `items` are closed by `closed` or left open by `bytes`."""

    def __init__(self, url="preset://shelf.libvx", version=7, names=None, read_only=0, category=None):
        self.url = url
        self.bytes = chunk(b"dbfh", 0)
        self.append(b"difm", 0, container({0: int32(version), 3: text(url), 5: int32(read_only),
                                           4: nested({language(code): text(name) for code, name in (names or {}).items()})}))
        if category is not None:
            self.append(b"cati", 0, container({1: text(category)}))

    def append(self, tag, number_, payload=b"", length=None):
        offset = len(self.bytes)
        self.bytes += chunk(tag, number_, payload, length)
        return offset

    def data(self, item, stored):
        return self.append(b"bina", item, stored)

    def preview(self, item, picture):
        return self.append(b"imag", item, picture)

    def item(self, own, path, data=None, previews=None, header=None, more=None):
        """`data`: offset, mode, unpacked size; `previews`: width, height and offset by number."""
        full = self.url + "/" + path if path is not None else ""
        entries = {6: nested({0: text(full), 2: unsigned(path_hash(full))}), 1: int32(1001026),
                   13: packed_date(2026, 1, 2, 3, 4, 5), 11: packed_date(2026, 11, 23, 7, 8, 9)}
        if data:
            entries[14] = nested({0: int64(data[0]), 1: int32(data[1]), 2: int64(data[2])})
        if previews:
            entries[5] = nested({key: nested({1: int32(width), 2: int32(height), 3: int32(1), 5: int64(offset)}, key)
                                 for key, (width, height, offset) in previews.items()})
        entries.update(more or {})
        return self.append(b"ditm", own if header is None else header, container(entries, own))

    def kill(self, offset):
        self.bytes = self.bytes[:offset] + b"ivld" + self.bytes[offset + 4:]

    def closed(self):
        return self.bytes + CLOSING


def picture():
    """Two grey pixels as an uncompressed TIFF."""
    tags = [(256, 3, 1, 2), (257, 3, 1, 1), (258, 3, 1, 8), (259, 3, 1, 1), (262, 3, 1, 1), (273, 4, 1, 8), (277, 3, 1, 1),
            (278, 3, 1, 1), (279, 4, 1, 2)]
    directory = struct.pack("<H", len(tags)) + b"".join(struct.pack("<HHII", *tag) for tag in tags) + struct.pack("<I", 0)
    return b"II*\0" + struct.pack("<I", 10) + b"\x10\xf0" + directory
