"""Closed and full streams: the console ends, and no lost result is called a success."""

import os
import pathlib
import signal
import subprocess

import pytest
from catalogue import CATALOGUE, write_commands
from page import PAGE, int32
from programs import Program, run

TOOL, SERVICE = "ko_cmd_tool", "ko_tv_service"


def closed(number):
    """The options of a program that starts without this stream.

    Under valgrind its report goes to another one: a file would take the stream's place.
    """
    report = f"--log-fd={1 if number == 2 else 2}"
    return {
        "preexec_fn": lambda: os.close(number),
        "env": {**os.environ, "VALGRIND_OPTS": report},
    }


def full():
    return {"stdout": open("/dev/full", "w"), "stderr": subprocess.PIPE}


@pytest.fixture(autouse=True)
def catalogue(television):
    write_commands([{"para_format": "S"}])


@pytest.mark.parametrize("streams", [full(), closed(0), closed(1), closed(2)])
def test_the_console_ends_without_its_streams(streams):
    assert run("ko_cmd_debug", input="help\nq\n", **streams).returncode == 0


def test_what_was_printed_is_out_while_the_console_waits(played_service):
    pathlib.Path("keys").write_text("lamp\nc0\n")
    console = Program("ko_cmd_debug", stdin=open("keys"))
    played_service.request(console)
    assert console.shown().endswith("\ncurrent is no support 'S' format\n")


def test_messages_of_the_system_stand_where_they_belong():
    PAGE.symlink_to("/dev/full")
    console = run("ko_cmd_debug", stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    assert b"cmds.conf\nmap share memery failed!\n: " in console.stdout


@pytest.mark.parametrize(
    "program, words",
    [(TOOL, "list"), (TOOL, "watch --count 1 lamp c0"), (TOOL, "--help"), (SERVICE, "--help")],
)
def test_a_result_that_cannot_be_written_is_a_failure(program, words):
    for output, reason in (full(), b"No space left"), (closed(1), b"Bad file descriptor"):
        result = run(program, *words.split(), **output)
        assert result.returncode == 1
        assert reason in result.stderr


def test_a_message_without_a_stream_is_not_written_to_the_page(played_service):
    call = Program("ko_cmd_tool", "call", "lamp", "c0", **closed(2))
    played_service.request(call)
    assert call.end(signal.SIGTERM) == -signal.SIGTERM
    assert PAGE.read_bytes().startswith(int32(1, 4, 0x901))


def test_a_message_without_a_stream_spoils_no_result():
    with open(CATALOGUE / "cmds.conf", "a") as commands:
        commands.write(f"[{'x' * 300}]\n")  # which is over the limit
    listing = run("ko_cmd_tool", "list", **closed(2))
    assert listing.returncode == 0
    assert b"c0" in listing.stdout
