"""What is printed of a reply."""

import struct

import pytest
from catalogue import write_commands
from page import int32, int64, string
from programs import RULE, Console

FIVE = int32(-5) + int64(-5000000000) + struct.pack("<fd", 3.5, 3.5) + string("ä")
FIVE_PRINTED = "i:-5\tl:-5000000000\tf:3.500000\td:        3.500000\ts:ä\t\n"

RECORDS = [
    # print format, print tags, values of the reply, lines
    ("d", "n", b"", ""),
    ("dDfFs", "i,l,f,d,s", 2 * FIVE, 2 * FIVE_PRINTED),
    ("D", "n", int32(1, 2, 3), "n:8589934593\t\nn:0\t\n"),
    ("dd", "n", bytes(4084), 1021 * "n:0\t\n"),
    ("dd", ",b", int32(1, 2, 3), ":1\tb:2\t\n:3\tb:0\t\n"),
    ("ddd", " a, b,,c", int32(1, 2, 3), "a:1\t b:2\t:3\t\n"),
    ("dx", "n", int32(1), "n:1\t\n"),
    # What takes more than 255 characters is left out.
    ("FF", "a,b", struct.pack("<dd", 1e300, 1000), "b:     1000.000000\t\n"),
    # Strings with halves of a character, broken off, of an impossible length, without their end.
    ("ds", "n,t", int32(7) + string("\ud800x\udc00"), "n:7\tt:x\t\n"),
    ("ds", "n,t", int32(7) + b"\2\0", "n:7\tt:\t\n"),
    ("ds", "n,t", int32(7, 2) + b"h\0", "n:7\tt:\t\nn:0\tt:\t\n"),
    ("ds", "n,t", int32(7, 2**31 - 1), "n:7\tt:\t\n"),
    ("ds", "n,t", int32(7, -1), "n:7\tt:\t\n"),
    ("ds", "n,t", int32(7, 1) + b"a\0b\0" + int32(8) + string("hi"), "n:7\tt:\t\nn:8\tt:hi\t\n"),
]

NO_WIDE_STRING = "current is no support 'S' format\n"

OTHERS = [
    # print format, print tags, status and values of the reply, what is printed
    ("d", "n", int32(-1), "request failure! ret:0xffffffff\ncall failed\n"),
    ("d", "n", int32(16, 7), "request failure! ret:0x10\ncall failed\n"),
    ("d", 255 * "n", int32(0, 1), ""),  # has no tag
    ("dx", "a,b", int32(0, 1, 2), "invalid fmt info!\n"),
    ("Sd", "a,b", int32(0, 1, 2), 2 * NO_WIDE_STRING + RULE + "b:1\t\nb:2\t\n" + RULE),
]


def console_with(rows):
    write_commands({"print_format": letters, "print_tags": tags} for letters, tags, *_ in rows)
    return Console("lamp")


def test_records_are_printed_between_rules(played_service):
    console = console_with(RECORDS)
    for i, (letters, _, values, lines) in enumerate(RECORDS):
        _, printed = played_service.answer(console, f"c{i}", int32(0) + values)
        assert (letters, values, printed) == (letters, values, RULE + lines + RULE)


def test_other_replies(played_service):
    console = console_with(OTHERS)
    for i, (letters, _, reply, expected) in enumerate(OTHERS):
        _, printed = played_service.answer(console, f"c{i}", reply)
        assert (letters, reply, printed) == (letters, reply, expected)


@pytest.mark.parametrize(
    "length, expected",
    [(0, RULE + RULE), (4, RULE + RULE), (4089, "call failed\n"), (2**32 - 1, "call failed\n")],
)
def test_the_page_tells_the_length(played_service, length, expected):
    _, printed = played_service.answer(console_with([("d", "n")]), "c0", int32(0, 1), length)
    assert printed == expected
