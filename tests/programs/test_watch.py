"""`watch` repeats a call and shows its values as they change."""

import json
import re
import shlex
import signal
import struct

import pexpect
import pyte
import pytest
from catalogue import write_commands
from page import int32, string
from programs import EMULATOR, PATIENCE, Program, Terminal, command_line, run, wait_until

pytestmark = pytest.mark.usefixtures("example_catalogue")

PORTS = int32(0, 1) + string('on,"13\x1bV"') + int32(2) + string("off\n")
REFUSED = int32(5)
ODD = 2**53 + 1  # which is no double
TICKS = [
    struct.pack("<iqf", 0, ODD, 30),
    struct.pack("<iqfqf", 0, ODD - 1, 21, 7, 24),
    REFUSED,
    struct.pack("<iqf", 0, ODD, 21),
]
PICTURE = """\
lamp c0 interval=1ms samples=4 failed=1
TIME
last failure TIME the service refused: status 5 (0x5)
value    now               min               max               mean
tick #1  9007199254740993  9007199254740992  9007199254740993  9007199254740992.000000  ▁▁ ▁
snr #1   21.000000         21.000000         30.000000         24.000000                █▁ ▁
tick #2                    7                 7                 7.000000                  ▁
snr #2                     24.000000         24.000000         24.000000                 ▁
"""
NARROW = """\
tun lnb interval=1ms
samples=3 failed=1
TIME
last failure TIME
the service refused:
status 5 (0x5)
value     now
port #1   1    ▁▁
state #1  TIME on,"13\\
2 more lines
"""
CSV = '''\
time,record,error,port,state
TIME,1,,1,"on,""13\x1bV"""
TIME,2,,2,"off
"
TIME,,the service refused: status 5 (0x5),,
TIME,,,,
'''


def answered(service, program, *replies):
    for reply in replies:
        service.request(program)
        service.reply(reply)
    return program


def without_times(text):
    rows = re.sub(r"(\S*T)?\d\d:\d\d:\d\d[^ ,\n]*", "TIME", text).splitlines()
    return "".join(row.rstrip() + "\n" for row in rows)


def picture(service, words, replies, lines, columns):
    """The last picture on a terminal of that size, its bold rows' names, and what stays of it."""
    options = ["--interval", 1, "--count", len(replies), *words]
    watch = Terminal("ko_cmd_tool", "watch", *options, dimensions=(lines, columns))
    answered(service, watch, *replies).expect_exact("\x1b[?1049l")
    screen = pyte.Screen(columns, lines)
    pyte.Stream(screen).feed(watch.before)
    bold = [screen.display[y][:7] for y in range(lines) if screen.buffer[y][0].bold]
    watch.expect(pexpect.EOF)
    stays = re.sub(r"\x1b\[[^a-z]*[a-z]", "", watch.before)
    return without_times("\n".join(screen.display).rstrip()), bold, without_times(stays)


def test_picture(played_service):
    write_commands([{"print_format": "Df", "print_tags": "tick,snr"}])
    shown = picture(played_service, ["lamp", "c0"], TICKS, 9, 98)
    assert shown == (PICTURE, ["tick #1", "tick #2", "snr #2 "], PICTURE)


def test_picture_on_a_small_terminal(played_service):
    assert picture(played_service, ["tun", "lnb"], [PORTS, PORTS, REFUSED], 10, 26)[0] == NARROW


def test_csv(played_service):
    watch = Program("ko_cmd_tool", "watch", "--interval", 1, "--count", 3, "tun", "lnb")
    answered(played_service, watch, PORTS, REFUSED, int32(0)).wait(PATIENCE)
    assert without_times(watch.shown()) == CSV


def test_json(played_service):
    watch = Program("ko_cmd_tool", "watch", "--json", "--interval", 1, "--count", 2, "tun", "lnb")
    answered(played_service, watch, PORTS, REFUSED).wait(PATIENCE)
    shown, failed = map(json.loads, watch.shown().splitlines())
    assert shown["records"] == [{"port": 1, "state": 'on,"13\x1bV"'}, {"port": 2, "state": "off\n"}]
    assert "status 5" in failed["error"]


@pytest.mark.parametrize("output", ["--csv", "--json"])
def test_full_device(output):
    with open("/dev/full", "w") as full:
        assert run("ko_cmd_tool", "watch", output, "tun", "lnb", stdout=full).returncode == 1


@pytest.mark.parametrize("number", [signal.SIGHUP, signal.SIGINT, signal.SIGQUIT, signal.SIGTERM])
def test_end(played_service, number):
    watch = Program("ko_cmd_tool", "watch", "--json", "tun", "lnb")
    played_service.request(watch)
    assert watch.end(number) == 0
    assert "no reply until stopped" in json.loads(watch.shown())["error"]
    played_service.reply(REFUSED)
    watch = Terminal("ko_cmd_tool", "watch", "--interval", 60000, "--timeout", 60000, "tun", "lnb")
    answered(played_service, watch, PORTS).expect_exact("samples=1")
    watch.sendcontrol("z")  # is ignored, as no shell could resume it
    watch.expect_exact("\x1b[?1049h")
    assert watch.end(number) is None
    assert "\x1b[?25h\x1b[?1049l" in watch.before


@pytest.mark.skipif("valgrind" in EMULATOR, reason="nothing stops its programs but SIGSTOP")
def test_keys_while_a_call_waits(played_service):
    command = command_line("ko_cmd_tool", "watch", "--timeout", 60000, "tun", "lnb")
    script = f"{shlex.join(command)}; echo suspended; fg"
    with pexpect.spawn("sh", ["-m", "-c", script], PATIENCE, encoding="utf-8") as shell:
        wait_until(played_service.has_request)
        shell.sendcontrol("z")
        shell.expect_exact("\x1b[?1049l")
        shell.expect_exact("suspended")
        shell.expect_exact("\x1b[?1049h")
        shell.setwinsize(2, 80)
        shell.expect_exact("more lines")
