"""What an engineer types, and what the console shows."""

import re

import pytest
from catalogue import block, write_catalogue
from programs import Console, typed_at_once

SESSION = """\
TV $hElP
======= Command ============== Description ============
\taud\t\tsound output
\ttun\t\tfront end
TV $tun
tuner@TV $?
======= Command ============== Description ============
\tlock\t\tis it locked
\trate\t\t
tuner@TV $ lock  now
===========================
locked:1\t
===========================
tuner@TV $aud
audio@TV $help
======= Command ============== Description ============
audio@TV $QuIt
TV $tun
tuner@TV $Q
TV $q
"""

ILLEGAL = ["tun ", "tun x", "help me", "lOck", "loc", "lock2", 300 * "w"]


@pytest.fixture(autouse=True)
def catalogue(television):
    lock = {"description": "is it locked", "print_format": "d", "print_tags": "locked"}
    write_catalogue(
        block("tuner", command="tun", instruction=-2, description="front end")
        + block("audio", command="aud", description="sound output"),
        block("lock status", command="lock", belong_module="tuner", **lock)
        + block("lost", belong_module="none", instruction=3, description="lost")
        + block("symbol rate", command="rate", belong_module="tuner"),
    )


def test_from_help_to_quit(stand_in):
    stand_in()
    typed = re.findall(r"TV \$(.*\n)", SESSION)
    shown = typed_at_once("".join(typed) + "not read\n").replace("\n\r", "\n")
    assert shown.endswith("cmds.conf\n" + SESSION)


def test_other_lines(played_service):
    console = Console()
    assert console.answer("lock") == "Error:Illegal Command.\n"
    console.answer("tun")
    answers = [(line, console.answer(line)) for line in ILLEGAL]
    assert answers == [(line, "Error:Illegal Command.\n") for line in ILLEGAL]
    assert console.answer("  ") == ""
    assert played_service.answer(console, "rate")[0] == [4 * b"\xff"]  # -1
