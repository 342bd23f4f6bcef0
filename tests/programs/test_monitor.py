"""`monitor` shows what others say to the service."""

import fcntl
import json
import pathlib
import re
import signal
import struct
import subprocess
import termios
import time

import pytest
from page import PAGE, POSTED, READY, int32, int64
from programs import PATIENCE, Program, tool, wait_until
from test_documents import blocks

pytestmark = pytest.mark.usefixtures("example_catalogue", "played_service")

GETVOL = (POSTED, int32(0x202, 0))
VOLUME = (READY, int32(0, 0, 35))
EXCHANGES = [
    # messages, and the line that they show, without time and latency
    ([GETVOL, VOLUME], "audio getvol 0 -> output=0, volume=35"),
    ([GETVOL, (READY, int32(0, 0, 1, 1, 2))], "audio getvol 0 -> output=0, volume=1; output=1, "),
    ([GETVOL, (READY, int32(-5))], "audio getvol 0 -> status -5"),
    ([GETVOL, (READY, int32(0, 7))], "audio getvol 0 -> status 0 (the reply is not whole records "),
    ([GETVOL, (READY, b"")], "audio getvol 0 (the reply is too short for a status) [02 00 00 00 "),
    ([VOLUME], "-> status 0 (no request seen)"),
    ([GETVOL, (0, b"")], "audio getvol 0 -> no reply seen"),
    ([(POSTED, int32(0x202)), (0, b"")], "0x202 (the arguments do not decode) [01 00 00 00 04 "),
    ([(POSTED, int32(0x999)), (0, b"")], "0x999 (no command has this instruction) [01 00 00 00 "),
    ([(4, bytes(4089))], "(forbidden flags) (forbidden length) [04 00 00 00 f9 0f 00 00]"),
]


class Monitor(Program):
    """The monitor, ready to see what the test puts into the page."""

    def __init__(self, *args, **options):
        super().__init__("ko_cmd_tool", "monitor", *args, **options)
        wait_until(lambda: "/.tv" in self.proc("maps"), self)

    def proc(self, name):
        return pathlib.Path(f"/proc/{self.pid}/{name}").read_text()

    def sleeps(self):
        return int(re.search(r"\nvoluntary_ctxt_switches:\s*(\d+)", self.proc("status"))[1])

    def put(self, flags, data):
        """Puts a message into the page, and waits until the monitor has polled it."""
        write(flags, data)
        enough = self.sleeps() + 4
        wait_until(lambda: self.sleeps() >= enough, self)

    def see(self, *messages):
        """What it shows of messages; puts them again if the machine kept it from polling."""
        before = len(self.shown())
        for flags, data in [(0, b""), *messages]:
            self.put(flags, data)
        shown = self.shown()[before:]
        return self.see(*messages) if "looked away" in shown else shown


def write(flags, data):
    with open(PAGE, "r+b", buffering=0) as page:
        page.write(struct.pack("<II", flags, len(data)) + data)


def without_times(line):
    return re.sub(r"^\d\d:\d\d:\d\d\.\d{3} | \(\d+ ms\)", "", line)


def test_exchange_is_one_line():
    monitor = Monitor()
    for messages, line in EXCHANGES:
        (shown,) = monitor.see(*messages).splitlines()
        assert without_times(shown).startswith(line)
    (example,) = blocks("docs/tool.md", "text")
    assert set(map(without_times, example.splitlines())) <= {line for _, line in EXCHANGES}


def test_exchange_as_json():
    monitor = Monitor("--json")
    number = 2**53 + 1  # the first one that a double does not have
    request = (POSTED, int32(0x103) + int64(number) + int32(8))
    reply = (READY, int32(0) + int64(number) + int32(8))
    latencies = []
    for polls in (40, 4, 20):
        start = time.monotonic()
        shown = json.loads(monitor.see(*[request] * (polls // 4), reply))
        latencies.append(shown["latency_ms"])
        assert polls - 4 <= latencies[-1] <= 1000 * (time.monotonic() - start)
    assert monitor.end(signal.SIGTERM) == 0
    summary = json.loads(monitor.shown().splitlines()[-1])
    assert [summary[name] for name in ("min_ms", "median_ms", "max_ms")] == sorted(latencies)
    told = ("message", "module", "command", "arguments", "status", "records")
    assert [shown[name] for name in told] == [
        *("exchange", "tuner", "setfreq", [number, 8], 0),
        [{"frequency Hz": number, "bandwidth kHz": 8}],
    ]


def test_reply_that_came_while_nobody_looked():
    monitor = Monitor("--count", 2)
    monitor.put(*GETVOL)
    monitor.send_signal(signal.SIGSTOP)
    wait_until(lambda: "(stopped)" in monitor.proc("status"))
    write(*VOLUME)
    time.sleep(0.01)
    monitor.send_signal(signal.SIGCONT)
    assert monitor.wait(PATIENCE) == 0
    request, reply, summary = monitor.shown().splitlines()
    assert " getvol 0 -> no reply seen (looked away for " in request
    assert " -> status 0 (no request seen) (looked away for " in reply
    assert " exchanges=0 requests_without_reply=1 replies_without_request=1" in summary


def test_shows_only_what_is_asked_for():
    assert tool("monitor", "nope").status == tool("monitor", "aud", "nope").status == 3
    for words, shows in [(["audio"], True), (["aud", "getvol"], True), (["aud", "eq"], False)]:
        assert bool(Monitor(*words).see(GETVOL, VOLUME)) == shows


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM, signal.SIGHUP])
def test_ends_while_its_reader_stalls(number):
    monitor = Monitor(stdout=subprocess.PIPE)
    fcntl.fcntl(monitor.stdout, fcntl.F_SETPIPE_SZ, 4096)
    monitor.put(POSTED, bytes(4088))
    write(0, b"")
    wait_until(lambda: fcntl.ioctl(monitor.stdout, termios.FIONREAD, bytes(4)) == int32(4096))
    assert monitor.end(number) == 1
    assert "standard output: Interrupted system call" in monitor.shown()


def test_page_is_mapped_to_be_read():
    assert re.findall(r" (\S+) .*/\.tv\n", Monitor().proc("maps")) == ["r--s"]
