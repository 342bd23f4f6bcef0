"""Typed words become the bytes after a request's instruction, or are refused."""

import struct

from catalogue import write_commands
from hypothesis import given, settings
from hypothesis.strategies import characters, floats, integers, text
from page import int32, int64, string
from programs import Console

ENCODED = [
    # para format, typed, bytes
    ("", b"anything", b""),
    ("dd", b" 3\v0x10\f5", int32(3, 16)),
    ("d", b"0X1f", int32(31)),
    ("d", b"017", int32(17)),
    ("d", b"x", int32(0)),
    ("d", b"12xy", int32(12)),
    ("d", b"-0x10", int32(0)),
    ("d", b"4294967295", int32(2**31 - 1)),
    ("d", b"-99999999999999999999", int32(-(2**31))),
    ("d", b"1".ljust(253, b"x"), int32(1)),
    ("Ds", b"12xy", int64(12) + string("xy")),
    ("Ds", b"0x10", int64(0) + string("x10")),
    # Bytes that are not UTF-8 become what the platform makes of them.
    ("s", b"\xe2\x82x", string("\u20b8")),
    ("s", b"\xed\xa0\x80", string("\ud800")),
    ("s", b"\xf0\x9f\x98", string("")),
    ("s", b"\xc3\xa4\xff", string("")),
    ("s", b"\xc0\xaf", string("/")),
]

INT32 = integers(-(2**31), 2**31 - 1)
INT64 = integers(-(2**63), 2**63 - 1)

HELP = "parse para err. {} help info: \n\tsome help\ncall failed\n"

REFUSED = [
    # para format, typed, printed with the command's word
    ("dd", "1", HELP),
    ("D", "xyz", HELP),
    ("D", "9223372036854775808", HELP),
    ("f", "x", HELP),
    ("F", "1e999", HELP),
    ("sq", "  ", HELP),
    ("sq", "5", "para format err.\ncall failed\n"),
    ("d", "1".ljust(254, "x"), "Error:arg size:255 too large\n"),
]


def console_with(*para_formats):
    write_commands({"para_format": letters, "description": "some help"} for letters in para_formats)
    return Console("lamp")


def test_words_become_bytes(played_service):
    console = console_with(*[letters for letters, _, _ in ENCODED])
    for i, (_, typed, expected) in enumerate(ENCODED):
        requests, _ = played_service.answer(console, f"c{i} ".encode() + typed)
        assert (typed, requests) == (typed, [int32(0x901) + expected])


def test_other_words_are_refused_and_nothing_is_sent(played_service):
    console = console_with(*[letters for letters, _, _ in REFUSED])
    for i, (_, typed, expected) in enumerate(REFUSED):
        requests, printed = played_service.answer(console, f"c{i} {typed}")
        assert (typed, requests, printed) == (typed, [], expected.format(f"c{i}"))


def test_a_wide_string_takes_no_word(played_service):
    requests, printed = played_service.answer(console_with("Sd"), "c0 7")
    assert requests == [int32(0x901, 7)]
    assert printed == "current is no support 'S' format\n"


def test_every_value_arrives(played_service):
    console = console_with("dDfFs")
    # The editor takes these capitals for arrow keys.
    word = text(
        characters(min_codepoint=0x21, blacklist_characters="ABCD["), min_size=1, max_size=9
    )
    finite = {"allow_nan": False, "allow_infinity": False}

    @settings(max_examples=40, derandomize=True, database=None, deadline=None)
    @given(INT32, INT64, floats(width=32, **finite), floats(**finite), word)
    def arrive(number, wide, single, double, name):
        requests, _ = played_service.answer(console, f"c0 {number} {wide} {single} {double} {name}")
        numbers = struct.pack("<iqfd", number, wide, single, double)
        assert requests == [int32(0x901) + numbers + string(name)]

    arrive()
