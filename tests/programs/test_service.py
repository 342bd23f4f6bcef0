"""The stand-in decodes every request; a service of somebody else's talks to the same programs."""

import os
import shutil

import pytest
from catalogue import CATALOGUE, block, write_catalogue
from page import PAGE, PAGE_SIZE, POSTED, READY, int32, string, write_page
from programs import SOURCE, Program, run, tool, typed_at_once, wait_until

EXAMPLE = os.environ.get("KO_EXAMPLE", SOURCE / "build/test/tests/stranger/build/lamp_service")

NAME = {"para_format": "s", "print_format": "s"}
MODULES = block("lamp", command="lamp", instruction=0x900)
COMMANDS = (
    block("zero", command="zero", belong_module="lamp", instruction=0, print_format="d")
    + block("one", command="one", belong_module="lamp", instruction=1, para_format="d")
    + block("name", command="name", belong_module="lamp", instruction=2, **NAME)
)
LONG = 2029 * "n"
FULL_PAGE = f"{LONG} sample2 (1 records do not fit)"
DOES_NOT_DECODE = "arguments do not decode -> status -2"

REQUESTS = [
    # length, what the page holds before zeros, what the service says
    (0, b"", f"0x0 {DOES_NOT_DECODE}"),
    (2**32 - 1, b"", f"0x0 {DOES_NOT_DECODE}"),
    (4, b"", "0x0 zero -> status 0 1 2 3"),
    (4088, int32(1), f"0x1 {DOES_NOT_DECODE}"),
    (8, int32(1, 7), "0x1 one 7 -> status 0"),
    (12, int32(2) + string("\x1b"), "0x2 name \\x1b -> status 0 \\x1b sample2 sample3"),
    (4068, int32(2) + string(LONG), f"0x2 name {LONG} -> status 0 {FULL_PAGE}"),
    (4, int32(3), "0x3 unknown instruction -> status -1"),
]


def test_the_stand_in_answers_every_request(stand_in):
    write_catalogue(MODULES, COMMANDS)
    service = stand_in("--records", 3)
    for length, data, _ in REQUESTS:
        write_page(POSTED, data.ljust(PAGE_SIZE - 8, b"\0"), length)
        wait_until(lambda: PAGE.read_bytes()[0] == READY, service)
    service.wait_for(REQUESTS[-1][2])
    said = [line for line in service.shown().splitlines() if "status" in line]
    assert list(zip(REQUESTS, said)) == [(request, request[2]) for request in REQUESTS]


@pytest.mark.parametrize("words", ["bogus", "--delay 1x", "--records -1", "--status"])
def test_the_stand_in_takes_only_its_options(words):
    service = run("ko_tv_service", *words.split())
    assert service.returncode == 2
    assert b"usage: ko_tv_service [" in service.stderr


def test_the_example_service():
    shutil.copytree(SOURCE / "examples/service", CATALOGUE)
    assert tool("check", CATALOGUE).output == "0 errors, 0 warnings\n"
    Program(EXAMPLE, PAGE).wait_for("serving ")
    assert tool("call", "--timeout", 60000, "lamp", "set", 2, 37.5).status == 0
    assert '"percent":37.5}' in tool("call", "--timeout", 60000, "--json", "lamp", "get", 2).output
    printed = typed_at_once("lamp\nget 2\nget 7\nq\nq\n")
    assert "\nzone:2\tpercent:37.500000\t\n" in printed
    assert "\rrequest failure! ret:0xffffffea\n" in printed
    assert run("ko_tv_service").returncode == 1  # another service serves the page
