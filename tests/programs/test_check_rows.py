"""What `check` says of one row in an otherwise good block, and what the console makes of it."""

import json
import re

from catalogue import CATALOGUE
from programs import tool

MODULES = """\
[lamp]
command = light
instruction = 0x900
[dark]
command = dark
"""
GOOD = """\
command = word{number:02}
belong module = lamp
instruction = 0x1{number:02}
para format = d
print format = dd
print tags = a,b
description = text
"""
# Rows, and what is said of the first of them.
ERRORS = [
    ("instruction = 0x1g", "has trailing characters: it is read as 0x1"),
    ("instruction = 80000000", "does not fit 32 bits: it is read as 0x7fffffff"),
    ("instruction = zz", "is not hexadecimal: it is read as 0x0"),
    ("para format = dq %", 'has unknown letters: "q %"'),
    ("belong module = light", 'did you mean "lamp"?'),
    ("belong module = drak", 'did you mean "dark"?'),
    ("command = word00", 'the command word "word00" is already defined at'),
    ("command = light", 'is shadowed: it selects the module "lamp" of'),
    ("command = Quit", "is one of the prompt's own"),
    ("command = set level", "cannot be typed: a blank ends the word"),
    ("command = Band", 'cannot be typed: the prompt reads "B" as part of an arrow key'),
    ("command = menu\x7f", "it has the control byte 0x7f"),
    ("  \t\nprint tags = left", "is a line of blanks"),
    ("desc =lost", 'did you mean "description"?'),
    ("belong module lamp", 'write "belong module = lamp"'),
    ("description: on = 1", 'write "description = on = 1"'),
    ("to be continued\nprint tags = left", 'remove it, or write a key, "=" and a value'),
    ("print tags = a", ": the other values are read as the next record"),
    ("print tags = a,b,c", ": the last labels are not printed"),
    ("para format = d\0d", "is read only up to its NUL byte"),
    ("description = a\rprint tags = b", "has a carriage return"),
    ("\xef\xbb\xbf[two]", "save the file as UTF-8 without the mark"),
    ("[" + 254 * "t" + "]", "is a title line of 256 bytes, over the limit of 255"),
    (255 * "k" + "=", "is not a key of this file"),
]
WARNINGS = [
    ("description =", "has no description"),
    ("instruction = 0x100", 'is also that of "word00" at'),
    ("instruction = 10", "hexadecimal: 16 in decimal; write 0x10, or 0xa for decimal 10"),
    ("para format = Sd", 'has the letter "S", which has no value'),
    ("para format = " + 128 * "s", "the 128 arguments of the para format do not fit"),
    ("print tags = a, b", 'the labels " b" begin or end with a blank'),
    ("print tags = a,a", 'the label "a" is used more than once'),
    ("print tags = a\x7f,b", "has the control byte 0x7f"),
    ("description = a\xc2\x9bb", "has the control byte 0x9b"),
    ("description = caf\xe9", "is not UTF-8"),
    ("desc=short", 'is read as "description", cut short'),
    ("description =" + 243 * "v", "has 256 bytes: the console prints a message at every start"),
]
FINE = ["", "# left zone", "  \t", "command = E0", "para format = " + 127 * "s", "print tags = ,"]
# Instructions, and what the console takes.
NUMBERS = {
    "0X1A": "0x1a",
    "08": "0x8",
    "+7": "0x7",
    "-1": "0xffffffff",
    "7fffffff": "0x7fffffff",
    "-80000000": "0x80000000",
    "-80000001": "0x80000000",
}


def findings(rows):
    """What `check` says of a block for each row, which takes the place of its key's or comes last.

    Pairs of a row of the file and what is said of it. A character of a row stands for a byte.
    """
    text = ""
    for number, row in enumerate(rows):
        key, equals, _ = row.partition("=")
        good = GOOD.format(number=number).splitlines()
        kept = [line for line in good if not (equals and line.startswith(key))]
        text += "\n".join([f"[{number}]", *kept, row, ""])
    CATALOGUE.mkdir(parents=True)
    (CATALOGUE / "mods.conf").write_text(MODULES)
    (CATALOGUE / "cmds.conf").write_bytes(text.encode("latin-1"))
    said = re.findall(r"cmds.conf:(\d+): (.*)", tool("check").output)
    return [(text.split("\n")[int(line) - 1], finding) for line, finding in said]


def check_says(severity, table):
    parts = {row.split("\n")[0]: part for row, part in table}
    said = findings(row for row, _ in table)
    # A finding that has the expected part is shown as that part.
    for i, (row, finding) in enumerate(said):
        if finding.startswith(severity) and row in parts and parts[row] in finding:
            said[i] = (row, parts[row])
    assert said == list(parts.items())


def test_errors():
    check_says("error", ERRORS)


def test_warnings():
    check_says("warning", WARNINGS)


def test_fine_rows():
    assert findings(FINE) == []


def test_numbers():
    findings(f"instruction = {written}" for written in NUMBERS)
    listed = tool("list", "--json").output.splitlines()
    assert dict(zip(NUMBERS, (json.loads(row)["instruction"] for row in listed))) == NUMBERS


def test_long_rows():
    table = [(f"{key} =" + 255 * "v", "a value of 255 bytes") for key in re.findall("(.*) =", GOOD)]
    check_says("error", [*table, (256 * "k" + "=", "is a key of 256 bytes, over the limit of 255")])
    printed = tool("list").messages
    for key in ("Command", "Instruction", "ParaFormat", "PrintFmt", "PrintTags", "Description"):
        assert f"\nGet{key} string size: 256\n" in printed
        assert f"\nIs{key} string str.size(): 256\n" in printed
    assert "\nGetBelongMod string size: 256\n" in printed
    assert "\nIsBelongMod string str.size(): 256]\n" in printed
