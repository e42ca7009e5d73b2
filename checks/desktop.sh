#!/usr/bin/env bash
# What the studio gives the desktop is valid and speaks of the same program: its entry, its description for software
# centres, its file types, and its icon at every size that desktops ask for.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../hosts/desktop/share"

name=vx3-studio
sizes=(16 22 24 32 48 64 128 256)
missing=0
while read -r tool package; do
    command -v "$tool" >/dev/null || { echo "$tool (Debian: $package) is missing"; missing=1; }
done <<'TOOLS'
desktop-file-validate desktop-file-utils
appstreamcli appstream
rsvg-convert librsvg2-bin
python3 python3
TOOLS
[ "$missing" = 0 ] || exit 1

desktop-file-validate "$name.desktop"
appstreamcli validate --no-net --no-color "$name.metainfo.xml"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for size in "${sizes[@]}"; do
    rsvg-convert --width "$size" --height "$size" --output "$work/$size.png" "$name.svg"
done

python3 - "$name" "$work" "${sizes[@]}" <<'PYTHON'
import configparser
import struct
import sys
import xml.etree.ElementTree as xml

name, work, *sizes = sys.argv[1:]
problems = []


def expect(is_so, problem):
    if not is_so:
        problems.append(problem)


def parse(file):
    try:
        return xml.parse(file).getroot()
    except xml.ParseError as error:
        sys.exit(f"{file}: {error}")


for size in map(int, sizes):
    picture = open(f"{work}/{size}.png", "rb").read()
    expect(struct.unpack(">II", picture[16:24]) == (size, size), f"{name}.svg: not drawn at {size}")
    expect(len(picture) > size * 16, f"{name}.svg: next to nothing is drawn at {size}")  # a blank picture packs into a few bytes
drawing = parse(f"{name}.svg")
expect(drawing.get("viewBox") and drawing.get("width") == drawing.get("height"), f"{name}.svg: not square, or without a viewBox")
strange = {element.tag.split("}")[1] for element in drawing.iter()} & {"image", "text", "filter", "script", "foreignObject"}
expect(not strange, f"{name}.svg: not every renderer draws {sorted(strange)}")

entry = configparser.ConfigParser(interpolation=None, delimiters="=", comment_prefixes="#")
entry.optionxform = str
entry.read(f"{name}.desktop", encoding="utf-8")
main = entry["Desktop Entry"]
about = parse(f"{name}.metainfo.xml")
space = "{http://www.freedesktop.org/standards/shared-mime-info}"
kinds = parse(f"{name}.mime.xml")
expect(kinds.tag == space + "mime-info", f"{name}.mime.xml: no list of file types")

patterns = {kind.get("type"): [glob.get("pattern") for glob in kind.iter(space + "glob")] for kind in kinds}
expect(sorted(sum(patterns.values(), [])) == ["*.catvx", "*.libvx"], f"{name}.mime.xml: patterns {patterns}")
opened = main["MimeType"].rstrip(";").split(";")
expect(set(opened) == {"inode/directory", *patterns}, f"{name}.desktop: opens {opened}, and the file types are {sorted(patterns)}")
provided = [kind.text for kind in about.iter("mediatype")]
expect(provided == opened, f"{name}.metainfo.xml: provides {provided}, and the entry opens {opened}")
expect(about.findtext("launchable") == f"{name}.desktop", f"{name}.metainfo.xml: starts another entry")
expect(about.findtext("name") == main["Name"], f"{name}.metainfo.xml: another name than the entry's")
expect(about.findtext("icon") == main["Icon"] == name, "the icon has another name")
programs = {main["TryExec"], about.findtext("provides/binary"), *(group["Exec"].split()[0] for group in entry.values() if "Exec" in group)}
expect(programs == {name}, f"other programs than {name} are started: {sorted(programs)}")

for group, keys in entry.items():
    for key in ("Name", "GenericName", "Comment", "Keywords"):
        is_own = key == "Name" and group == "Desktop Entry"  # the program's name is the same everywhere
        expect(is_own or key not in keys or f"{key}[de]" in keys, f"{name}.desktop: {key} of [{group}] is not German")
language = "{http://www.w3.org/XML/1998/namespace}lang"
for file, root, tags in (("metainfo", about, ("summary", "p", "developer_name")), ("mime", kinds, (space + "comment",))):
    for tag in tags:
        found = [element.get(language) for element in root.iter(tag)]
        expect(found and found.count(None) == found.count("de"), f"{name}.{file}.xml: {tag.split('}')[-1]} is not German everywhere")
print(*problems, sep="\n", end="\n" if problems else "")
sys.exit(bool(problems))
PYTHON
echo "entry, description, file types, and the icon at ${#sizes[@]} sizes"
