"""What `check` says of a catalogue: each directory below check/ has one, and its findings."""

import json
import pathlib

import pytest
from catalogue import CATALOGUE, block, write_catalogue
from programs import Terminal, tool

DIRECTORIES = sorted(pathlib.Path(__file__).parent.glob("check/*/"))


@pytest.mark.parametrize("directory", DIRECTORIES, ids=lambda path: path.name)
def test_findings(directory):
    result = tool("check", directory)
    assert result.output.replace(f"{directory}/", "") == (directory / "findings").read_text()
    assert result.status == 1


def test_example(example_catalogue):
    assert tool("check").output == "0 errors, 0 warnings in root/vendor/etc/atv/dbg\n"
    assert tool("check", CATALOGUE).status == 0


def test_json(example_catalogue):
    (CATALOGUE / "cmds.conf").unlink()
    finding = json.loads(tool("check", "--json").output)
    assert list(finding) == ["file", "line", "severity", "message", "remedy"]
    assert finding["message"] == "the console has no modules: No such file or directory"


def test_file_names_on_a_terminal():
    Terminal("ko_cmd_tool", "check", "\x1b[1m").expect_exact(r"\x1b[1m/mods.conf:1: error: ")


def test_more_words_than_completion_offers():
    names = [f"m{number:03}" for number in range(257)]
    modules = [block(name, command=name, instruction=name.replace("m", "0x9")) for name in names]
    commands = [
        block(name, command=f"c{name}", belong_module=module, instruction=1)
        for module, count in [("m000", 257), ("m001", 256)]
        for name in names[:count]
    ]
    write_catalogue("".join(modules), "".join(commands))
    errors = [row for row in tool("check").output.splitlines() if "error: " in row]
    assert 'modules number 257: completion offers 256 of them, not "m256"' in errors[0]
    assert '0x9000 number 257: completion offers 256 of them, not "cm256"' in errors[1]
