"""What `check` says of a catalogue: each folder below check/ has one, and its findings."""

import pathlib

import pytest
from catalogue import CATALOGUE, block, write_catalogue
from programs import tool

FOLDERS = sorted(pathlib.Path(__file__).parent.glob("check/*/"))


@pytest.mark.parametrize("folder", FOLDERS, ids=lambda folder: folder.name)
def test_findings(folder):
    result = tool("check", folder)
    assert result.output.replace(f"{folder}/", "") == (folder / "findings").read_text()
    assert result.status == 1


def test_example(example_catalogue):
    result = tool("check")
    assert (result.status, result.output) == (0, "0 errors, 0 warnings\n")


def test_missing_file(example_catalogue):
    (CATALOGUE / "cmds.conf").unlink()
    said = tool("check").output
    assert "cmds.conf:1: error: the console goes without any module: No such file or" in said


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
    assert 'modules are 257: completion offers 256 of them and leaves out "m256"' in errors[0]
    assert '0x9000 are 257: completion offers 256 of them and leaves out "cm256"' in errors[1]
