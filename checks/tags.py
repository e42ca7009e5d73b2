#!/usr/bin/env python3
"""Every function pointer of the boundary carries one thread tag, and its comments tell of freeing in the fixed words.

A tag counts if it stands in the comment right in front of the declaration, inside it, or behind it on its last line.
"""
import re

from tracked import Files, Finish, Text

ThreadTags = {"any-thread", "owner-thread", "gui-thread", "start-end"}
OtherTags = {"may-block", "nested"}

Comment = re.compile(r"/\*.*?\*/|//[^\n]*", re.S)
Tag = re.compile(r"\[([a-z]+(?:-[a-z]+)*)\]")
Pointer = re.compile(r"\(\s*\*\s*(\w+)\s*\)\s*\(")

FixedWords = "the caller must free"
Giving = r"(?:frees?|freed|releases?d?|deletes?d?|destroys?|destroyed|disposes?|disposed|closes?d?|owns?)"
OtherWords = [
    re.compile(rf"\b(?:caller|user|module|callers|you)\b[^.;]*\b(?:must|has to|have to|should|needs to|shall|is to)\b[^.;]*\b{Giving}\b", re.I),
    re.compile(rf"\b(?:must|has to|have to|should|needs to|shall|is to) be {Giving}\b", re.I),
    re.compile(r"\bcaller (?:frees|releases|deletes|destroys|disposes|owns|closes)\b", re.I),
]


def Blank(text, match):
    return re.sub(r"[^\n]", " ", match.group(0))


def LineOf(text, offset):
    return text.count("\n", 0, offset) + 1


def Plain(comment):
    """The words of a comment in one line."""
    return re.sub(r"\s+", " ", re.sub(r"^\s*(?:/\*+|\*/|\*|//)|\*/", " ", comment, flags=re.M)).strip()


def IsNested(code, start, offset):
    """A parameter that is a function pointer belongs to the declaration around it."""
    return code.count("(", start, offset) > code.count(")", start, offset)


def CommentsOf(text, comments, start, end):
    """The comments of the declaration whose code stands at start to end, its semicolon included."""
    lineEnd = text.find("\n", end)
    before = [c for c in comments if c.end() <= start and not text[c.end():start].strip()]
    if before and text[text.rfind("\n", 0, before[-1].start()) + 1:before[-1].start()].strip():
        before = []  # it stands behind something else on that line
    around = [c for c in comments if start <= c.start() < (lineEnd if lineEnd >= 0 else len(text))]
    return " ".join(c.group(0) for c in before[-1:] + around)


def CheckPointers(name, text, code, comments):
    count = 0
    for pointer in Pointer.finditer(code):
        ahead = max(code.rfind(mark, 0, pointer.start()) for mark in ";{}")
        start = ahead + 1 + len(code[ahead + 1:]) - len(code[ahead + 1:].lstrip())
        if IsNested(code, start, pointer.start()):
            continue
        count += 1
        end = code.find(";", pointer.end()) + 1
        found = set(Tag.findall(CommentsOf(text, comments, start, end))) & ThreadTags
        where = f"{name}:{LineOf(text, pointer.start())}: {pointer.group(1)}"
        if not found:
            problems.append(f"{where} has no thread tag")
        elif len(found) > 1:
            problems.append(f"{where} has thread tags that exclude each other: {' '.join(sorted(found))}")
    return count


def CheckComment(name, text, comment):
    where = f"{name}:{LineOf(text, comment.start())}"
    for tag in Tag.findall(comment.group(0)):
        if tag not in ThreadTags | OtherTags:
            problems.append(f"{where}: [{tag}] is no tag of the closed list")
    for sentence in re.split(r"(?<=[.;])\s", Plain(comment.group(0))):
        if FixedWords not in sentence.lower() and any(words.search(sentence) for words in OtherWords):
            problems.append(f'{where}: say "{FixedWords}" in: {sentence}')


problems = []
pointers = 0
for header in Files([".h"], "sdk/include/vx3/"):
    source = Text(header)
    found = list(Comment.finditer(source))
    pointers += CheckPointers(header, source, Comment.sub(lambda match: Blank(source, match), source), found)
    for each in found:
        CheckComment(header, source, each)
if not pointers:
    problems.append("sdk/include/vx3: no function pointers were found")
Finish(problems, f"{pointers} function pointers")
