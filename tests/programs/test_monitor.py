"""`monitor` shows what others say to the service."""

import json
import pathlib
import signal
import struct
import time

import pytest
from page import PAGE, POSTED, READY, int32
from programs import PATIENCE, Program, wait_until

pytestmark = pytest.mark.usefixtures("example_catalogue", "played_service")

GETVOL = int32(0x202, 0)
VOLUME = int32(0, 0, 35)
MESSAGES = [
    # flags, data, what is shown among other things
    (POSTED, GETVOL, " request module=audio command=getvol arguments=[0] instruction=0x202"),
    (READY, VOLUME, ' records=[{"output":0,"volume":35}]'),
    (READY, int32(-5), '["no request was seen before"]'),
    (POSTED, int32(0x999), '["no command has this instruction"]'),
    (
        POSTED,
        int32(0x202),
        '["no reply was seen to the request before","the arguments do not decode"]',
    ),
    (3, int32(-5), '["forbidden flags"]'),
    (POSTED, bytes(4089), '["no command has this instruction","forbidden length"]'),
    (0, b"", '["no reply was seen to the request before"]'),
]


def put(monitor, flags, data):
    """Puts a message into the page at once, and waits until the monitor has shown it."""
    lines = monitor.shown().count("\n")
    with open(PAGE, "r+b", buffering=0) as page:
        page.write(struct.pack("<II", flags, len(data)) + data)
    wait_until(lambda: monitor.shown().count("\n") > lines, monitor)


def test_messages():
    monitor = Program("ko_cmd_tool", "monitor", "--count", len(MESSAGES))
    for flags, data, _ in MESSAGES:
        put(monitor, flags, data)
    assert monitor.wait(PATIENCE) == 0
    parts = [part for _, _, part in MESSAGES]
    *lines, summary = monitor.shown().splitlines()
    assert parts == [part if part in line else line for part, line in zip(parts, lines)]
    assert "exchanges=2 " in summary and summary.endswith("requests_alone=2 replies_alone=1")


def test_latencies():
    monitor = Program("ko_cmd_tool", "monitor", "--json", "--hex")
    bounds = []
    for seconds in (0.04, 0.01, 0.02):
        start = time.monotonic()
        put(monitor, POSTED, GETVOL)
        time.sleep(seconds)
        put(monitor, READY, VOLUME)
        bounds.append((1000 * seconds, 1000 * (time.monotonic() - start)))
    assert monitor.end(signal.SIGINT) == 0
    *messages, summary = map(json.loads, monitor.shown().splitlines())
    assert messages[0]["bytes"] == "01 00 00 00 08 00 00 00 02 02 00 00 00 00 00 00"
    latencies = [reply["latency_ms"] for reply in messages[1::2]]
    assert all(least <= ms <= most for ms, (least, most) in zip(latencies, bounds, strict=True))
    told = [summary[name] for name in ("least_ms", "median_ms", "longest_ms")]
    assert told == sorted(latencies)


def test_page_is_mapped_to_be_read(played_service):
    monitor = Program("ko_cmd_tool", "monitor")
    put(monitor, POSTED, GETVOL)
    maps = pathlib.Path(f"/proc/{monitor.pid}/maps").read_text().splitlines()
    assert [row.split()[1] for row in maps if row.endswith("/.tv")] == ["r--s"]
