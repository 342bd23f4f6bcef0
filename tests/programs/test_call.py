"""`call` sends one command to the service and prints the reply."""

import json
import signal
import struct
from math import inf, nan

import pytest
from catalogue import write_commands
from page import PAGE, POSTED, READY, int32, int64, string, write_page
from programs import PATIENCE, RULE, Program, Terminal, tool

ECHOED = [
    # words, what is printed
    ("audio setvol 0 35", RULE + "output:0\tvolume:35\t\n" + RULE),
    ("pic setmode \x9bé", RULE + "mode:\x9bé\t\n" + RULE),
    ("scan stop", ""),
    ("--json aud eq 3 -1.0000001", '{"band":3,"gain dB":-1.0000001}\n'),
    ('--json pic setmode a"\\x5c\x01é', '{"mode":"a\\"\\\\x5c\\u0001é"}\n'),
    ("--json-strings -- tun setfreq -1 8", '{"frequency Hz":"-1","bandwidth kHz":8}\n'),
]
REPLIES = [
    # print format, print tags, reply, exit status, what is said with --json
    ("d", "a", int32(0), 0, ""),
    ("d", "", int32(0, 1, -1), 0, '{"value1":1}\n{"value1":-1}\n'),
    ("D", "a", int32(0) + int64(-(2**63)), 0, '{"a":-9223372036854775808}\n'),
    ("fF", "a,b", struct.pack("<ifd", 0, nan, -inf), 0, '{"a":null,"b":null}\n'),
    ("s", "a", int32(0) + string(""), 0, '{"a":""}\n'),
    ("ddSd", "x,x,,x_2", int32(0, 1, 2, 3), 0, '{"x":1,"x_2":2,"x_2_2":3}\n'),
    ("ddd", "\udcff,\udcfe", int32(0, 1, 2, 3), 0, '{"�":1,"�_2":2,"value3":3}\n'),
    ("d", "a", b"ab", 6, "too short for a status: 61 62"),
    ("d", "a", int32(-2), 5, 'the service refused: status -2 (0xfffffffe)","status":-2}\n'),
    ("S", "", int32(0, 0), 6, 'print format "S": 4 bytes after the status; bytes: 00 00 00 00 00 '),
    ("d", "a", int32(0, 1) + b"ab", 6, "value 1 of record 2 (int32) at byte 8: 4 bytes needed, 2 "),
    ("s", "a", int32(0, -1), 6, ": a count of -1 units"),
    ("ds", "", int32(0, 7, 4, 0, 0), 6, "value 2 of record 1 (string) at byte 8: 4 units need 12 "),
    ("s", "a", int32(0, 2**31 - 1), 6, ": 2147483647 units need 4294967296 bytes, 0 are left"),
    ("s", "a", int32(0, 1) + b"abc\0", 6, ": no zero after 1 units"),
]
TERMINAL = [
    # words, what a terminal is not to obey
    ("call lamp c0", "t\\x9b\\x7f:\\x1b\\x9b\\u0000\t"),
    ("call --json lamp c0", '{"t\\u009b\\u007f":"\\u001b\\u009b\\u0000"}'),
    ("list --json", '"t\\u009b\\u007f"'),
]
UNANSWERED = [
    # flags of the page, options, exit status
    (0, [], 4),
    (POSTED, [], 7),
    (POSTED, ["--force"], 4),
    (POSTED | READY, [], 4),
]


def failed_call(*words):
    """The exit status and reason of a call that fails; with --json it says them in both streams."""
    result = tool("call", "--json", *words)
    reason = result.messages.removeprefix("ko_cmd_tool: ").removesuffix("\n")
    assert json.loads(result.output) == {"exit_status": result.status, "reason": reason}
    return result.status, reason


def test_echoed_values(example_catalogue, stand_in):
    stand_in()
    printed = [(words, tool("call", *words.split()).output) for words, _ in ECHOED]
    assert printed == ECHOED


@pytest.mark.parametrize("letters, tags, reply, status, said", REPLIES)
def test_reply(played_service, letters, tags, reply, status, said):
    write_commands([{"print_format": letters, "print_tags": tags}])
    caller = Program("ko_cmd_tool", "call", "--json", "lamp", "c0")
    played_service.request(caller)
    played_service.reply(reply)
    assert caller.wait(PATIENCE) == status
    assert said in caller.shown()


@pytest.mark.parametrize("words, shown", TERMINAL)
def test_on_a_terminal(played_service, words, shown):
    write_commands([{"print_format": "s", "print_tags": "t\x9b\x7f"}])
    terminal = Terminal("ko_cmd_tool", *words.split(" "))
    if "call" in words:
        played_service.request(terminal)
        played_service.reply(int32(0) + string("\x1b\x9b\0"))
    terminal.expect_exact(shown)


@pytest.mark.parametrize("flags, options, status", UNANSWERED)
def test_no_service(example_catalogue, played_service, flags, options, status):
    write_page(flags, b"earlier")
    failed, reason = failed_call("--timeout", 30, *options, "tun", "lock")
    assert failed == status
    assert "no reply within 30 ms, and no service has the page" in reason
    request = bytes([POSTED, 0, 0, 0]) + int32(4, 0x101)
    assert (played_service.page[: len(request)] == request) == (status == 4)


def test_slow_service(example_catalogue, stand_in):
    service = stand_in("--delay", 60000)
    for status, fate in (4, "the request stays in it"), (7, "nothing was sent"):
        failed, reason = failed_call("--timeout", 30, "tun", "lock")
        assert failed == status
        assert f"no reply within 30 ms, though a service has the page; {fate}" in reason
    assert (service.end(signal.SIGTERM), PAGE.read_bytes()[0]) == (0, POSTED)


def test_what_keeps_a_request_from_being_sent(example_catalogue):
    unknown = 'unknown command "lok" of the module "tuner"; did you mean "lock"?'
    assert failed_call("tun", "lok") == (3, unknown)
    assert failed_call("tun", "lock") == (6, f"the page {PAGE}: No such file or directory")
