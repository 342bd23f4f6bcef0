"""`encode` shows the request of a command line, or says why there is none."""

import pytest
from catalogue import write_commands
from programs import tool

COMMANDS = [
    # command, para format, print format
    ("bare", "", ""),
    ("two", "dd", ""),
    ("text", "ss", ""),
    ("all", "dDfFs", ""),
    ("wide", "SdS", "S"),
    ("bad", "dq", ""),
    ("badreply", "d", "dx"),
]
REQUEST = """\
offset  bytes                                            type    value
0       01 09 00 00                                      int32   0x901 instruction
4       00 00 00 80                                      int32   -2147483648
8       ff ff ff ff ff ff ff 7f                          int64   9223372036854775807
16      cd cc cc 3d                                      float   0.100000001
20      9a 99 99 99 99 99 b9 3f                          double  0.10000000000000001
28      04 00 00 00 68 00 e4 00 3d d8 00 de 00 00 00 00  string  "hä😀"
header  01 00 00 00 2c 00 00 00
"""
ACCEPTED = [
    # module, command and arguments; what is shown
    (["lamp", "all", -(2**31), 2**63 - 1, 0.1, ".1", "hä😀"], REQUEST),
    (["lamp", "two", "0x10", 1], "10 00 00 00              int32  16"),
    (["lamp", "two", "017", "+5"], "11 00 00 00              int32  17"),
    (["lamp", "all", 0, 0, "0.0e5", 0, "x"], "00 00 00 00              float   0"),
    (["lamp", "wide", 7], "int32  7\nheader  01 00 00 00 08 00 00 00"),
    (["lamp", "text", "help", "--"], 'string  "--"'),
    (["lamp", "text", 126 * "a", 126 * "b"], "header  01 00 00 00 0c 02 00 00"),
]
REFUSED = [
    (["lamp", "bare", "--json"], '"--json" is left over; options go before MODULE'),
    (["lamp", "two", 1], "argument 2 (int32) is missing"),
    (["lamp", "two", "12ab", 1], '(int32): "12ab" is not valid; "two" takes int32, int32: '),
    (["lamp", "two", 1, 2**31], 'argument 2 (int32): "2147483648" is out of range'),
    (["lamp", "two", 1, "-0x10"], '"-0x10" is no'),
    (["lamp", "all", 0, "0x10", 0, 0, "x"], '(int64): "0x10" is no'),
    (["lamp", "two", 1, "0x"], '"0x" is not valid'),
    (["lamp", "two", 1, ""], '"" must not be empty'),
    (["lamp", "two", 1, 59 * "2" + " "], 59 * "2" + ' " must not contain a blank'),
    (["lamp", "all", 0, 0, "1e39", 1, "x"], '(float): "1e39" is out of range'),
    (["lamp", "all", 0, 0, "1e-60", 1, "x"], '(float): "1e-60" is out of range'),
    (["lamp", "all", 0, 0, 1, 1, "\udcff"], '(string): "�" is not UTF-8'),
    (["lamp", "text", 126 * "a", 127 * "b"], "255 bytes with their blanks"),
    (["lamp", "bad", 1, 2], 'the para format "dq" of "bad" has the unknown letter "q"'),
    (["lamp", "badreply", 1], 'the print format "dx" of "badreply" has the unknown letter "x"'),
    (["--catalogue", "\x1b", "lamp", "two"], r"\x1b/mods.conf: No such file or directory"),
    (["clamped", "two"], 'unknown module "clamped"\n'),
    (["Lmap", "two"], 'unknown module "Lmap"; did you mean "lamp"?'),
    (["lamp", "twoo"], 'unknown command "twoo" of the module "lamp"; did you mean "two"?'),
]


@pytest.fixture(autouse=True)
def catalogue(television):
    keys = ("command", "para_format", "print_format")
    write_commands([dict(zip(keys, row)) for row in COMMANDS])


@pytest.mark.parametrize("words, shown", ACCEPTED)
def test_accepted(words, shown):
    result = tool("encode", *words)
    assert result.status == 0
    assert shown in result.output


@pytest.mark.parametrize("words, reason", REFUSED)
def test_refused(words, reason):
    result = tool("encode", *words)
    assert (result.status, result.output) == (3, "")
    assert reason in result.messages
