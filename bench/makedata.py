"""Makes the folders that are listed: once, in a folder that is kept."""
import os
import random
import sys

WORDS = (
    "wood oak metal brushed scene Final car Body IMG DSC texture normal rough height sky HDRI chair Lamp room Büro 木材 über preset tree render"
).split()
SUFFIXES = "jpg JPG png PNG tif tiff obj fbx stl txt mp4 mov wav psd hdr exr py abc zip gltf bmp tga md svg blend".split()
STAMP = ".made-1"  # raised when other files are made

FLAT = {"flat1k": 1_000, "flat10k": 10_000, "flat100k": 100_000}
NESTED = "nested"
NESTED_FOLDERS = 2_000
NESTED_FILES = 200_000


def FileName(number, dice):
    first, second, suffix = dice.choice(WORDS), dice.choice(WORDS), dice.choice(SUFFIXES)
    return dice.choice((f"{first}_{second}_{number:06}.{suffix}", f"{first} {number} {second}.{suffix}", f"{first}{number:06}.{suffix}"))


def MakeFile(folder, number, dice):
    """Empty or of a few bytes, dated within some years."""
    path = os.path.join(folder, FileName(number, dice))
    file = os.open(path, os.O_CREAT | os.O_WRONLY | os.O_TRUNC, 0o644)
    if number % 3:
        os.write(file, b"content of a bench"[: number % 19])
    date = 1_500_000_000 + dice.randrange(200_000_000)
    os.utime(file, (date, date))
    os.close(file)


def MakeFlat(folder, count):
    dice = random.Random(count)
    os.makedirs(folder, exist_ok=True)
    for number in range(count):
        MakeFile(folder, number, dice)


def MakeNested(folder):
    """Each folder hangs below an earlier one, so that the depth grows with the logarithm of the count."""
    dice = random.Random(NESTED_FOLDERS)
    folders = [folder]
    os.makedirs(folder, exist_ok=True)
    for number in range(NESTED_FOLDERS):
        parent = folders[dice.randrange(len(folders))]
        folders.append(os.path.join(parent, f"{dice.choice(WORDS)}_{number:04}"))
        os.makedirs(folders[-1], exist_ok=True)
    for number in range(NESTED_FILES):
        MakeFile(folders[1 + number % NESTED_FOLDERS], number, dice)


def Provide(top):
    """Makes what is missing below `top`."""
    os.makedirs(top, exist_ok=True)
    stamp = os.path.join(top, STAMP)
    if os.path.exists(stamp):
        return
    if os.listdir(top):
        sys.exit(f"{top} holds something else, or data that were not finished: remove it first, or give another folder with --data.")
    print("Making 313,000 small files, once …", file=sys.stderr)
    for name, count in FLAT.items():
        MakeFlat(os.path.join(top, name), count)
    MakeNested(os.path.join(top, NESTED))
    with open(stamp, "w", encoding="utf-8"):
        pass
