#!/usr/bin/env python3
"""Functions stay under 60 lines and files under 600, unless a line in the file's head says why:

    // Budget: NameOfFunction, one flat switch over the messages
    // Budget: file, the rows of the table stand in the order of their numbers

Counts from the signature to the closing brace. The house format gives the braces of functions and types lines of their own,
and those of statements none, so that counting needs no parser.
"""
import re

from tracked import CodeSuffixes, Files, Finish, Text

FunctionLimit = 60
FileLimit = 600
HeadLines = 30

Opening = re.compile(r"^(\s*)\{\s*(?://.*)?$")
Excuse = re.compile(r"^\s*(?://|/\*|\*)\s*Budget:\s*([\w:~]+)[\s,]+\S", re.M)
NoFunction = re.compile(r'^\s*(?:(?:inline\s+)?namespace|typedef|(?:template\s*<.*>\s*)?(?:class|struct|union|enum)|extern\s*"C")\b[^()]*$')
TestCase = re.compile(r"^\s*(?:TYPED_)?TEST(?:_F|_P)?\(\w+,\s*(\w+)\)")
NameOf = re.compile(r"([\w:~]*(?:operator\s*\S+?)?[\w~]*)\s*\(")


def SignatureStart(lines, brace):
    """The first line of the declaration whose body opens on the line `brace`."""
    first = brace
    while first > 0:
        above = lines[first - 1].strip()
        if not above or above.endswith((";", "{", "}", "*/")) or above.startswith(("//", "#", "public:", "protected:", "private:")):
            break
        first -= 1
    return first


def Functions(lines):
    """Gives first line (from 1), name and length of each function with a body over several lines."""
    open_ = []
    for number, line in enumerate(lines):
        opening = Opening.match(line)
        if opening:
            open_.append((opening.group(1), number))
        elif open_ and line.startswith(open_[-1][0] + "}"):
            first = SignatureStart(lines, open_.pop()[1])
            signature = " ".join(lines[first:number])[:400].split("{")[0]
            name = NameOf.search(signature)
            if name and not NoFunction.match(signature):
                case = TestCase.match(signature)
                yield first + 1, case.group(1) if case else name.group(1).split("::")[-1], number - first + 1


problems = []
count = 0
longest = (0, "none")
for file in Files(CodeSuffixes):
    text = Text(file).splitlines()
    excused = set(Excuse.findall("\n".join(text[:HeadLines])))
    if len(text) > FileLimit and "file" not in excused:
        problems.append(f"{file}:1: {len(text)} lines")
    for line, function, length in Functions(text):
        count += 1
        longest = max(longest, (length, f"{function} in {file}"))
        if length > FunctionLimit and function not in excused:
            problems.append(f"{file}:{line}: {function} has {length} lines")
Finish(problems, f"{count} functions, the longest has {longest[0]} lines: {longest[1]}")
