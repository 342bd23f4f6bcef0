"""The page file: who creates it, what it may be, and what a change of it does to its users."""

import os
import pathlib
import signal

import pytest
from page import PAGE, PAGE_SIZE, PlayedService, int32
from programs import PATIENCE, RULE, Console, Program, run, tool

VOLUME = f"{RULE}output:0\tvolume:35\t\n{RULE}"
MUTED = f"{RULE}muted:1\t\n{RULE}"
FAILED = "call failed\n"


def size_and_mode(path=PAGE):
    info = os.stat(path)
    return info.st_size, oct(info.st_mode & 0o777)


@pytest.mark.parametrize(
    "program", ["ko_tv_service", "ko_cmd_tool call tun lock", "ko_cmd_tool monitor"]
)
def test_only_a_console_takes_another_than_a_regular_file(example_catalogue, program):
    target = PAGE.parent / "target"
    target.touch(mode=0o600)
    PAGE.symlink_to("target")
    assert b"/.tv: is a symbolic link" in run(*program.split()).stderr
    assert size_and_mode(target) == (0, "0o600")
    PAGE.unlink()
    os.mkfifo(PAGE)
    assert b"/.tv: is not a regular file" in run(*program.split()).stderr


def test_a_service_keeps_a_larger_file_and_refuses_a_second_service(stand_in):
    PAGE.write_bytes(bytes(10000))
    PAGE.chmod(0o604)
    stand_in()
    assert size_and_mode() == (10000, "0o604")
    assert b"another service" in run("ko_tv_service").stderr


def test_a_service_lets_others_use_its_new_file():
    Program("ko_tv_service", umask=0o077).wait_for("serving")
    assert size_and_mode() == (PAGE_SIZE, "0o660")


def test_a_console_creates_an_empty_file():
    run("ko_cmd_debug", umask=0o027)
    assert size_and_mode() == (0, "0o640")


def test_a_console_follows_a_link(example_catalogue):
    PAGE.symlink_to("target")
    service = PlayedService()
    console = Console("aud")
    console.type("mute 1")
    assert service.request(console) == int32(0x203, 1)


@pytest.mark.parametrize("target, errno", [(".tv", 40), ("none/.tv", 2), ("/dev/null/.tv", 20)])
def test_a_console_without_a_page_ends(target, errno):
    PAGE.symlink_to(target)
    message = f"\ncan't open swap file root/data/vendor/.tv, errno = {errno}\n"
    assert run("ko_cmd_debug").stdout.decode().endswith(message)


def test_a_console_uses_what_the_kernel_still_maps(example_catalogue, stand_in):
    console = Console("aud")
    assert console.answer("setvol 0 35") == FAILED  # there is no service yet
    stand_in()
    assert console.answer("setvol 0 35") == VOLUME
    for size, expected in (4095, VOLUME), (1, VOLUME), (0, FAILED), (PAGE_SIZE, VOLUME):
        os.truncate(PAGE, size)
        assert console.answer("setvol 0 35") == expected, size
    pathlib.Path("short").write_text("x")
    os.rename("short", PAGE)
    assert console.answer("setvol 0 35") == VOLUME
    PAGE.unlink()
    assert console.answer("setvol 0 35") == VOLUME


def test_truncation_ends_the_wait_for_a_reply(played_service, example_catalogue):
    console = Console("aud")
    console.type("mute 1")
    played_service.request(console)
    os.truncate(PAGE, 0)
    assert console.printed() == FAILED
    os.truncate(PAGE, PAGE_SIZE)
    call = Program("ko_cmd_tool", "call", "aud", "mute", 1)
    played_service.request(call)
    os.truncate(PAGE, 0)
    assert call.wait(PATIENCE) == 6
    assert f"{PAGE}: the page file is empty" in call.shown()


def test_a_console_waits_at_its_own_page(played_service, example_catalogue, stand_in):
    console = Console("aud")
    console.type("mute 1")
    played_service.request(console)
    os.truncate(PAGE, 0)
    os.truncate(PAGE, PAGE_SIZE)  # before the console looks again
    played_service.reply(int32(0, 1))
    assert console.printed() == MUTED
    PAGE.unlink()
    stand_in()  # with a new file
    console.type("mute 1")
    played_service.request(console)
    played_service.reply(int32(0, 1))
    assert console.printed() == MUTED


def test_a_bus_error_elsewhere_ends_a_service(example_catalogue, stand_in):
    service = stand_in()
    assert tool("call", "tun", "lock").status == 0
    assert service.end(signal.SIGBUS) == -signal.SIGBUS
