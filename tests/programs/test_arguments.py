"""Typed words become the bytes after a request's instruction, or are refused."""

import struct

import pytest
from catalogue import block, write_catalogue
from page import int32, int64, string
from programs import Console

ENCODED = [
    # para format, typed, bytes
    ("", "anything", b""),
    ("dd", "3 0x10", int32(3, 16)),
    ("dd", "1 2 3", int32(1, 2)),
    ("d", "12xy", int32(12)),
    ("d", "4294967295", int32(2**31 - 1)),
    ("D", "-9223372036854775808", int64(-(2**63))),
    ("fF", "-2.5e3 0.1", struct.pack("<fd", -2500, 0.1)),
    ("sd", "hello 3", string("hello") + int32(3)),
]


@pytest.fixture
def console(letters):
    write_catalogue(
        block("lamp", command="lamp", instruction="0x900"),
        block(
            "try",
            command="try",
            belong_module="lamp",
            instruction="0x901",
            para_format=letters,
            description="some help",
        ),
    )
    return Console("lamp")


@pytest.mark.parametrize("letters, typed, expected", ENCODED)
def test_become_bytes(played_service, console, letters, typed, expected):
    console.type(f"try {typed}")
    assert played_service.request(console) == int32(0x901) + expected
    played_service.reply(int32(0))
