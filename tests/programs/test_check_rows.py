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
    ("instruction = 0x1g", "has trailing characters: 0x1 is taken"),
    ("instruction = 80000000", "does not fit 32 bits: 0x7fffffff is taken"),
    ("instruction = zz", "is not hexadecimal: 0x0 is taken"),
    ("para format = dq %", 'has unknown letters: "q %"'),
    ("belong module = light", 'names no module: the block is lost; did you mean "lamp"?'),
    ("belong module = lmap", 'did you mean "lamp"?'),
    ("belong module = dark", "conf:4, has no instruction: the block is lost"),
    ("command = word00", 'the command word "word00" is defined at'),
    ("command = dark", 'is shadowed: it selects the module "dark" of'),
    ("command = Quit", "is shadowed by the prompt's own"),
    ("command = set level", "cannot be typed: a blank ends the word"),
    ("command = Band", 'cannot be typed: the prompt takes "B" for a part of an arrow key'),
    ("command = menu\x7f", "it holds the control byte 0x7f"),
    ("print format = d,", 'has unknown letters: ","'),
    ("# left zone\nprint tags = left", "is a comment, which no block can hold: it ends the block"),
    ("  \t\nprint tags = left", "is a row of blanks"),
    ("desc =lost", 'did you mean "description"?'),
    ("print", "is neither a title nor a key"),
    ("para format = d\0d", "is cut at its NUL byte"),
    ("description = a\rprint tags = b", "holds a carriage return"),
    ("\xef\xbb\xbf[two]", "save the file as UTF-8 without the mark"),
    ("[" + 254 * "t" + "]", "is a title row of 256 bytes, over the limit of 255"),
    (255 * "k" + "=", "is no key of this file"),
]
WARNINGS = [
    ("description =", "has no description"),
    ("instruction = 0x100", 'is that of "word00" at'),
    (
        "instruction = 10",
        "hexadecimal, so it is 16 in decimal; write 0x10, or 0xa for a decimal 10",
    ),
    ("para format = Sd", 'has the letter "S", which carries no value'),
    ("para format = " + 128 * "s", "the 128 arguments of the para format cannot fit"),
    ("print tags = a", ": values without a tag are taken for the next record's"),
    ("print tags = a,b,c", ": the last tags are never printed"),
    ("print tags = a, b", 'blanks belong to the print tags " b"'),
    ("print tags = a,a", 'the print tag "a" stands for several values'),
    ("print tags = a\x7f,b", "holds the control byte 0x7f"),
    ("description = a\xc2\x9bb", "holds the control byte 0x9b"),
    ("description = caf\xe9", "is no UTF-8"),
    ("desc=short", 'is taken for "description", which it begins'),
    ("description =" + 243 * "v", "has 256 bytes: the console prints a message about it"),
]
FINE = ["", "# left zone", "  \t", "command = E0", "para format = " + 127 * "s", "print tags = ,"]
# Instructions, and what the console takes.
NUMBERS = {
    "0X1A": "0x1a",
    "08": "0x8",
    "+7": "0x7",
    "-1": "0xffffffff",
    "7fffffff": "0x7fffffff",
    "80000000": "0x7fffffff",
    "-80000000": "0x80000000",
    "-80000001": "0x80000000",
    "0x1g": "0x1",
    "zz": "0x0",
}
LONG = """\
GetCommand string size: 256
GetBelongMod string size: 256
GetInstruction string size: 256
GetParaFormat string size: 256
GetPrintFmt string size: 256
GetPrintTags string size: 256
GetDescription string size: 256
IsCommand string str.size(): 256
IsBelongMod string str.size(): 256]
IsInstruction string str.size(): 256
IsParaFormat string str.size(): 256
IsPrintFmt string str.size(): 256
IsPrintTags string str.size(): 256
IsDescription string str.size(): 256
"""


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
    printed = tool("list").messages.splitlines(keepends=True)
    assert "".join(row for row in printed if not row.startswith("str size:")) == LONG
