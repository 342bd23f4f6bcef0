"""`watch` repeats a call and shows its values as they change."""

import json
import re
import signal
import struct

import pexpect
import pyte
import pytest
from page import int32, string
from programs import PATIENCE, Program, Terminal

pytestmark = pytest.mark.usefixtures("example_catalogue")

SIGNAL = [
    struct.pack("<iiff", 0, level, snr, 0) for level, snr in [(-47, 30), (-52, 21), (-50, 24)]
]
PORTS = int32(0, 1) + string('on,"13\x1bV"') + int32(2) + string("off\n")
REFUSED = int32(5)
PICTURE = """\
tun sig samples=4 failed=1
TIME
value         now        least      most       mean
strength dBm  -50        -52        -47        -49.666667  █▁ ▄
snr dB        24.000000  21.000000  30.000000  25.000000   █▁ ▃
ber           0.000000   0.000000   0.000000   0.000000    ▁▁ ▁
"""
NARROW = """\
tun lnb samples=3 failed=1
TIME the service r
efused: status 5 (0x5)
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


def pictures(service, command, replies, lines, columns):
    """The last picture on a terminal of that size, and what stays after the end."""
    options = ["--interval", 1, "--count", len(replies)]
    size = (lines, columns)
    watch = Terminal("ko_cmd_tool", "watch", *options, "tun", command, dimensions=size)
    answered(service, watch, *replies).expect_exact("\x1b[?1049l")
    screen = pyte.Screen(columns, lines)
    pyte.Stream(screen).feed(watch.before)
    watch.expect(pexpect.EOF)
    return without_times("\n".join(screen.display)), without_times(watch.before)


def test_picture(played_service):
    replies = [*SIGNAL[:2], REFUSED, SIGNAL[2]]
    assert pictures(played_service, "sig", replies, 6, 80) == (PICTURE, PICTURE)


def test_picture_on_a_small_terminal(played_service):
    assert pictures(played_service, "lnb", [PORTS, PORTS, REFUSED], 7, 26)[0] == NARROW


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


@pytest.mark.parametrize("number", [signal.SIGHUP, signal.SIGINT, signal.SIGTERM])
def test_end(played_service, number):
    watch = Program("ko_cmd_tool", "watch", "--interval", 60000, "tun", "lnb")
    answered(played_service, watch, PORTS).wait_for("off")
    assert watch.end(number) == 0
    watch = Program("ko_cmd_tool", "watch", "--json", "tun", "lnb")
    played_service.request(watch)
    assert watch.end(number) == 0
    assert "no reply until stopped" in json.loads(watch.shown())["error"]
