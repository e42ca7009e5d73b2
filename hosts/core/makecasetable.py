#!/usr/bin/env python3
"""Writes casetable.cpp from UnicodeData.txt (Debian package unicode-data).

    python3 makecasetable.py /usr/share/unicode/UnicodeData.txt > casetable.cpp

Takes the simple lower-case mappings inside the Basic Multilingual Plane. Stage one names a
block for each 64 units, stage two holds what is added to a unit, modulo 65536.
"""
import sys

BLOCK_BITS = 6  # caseBlockBits in unicode.h
BLOCK = 1 << BLOCK_BITS
UNITS = 0x10000
LOWER_FIELD = 13
OFFSETS_PER_LINE = 16
BLOCKS_PER_LINE = 32


def read_offsets(path):
    offsets = [0] * UNITS
    with open(path, encoding="ascii") as data:
        for line in data:
            fields = line.rstrip("\n").split(";")
            unit, lower = int(fields[0], 16), fields[LOWER_FIELD]
            if lower and unit < UNITS and int(lower, 16) < UNITS:
                offsets[unit] = (int(lower, 16) - unit) % UNITS
    return offsets


def write_array(head, numbers, per_line, form):
    print(head + " = {")
    for start in range(0, len(numbers), per_line):
        print("    " + ", ".join(form % n for n in numbers[start:start + per_line]) + ",")
    print("};")


def main():
    offsets = read_offsets(sys.argv[1])
    blocks, names = [], []
    for start in range(0, UNITS, BLOCK):
        block = offsets[start:start + BLOCK]
        if block not in blocks:
            blocks.append(block)
        names.append(blocks.index(block))
    print("// Written by makecasetable.py; not to be changed by hand.")
    print('#include "unicode.h"\n\nnamespace vx3::core {\n\n// clang-format off')
    write_array("const uint8_t caseBlocks[]", names, BLOCKS_PER_LINE, "%d")
    print()
    write_array("const uint16_t caseOffsets[]", sum(blocks, []), OFFSETS_PER_LINE, "0x%04x")
    print("// clang-format on\n\n} // namespace vx3::core")


main()
