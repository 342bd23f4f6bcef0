"""`encode` shows the request of a command line, or says why there is none."""

import pytest
from catalogue import block, write_catalogue
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
0       12 00 00 00                                      int32   0x12 instruction
4       00 00 00 80                                      int32   -2147483648
8       ff ff ff ff ff ff ff 7f                          int64   9223372036854775807
16      00 00 48 41                                      float   12.5
20      9a 99 99 99 99 99 b9 3f                          double  0.10000000000000001
28      04 00 00 00 68 00 e4 00 3d d8 00 de 00 00 00 00  string  "hä😀"
header  01 00 00 00 2c 00 00 00
"""
ACCEPTED = [
    # module, command and arguments; what is shown
    (["aud", "all", -(2**31), 2**63 - 1, 12.5, ".1", "hä😀"], REQUEST),
    (["audio", "bare"], "0x12 instruction\nheader  01 00 00 00 04 00 00 00"),
    (["aud", "two", "0x10", 1], "10 00 00 00              int32  16"),
    (["aud", "all", 0, 0, "0.0e5", 0, "x"], "00 00 00 00              float   0"),
    (["aud", "wide", 7], "int32  7\nheader  01 00 00 00 08 00 00 00"),
    (["aud", "text", "help", "--"], 'string  "--"'),
    (["aud", "text", 126 * "a", 126 * "b"], "header  01 00 00 00 0c 02 00 00"),
]
REFUSED = [
    (["aud", "bare", "--json"], '"--json" is left over; options stand before MODULE'),
    (["aud", "two", 1], "argument 2 (int32) is missing"),
    (["aud", "two", 1], '"two" takes int32, int32: some help'),
    (["aud", "wide", 7, 8], 'argument 2: "8" is left over'),
    (["aud", "two", "12ab", 1], 'argument 1 (int32): "12ab" is no number'),
    (["aud", "two", 1, 2**31], 'argument 2 (int32): "2147483648" is out of range'),
    (["aud", "two", 1, "0x"], '"0x" is no number'),
    (["aud", "two", 1, ""], '"" is empty'),
    (["aud", "two", 1, "2 "], '"2 " holds a blank'),
    (["aud", "all", 0, 2**63, 1, 1, "x"], '(int64): "9223372036854775808" is out of range'),
    (["aud", "all", 0, 0, "1e39", 1, "x"], '(float): "1e39" is out of range'),
    (["aud", "all", 0, 0, "1e-60", 1, "x"], '(float): "1e-60" is out of range'),
    (["aud", "all", 0, 0, "inf", 1, "x"], '(float): "inf" is no number'),
    (["aud", "all", 0, 0, 1, 1, "\udcff"], '(string): "�" is not UTF-8'),
    (["aud", "text", 126 * "a", 127 * "b"], "255 characters with their blanks"),
    (["aud", "bad", 1, 2], 'the para format "dq" of "bad" has the unknown letter "q"'),
    (["aud", "badreply", 1], 'the print format "dx" of "badreply" has the unknown letter "x"'),
    (["voice", "two"], 'unknown module "voice"\n'),
    (["Audo", "two"], 'unknown module "Audo"; did you mean "aud"?'),
    (["aud", "twoo"], 'unknown command "twoo" of the module "audio"; did you mean "two"?'),
]


@pytest.fixture(autouse=True)
def catalogue(television):
    common = {"belong_module": "audio", "instruction": "12", "description": "some help"}
    commands = [
        block(name, command=name, para_format=arguments, print_format=reply, **common)
        for name, arguments, reply in COMMANDS
    ]
    write_catalogue(block("audio", command="aud", instruction="0x1"), "".join(commands))


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
