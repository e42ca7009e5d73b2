#!/usr/bin/env python3
"""The module's texts: every language has the same numbers and places of values, and every number that is named has a text.

A line that no host would read, a number that stands twice or out of order, an empty text and a wrong escape are faults as well.
"""
import re
import sys

from tracked import Files, Finish, Text

Folder = "modules/browser/res/strings/"
Common = "us"
LineForm = re.compile(r"([0-9]+) = (.*)")
Escape = re.compile(r"\\(?![n\\])(.|$)")
Place = re.compile(r"%[1-9]")
# What the typography of a language forbids.
Misprints = {"us": re.compile(r" …|\.\.\."), "de": re.compile(r"[^ ]…|\.\.\.")}

EnumOf = re.compile(r"namespace (\w*Texts) \{\s*enum[^{]*\{(.*?)\n\};", re.S)
Enumerator = re.compile(r"^\s*(\w+)(?: = ([^,]*))?,", re.M)
Literal = re.compile(r"ResourceText\(([0-9]+)")


def ReadTexts(file, problems):
    texts = {}
    last = -1
    for row, line in enumerate(Text(file).split("\n"), 1):
        found = LineForm.fullmatch(line)
        if not found:
            if line and not line.startswith("#"):
                problems.append(f"{file}:{row}: neither `number = text` nor a comment")
            continue
        number, text = int(found[1]), found[2]
        if number <= last:
            problems.append(f"{file}:{row}: {number} stands " + ("twice" if number in texts else "out of order"))
        last = max(last, number)
        texts[number] = (row, text)
    return texts


def TextProblems(language, text):
    if not text.strip() or text != text.strip():
        yield "empty, or blanks at an end"
    if Escape.search(text):
        yield "a backslash that is no escape"
    if "\ufffd" in text:
        yield "not UTF-8"
    if language in Misprints and Misprints[language].search(text):
        yield "an ellipsis as this language does not write it"
    places = sorted(set(Place.findall(text)))
    if places != [f"%{number}" for number in range(1, len(places) + 1)]:
        yield "places of values that are not numbered from %1 on"


def CompareLanguages(file, texts, common, problems):
    for number, (row, text) in texts.items():
        if number not in common:
            problems.append(f"{file}:{row}: {number} is not in {Common}.txt")
            continue
        other = common[number][1]
        if sorted(Place.findall(text)) != sorted(Place.findall(other)):
            problems.append(f"{file}:{row}: {number} has other places of values than in {Common}.txt")
        if text.count("\\n") != other.count("\\n"):
            problems.append(f"{file}:{row}: {number} has other line ends than in {Common}.txt")
    problems += [f"{file}:1: {number} is missing" for number in sorted(common.keys() - texts.keys())]


def NamedNumbers(problems):
    """Gives place, name and number of each text that the module names. A base is a number in front of a row of texts."""
    for file in Files((".h", ".cpp"), "modules/browser/source/"):
        source = Text(file)
        for space, body in EnumOf.findall(source):
            for name, value in Enumerator.findall(re.sub(r"//.*", "", body)):
                if not re.fullmatch(r"[0-9]+", value):
                    problems.append(f"{file}: {space}::{name} has no plain number")
                elif not name.endswith("Base"):
                    yield file, f"{space}::{name}", int(value)
        for number in Literal.findall(source):
            problems.append(f"{file}: {number} has no name")


def ElementNumbers():
    """Gives the texts of the preference page: one behind the type of each element, and those of choices."""
    for file in Files((".txt",), "modules/browser/res/descriptions/"):
        for line in Text(file).splitlines():
            words = line.split()
            if words and words[0].isdigit():
                for word in words[2:] if words[1] == "choice" else words[2:3]:
                    yield file, f"element {words[0]}", int(word)


problems = []
languages = {file[len(Folder) : -len(".txt")]: file for file in Files((".txt",), Folder)}
if Common not in languages:
    sys.exit(f"{Folder}{Common}.txt is not there")
tables = {language: ReadTexts(file, problems) for language, file in languages.items()}
for language, texts in tables.items():
    if 0 not in texts:
        problems.append(f"{languages[language]}:1: the name of the language, number 0, is missing")
    for number, (row, text) in texts.items():
        problems += [f"{languages[language]}:{row}: {number}: {problem}" for problem in TextProblems(language, text)]
    if language != Common:
        CompareLanguages(languages[language], texts, tables[Common], problems)
named = [*NamedNumbers(problems), *ElementNumbers()]
if not any(name.startswith("Texts::") for _, name, _ in named):
    problems.append("no names of texts were found")
problems += [f"{file}: {name}: there is no text {number}" for file, name, number in named if number not in tables[Common]]
Finish(problems, f"{len(tables[Common])} texts in {len(tables)} languages, {len(named)} names")
