"""What the documents show is what the programs do."""

import os
import pathlib
import re
import shlex
import subprocess

import pytest
from programs import PATIENCE, SOURCE, Console, command_line, typed_at_once


def blocks(document, kind):
    """The texts that a document has between "```KIND" and "```"."""
    text = (SOURCE / document).read_text()
    found = re.findall(rf"^```{kind}\n(.*?)^```", text, re.DOTALL | re.MULTILINE)
    assert found, f"{document} shows no {kind}"
    return found


def carried_out(block):
    """What a terminal shows when the commands after "$ " are typed."""
    shown = ""
    for command in re.findall(r"^\$ (.*)", block, re.MULTILINE):
        shell = ["timeout", str(PATIENCE), "sh", "-c", f"exec 2>&1; {command}"]
        shown += f"$ {command}\n" + subprocess.run(shell, stdout=subprocess.PIPE, text=True).stdout
    return shown


@pytest.fixture
def source_tree(television, monkeypatch):
    """A working directory like a built source tree, with the tool where the shell finds it."""
    pathlib.Path("examples").symlink_to(SOURCE / "examples")
    pathlib.Path("build/host/bin").mkdir(parents=True)
    pathlib.Path("build/host/root").symlink_to("../../root")
    program = pathlib.Path("build/host/bin/ko_cmd_tool")
    program.write_text(f'#!/bin/sh\nexec {shlex.join(command_line("ko_cmd_tool"))} "$@"\n')
    program.chmod(0o755)
    monkeypatch.setenv("PATH", f"{program.parent.resolve()}:{os.environ.get('PATH', os.defpath)}")


@pytest.mark.parametrize("document", ["README.md", "docs/tool.md"])
def test_commands_that_are_answered(example_catalogue, source_tree, stand_in, document):
    stand_in()
    for block in blocks(document, "console"):
        assert block == carried_out(block)


def test_commands_for_a_new_catalogue(source_tree, stand_in):
    pathlib.Path("lamp").mkdir()
    for path in ("lamp/mods.conf", "lamp/cmds.conf"):
        (text,) = blocks("docs/catalogue.md", f"conf {path}")
        pathlib.Path(path).write_text(text)
    *unanswered, answered = blocks("docs/catalogue.md", "console")
    for block in unanswered:
        assert block == carried_out(block)
    stand_in()
    assert answered == carried_out(answered)


def test_session_of_the_readme(example_catalogue, stand_in):
    (session,) = blocks("README.md", "session")
    typed = re.findall(r"TV \$(.*\n)", session)
    stand_in()
    printed = typed_at_once("".join(typed)).replace("\r", "")
    assert session == printed[printed.index("TV $") :]


def test_picture_of_the_session():
    drawn = subprocess.run([SOURCE / "script/draw-session"], stdout=subprocess.PIPE, check=True)
    assert drawn.stdout == (SOURCE / "docs/session.svg").read_bytes()


@pytest.mark.parametrize("module, line", [("aud", "setvol 0 35"), ("pic", "setmode movie")])
def test_bytes_of_the_protocol(example_catalogue, played_service, stand_in, module, line):
    request, reply = (
        b"".join(bytes.fromhex(row[6:]) for row in rows.splitlines())
        for rows in blocks("docs/protocol.md", f"hex {line.split()[0]}-[a-z]*")
    )
    console = Console(module)
    console.type(line)
    played_service.request(console)
    assert played_service.page[: len(request)] == request
    stand_in("--accept-old")
    console.printed()
    assert played_service.page[: len(reply)] == reply
