#!/usr/bin/env python3
"""Writes the sample pictures beside it, from the public descriptions of the formats and
without any picture library, so that the codecs are tested against a second opinion.

Every picture is 24 x 16 pixels: pixel (x, y) has entry (x + 2y) % 6 of a list of colours.
blocks.jpg, inks.jpg, grey.jpg and blocks.jp2 were made once by encoders; their pixels stand
in blocks of 8 x 8, entry (x / 8 + 2 (y / 8)) % 6.
"""
import os
import struct
import zlib

WIDTH, HEIGHT = 24, 16
COLOURS = [(255, 0, 0, 255), (0, 255, 0, 128), (0, 0, 255, 255), (255, 255, 255, 64), (0, 0, 0, 255), (200, 100, 50, 255)]
GREYS = [0, 50, 100, 150, 200, 255]


def entry(x, y, shift=0):
    return (x + 2 * y + shift) % 6


def rows(pixel):
    """Rows of bytes, pixel(entry) for each pixel."""
    return [b"".join(bytes(pixel(entry(x, y))) for x in range(WIDTH)) for y in range(HEIGHT)]


def rgb(i):
    return COLOURS[i][:3]


def rgba(i):
    return COLOURS[i]


def grey(i):
    return [GREYS[i]]


def index(i):
    return [i]


def bgr(i):
    return COLOURS[i][2::-1]


def bgra(i):
    return bgr(i) + (COLOURS[i][3],)


def wide(values):
    """8-bit values as big-endian words."""
    return b"".join(struct.pack(">H", v * 257) for v in values)


def save(name, content):
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), name), "wb") as out:
        out.write(content)


# PNG: ISO/IEC 15948

def png(depth, kind, lines, extra=b"", interlace=0):
    def chunk(tag, body):
        return struct.pack(">I", len(body)) + tag + body + struct.pack(">I", zlib.crc32(tag + body))
    head = struct.pack(">IIBBBBB", WIDTH, HEIGHT, depth, kind, 0, 0, interlace)
    body = zlib.compress(b"".join(b"\0" + line for line in lines), 9)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + extra + chunk(b"IDAT", body) + chunk(b"IEND", b"")


def palette_chunks():
    colours = b"".join(bytes(rgb(i)) for i in range(6))
    alphas = bytes(c[3] for c in COLOURS)
    out = b""
    for tag, body in ((b"PLTE", colours), (b"tRNS", alphas)):
        out += struct.pack(">I", len(body)) + tag + body + struct.pack(">I", zlib.crc32(tag + body))
    return out


def packed_rows(bits):
    """Indices of 4 bits, or black and white by odd and even entries."""
    out = []
    for y in range(HEIGHT):
        number = 0
        for x in range(WIDTH):
            number = number << bits | (entry(x, y) if bits == 4 else entry(x, y) & 1)
        out.append(number.to_bytes(WIDTH * bits // 8, "big"))
    return out


def adam7_lines():
    passes = ((0, 8, 0, 8), (4, 8, 0, 8), (0, 4, 4, 8), (2, 4, 0, 4), (0, 2, 2, 4), (1, 2, 0, 2), (0, 1, 1, 2))
    for x0, xs, y0, ys in passes:
        for y in range(y0, HEIGHT, ys):
            yield b"".join(bytes(rgb(entry(x, y))) for x in range(x0, WIDTH, xs))


def make_png():
    save("straight.png", png(8, 6, rows(rgba)))
    save("palette.png", png(4, 3, packed_rows(4), palette_chunks()))
    save("deep.png", png(16, 6, rows(lambda i: wide(rgba(i)))))
    save("grey.png", png(8, 0, rows(grey)))
    save("interlaced.png", png(8, 2, adam7_lines(), interlace=1))


# TIFF 6.0, in the order of bytes `order`; `pages` is a list of (tags, blocks)

def tiff(order, pages):
    out = bytearray({"<": b"II*\0", ">": b"MM\0*"}[order] + b"\0\0\0\0")
    link = 4
    for tags, blocks in pages:
        offsets = []
        for block in blocks:
            offsets.append(len(out))
            out += block + b"\0" * (len(block) % 2)
        tags = dict(tags)
        where, size = (324, 325) if 322 in tags else (273, 279)
        tags[where] = ("I", offsets)
        tags[size] = ("I", [len(block) for block in blocks])
        rows_of_tags = b""
        for tag, (kind, values) in sorted(tags.items()):
            body = struct.pack(order + kind * len(values), *values)
            if len(body) > 4:
                out_at = len(out)
                out += body
                body = struct.pack(order + "I", out_at)
            rows_of_tags += struct.pack(order + "HHI", tag, {"H": 3, "I": 4}[kind], len(values)) + body.ljust(4, b"\0")
        out[link:link + 4] = struct.pack(order + "I", len(out))
        out += struct.pack(order + "H", len(tags)) + rows_of_tags
        link = len(out)
        out += b"\0\0\0\0"
    return bytes(out)


def tags(photometric, bits, **more):
    short = {"alpha": 338, "planes": 284, "packing": 259, "predictor": 317, "tileWidth": 322, "tileHeight": 323, "map": 320}
    all_tags = {256: ("H", [WIDTH]), 257: ("H", [HEIGHT]), 258: ("H", bits), 262: ("H", [photometric]), 277: ("H", [len(bits)])}
    if "tileWidth" not in more:
        all_tags[278] = ("H", [HEIGHT])
    for name, value in more.items():
        all_tags[short[name]] = ("H", value if isinstance(value, list) else [value])
    return all_tags



def multiplied(i):
    r, g, b, a = COLOURS[i]
    return [(c * a + 127) // 255 for c in (r, g, b)] + [a]


def make_tiff():
    eight = [8, 8, 8, 8]
    whole = b"".join
    save("straight.tif", tiff("<", [(tags(2, eight, alpha=2, packing=8), [zlib.compress(whole(rows(rgba)))])]))
    save("multiplied.tif", tiff("<", [(tags(2, eight, alpha=1), [whole(rows(multiplied))])]))
    save("deep.tif", tiff(">", [(tags(2, [16] * 4, alpha=2, packing=8), [zlib.compress(whole(rows(lambda i: wide(rgba(i)))))])]))
    planes = [whole(rows(lambda i, c=c: [COLOURS[i][c]])) for c in range(4)]
    save("planes.tif", tiff("<", [(tags(2, eight, alpha=2, planes=2), planes)]))
    save("tiles.tif", tiff("<", [(tags(2, eight, alpha=2, tileWidth=16, tileHeight=16), padded_tiles())]))
    colour_map = [COLOURS[i][c] * 257 if i < 6 else 0 for c in range(3) for i in range(256)]
    save("palette.tif", tiff("<", [(tags(3, [8], map=colour_map), [whole(rows(index))])]))
    save("bilevel.tif", tiff("<", [(tags(1, [1]), [whole(packed_rows(1))])]))
    inverse = rows(lambda i: [255 - GREYS[i]])
    shifted = b"".join(bytes(rgb(entry(x, y, 1))) for y in range(HEIGHT) for x in range(WIDTH))
    save("pages.tif", tiff("<", [(tags(0, [8]), [whole(inverse)]), (tags(2, [8, 8, 8]), [shifted])]))


def padded_tiles():
    """Two tiles of 16 x 16; the right half of the second one lies outside."""
    return [b"".join(bytes(rgba(entry(x, y))) for y in range(16) for x in range(left, left + 16)) for left in (0, 16)]


# BMP: the headers of Windows 3 and of version 4, rows from the bottom

def bmp(head_rest, depth, lines, header_size, colours=b""):
    offset = 14 + header_size + len(colours)
    body = b"".join(line + b"\0" * (-len(line) % 4) for line in reversed(lines))
    head = struct.pack("<IiiHHIIiiII", header_size, WIDTH, HEIGHT, 1, depth, *head_rest)
    return b"BM" + struct.pack("<IHHI", offset + len(body), 0, 0, offset) + head.ljust(header_size, b"\0") + colours + body


def make_bmp():
    save("plain.bmp", bmp((0, 0, 0, 0, 0, 0), 24, rows(bgr), 40))
    colours = b"".join(bytes(bgr(i)) + b"\0" for i in range(6))
    save("palette.bmp", bmp((0, 0, 0, 0, 6, 6), 8, rows(index), 40, colours))
    straight = bytearray(bmp((3, 0, 0, 0, 0, 0), 32, rows(bgra), 108))
    struct.pack_into("<IIIII", straight, 54, 0xFF0000, 0xFF00, 0xFF, 0xFF000000, 0x73524742)
    save("straight.bmp", bytes(straight))


# TGA 2.0

def make_tga():
    def head(kind, bits, descriptor):
        return struct.pack("<BBBHHBHHHHBB", 0, 0, kind, 0, 0, 0, 0, 0, WIDTH, HEIGHT, bits, descriptor)
    save("plain.tga", head(2, 24, 0) + b"".join(reversed(rows(bgr))))
    save("grey.tga", head(3, 8, 0x20) + b"".join(rows(grey)))
    packets = b"".join(bytes([WIDTH - 1]) + line for line in rows(bgra))
    save("packed.tga", head(10, 32, 0x28) + packets)
    save("unused.tga", head(2, 32, 0x20) + b"".join(rows(lambda i: bgr(i) + (0,))))


# GIF89a, with codes of a constant width: the table is cleared before it grows

def gif_data(shift):
    bits, width = 3, 4
    number, at = 0, 0
    codes = []
    for y in range(HEIGHT):
        for x in range(WIDTH):
            if (y * WIDTH + x) % 6 == 0:
                codes.append(1 << bits)
            codes.append(entry(x, y, shift))
    codes.append((1 << bits) + 1)
    for code in codes:
        number |= code << at
        at += width
    body = number.to_bytes((at + 7) // 8, "little")
    chunks = b"".join(bytes([len(body[i:i + 255])]) + body[i:i + 255] for i in range(0, len(body), 255))
    return bytes([bits]) + chunks + b"\0"


def make_gif():
    colours = b"".join(bytes(rgb(i)) for i in range(6)) + b"\0" * 6
    screen = b"GIF89a" + struct.pack("<HHBBB", WIDTH, HEIGHT, 0xF2, 0, 0) + colours
    image = b"," + struct.pack("<HHHHB", 0, 0, WIDTH, HEIGHT, 0)
    control = b"!\xf9\x04" + struct.pack("<BHB", 0x09, 10, 1) + b"\0"  # entry 1 is transparent; cleared afterwards
    save("moving.gif", screen + control + image + gif_data(0) + control + image + gif_data(1) + b";")


# SGI, without packing, planes from the bottom; PSD, without packing, planes from the top

def make_planar():
    planes = [rows(lambda i, c=c: [COLOURS[i][c]]) for c in range(4)]
    sgi = struct.pack(">HBBHHHHII", 474, 0, 1, 3, WIDTH, HEIGHT, 4, 0, 255).ljust(512, b"\0")
    save("planes.sgi", sgi + b"".join(b"".join(reversed(plane)) for plane in planes))
    psd = b"8BPS\0\1" + b"\0" * 6 + struct.pack(">HIIHH", 4, HEIGHT, WIDTH, 8, 3) + b"\0" * 12 + b"\0\0"
    save("planes.psd", psd + b"".join(b"".join(plane) for plane in planes))


make_png()
make_tiff()
make_bmp()
make_tga()
make_gif()
make_planar()
