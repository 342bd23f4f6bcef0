"""The entries that the console sends to the platform's log daemon, or else to syslog."""

import os
import re
import socket
import struct

import pytest
from catalogue import block, write_catalogue
from page import PAGE, int32
from programs import Console, LogDaemon


def test_entries(log_daemon, played_service):
    peak = {"belong_module": "m0", "print_format": "F", "print_tags": "peak"}
    write_catalogue(
        "".join(block(f"m{i}", command=f"mod{i}", instruction=hex(i)) for i in range(257)),
        "".join(block(f"{i}", command=f"peak{i}", **peak) for i in range(257)),
    )
    console = Console()
    for word in ("mod0", "mod1", "mod0"):
        console.answer(word)
    played_service.answer(console, "peak0", int32(0) + struct.pack("<d", 1e300))
    os.truncate(PAGE, 0)
    console.answer("peak0")
    assert [re.sub(r"(Table|Buf):\d+", r"\1", entry) for entry in log_daemon.entries()] == [
        "5 KoMW_Ko_cmd_pri [FillWordTable] completion offers the first 256 of 257 module words",
        "5 KoMW_Ko_cmd_pri [FillWordTable] completion offers the first 256 of 257 command words",
        "6 KoMW_Ko_cmd_pri [ParseDecimalfmt:68] snprintf_s failed, ret = -1",
        "6 KoMW_Ko_cmd_pri [CopyCmdToBuf] exchange failed: the page file is empty",
    ]


def fill(daemon):
    """Sends to a daemon until it takes no more."""
    with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as sender:
        sender.setblocking(False)
        with pytest.raises(BlockingIOError):
            while True:
                sender.sendto(b"", daemon.getsockname())


def test_a_stalled_daemon_is_not_waited_for(log_daemon, played_service, example_catalogue):
    console = Console("tun")
    os.truncate(PAGE, 0)
    fill(log_daemon)
    with LogDaemon("root/dev/log") as syslog:
        assert console.answer("lock") == "call failed\n"
        assert b" ko_cmd_debug: KoMW_Ko_cmd_pri: [CopyCmdToBuf:" in syslog.recv(4096)
        fill(syslog)
        assert console.answer("lock") == "call failed\n"
