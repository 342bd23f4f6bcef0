"""What the console says and offers when catalogue files are missing, broken or large."""

import os
import pathlib
import re

import pytest
from catalogue import CATALOGUE, block, write_catalogue
from programs import typed_at_once

LAMP = block("lamp", command="lamp", instruction=9)
MODS = CATALOGUE / "mods.conf"
CMDS = CATALOGUE / "cmds.conf"

NOTHING_TO_OFFER = """\
ParseModules fail or ParseCmds fail.
TV $Error:modCount+cmdCount=0
help
======= Command ============== Description ============
TV $Error:modCount+cmdCount=0
lamp
Error:Illegal Command.
TV $Error:modCount+cmdCount=0
q
"""


def shown(typed):
    return typed_at_once(typed).replace("\n\r", "\n")


@pytest.mark.parametrize("path, message", [(MODS, "ParseModules fail"), (CMDS, "ParseCmds fail")])
@pytest.mark.parametrize(
    "make, reason",
    [
        (lambda path: None, "Path:(null)\nko_get_one_cfg_file failed. filePath:"),
        (pathlib.Path.touch, ".conf is empty!"),
        (os.mkfifo, ".conf\nfile path error or open file failure"),
        (pathlib.Path.mkdir, ".conf\nfile path error or open file failure"),
        (lambda path: path.symlink_to("nothing"), ".conf\nfile path error or open file failure"),
        # Opens, but its first byte cannot be read.
        (lambda path: path.symlink_to("/proc/self/mem"), "file path error or open file failure"),
    ],
)
def test_one_bad_file_is_no_catalogue(path, message, make, reason):
    write_catalogue(LAMP, block("on", command="on", belong_module="lamp"))
    path.unlink()
    make(path)
    output = shown("\thelp\nlamp\nq\n")
    assert f"{reason}\n{message}\n" in output
    assert output.endswith(NOTHING_TO_OFFER)


def test_long_rows_and_odd_numbers_are_told():
    write_catalogue(f"[{254 * 't'}]\n{LAMP}{256 * 'k'}=v\n", "[on]\ninstruction=zz")
    assert re.findall("(?m)^str.*", shown("")) == [
        "str size:256 too large, max len:256",
        "str size:258 too large, max len:256",
        "str size:258 too large, max len:256",
        "strtol:zz is not figure",
    ]


def test_the_first_folder_wins():
    for folder in ("vendor", "odm", "data/vendor"):
        write_catalogue(LAMP.replace("[lamp]", f"[{folder}]"), "x", f"root/{folder}/etc/atv/dbg")
        assert f"TV $lamp\n{folder}@TV $" in shown("lamp\n")


def test_completion_offers_256_words_and_the_rest_can_be_typed():
    write_catalogue(
        "".join(block(f"m{i}", command=f"w{i}x", instruction=hex(i)) for i in range(257)),
        "".join(block(f"{i}", command=f"c{i}.x", belong_module="m0") for i in range(257)),
    )
    assert shown("w98\t\nw99\t\nw99x\nw0x\nc98.\t\nc99.\t\nc99.x\n").endswith(
        "TV $w98x\n"
        "m98@TV $w99\n"
        "Error:Illegal Command.\n"
        "m98@TV $w99x\n"
        "m99@TV $w0x\n"
        "m0@TV $c98.x\n"
        "call failed\n"
        "m0@TV $c99.\n"
        "Error:Illegal Command.\n"
        "m0@TV $c99.x\n"
        "call failed\n"
        "m0@TV $"
    )


def test_a_large_catalogue():
    write_catalogue(LAMP.replace("\n", "\r\n"), "")
    with open(CMDS, "w") as file:
        file.writelines(f"[t]\ncommand=c{i}\nbelong module=lamp\n" for i in range(100_000))
        file.writelines(10_000_000 * "x" + "\n" for _ in range(10))
        file.write(1000 * "\0")
    assert shown("lamp\nhelp\n").count("\t\t\n") == 100_000
