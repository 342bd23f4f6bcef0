"""The tool's command line: its help, and what is said of a wrong one."""

import re

import pytest
from programs import SOURCE, tool

MISTAKES = [
    # words, what is said
    ([], "usage: ko_cmd_tool [OPTIONS] COMMAND"),
    (["chekc"], 'did you mean "check"?'),
    (["--jsno", "list"], 'did you mean "--json"?'),
    (["list", "--force"], 'unknown option "--force" of "list"'),
    (["--json", "encode", "aud", "dec"], 'unknown option "--json" of "encode"'),
    (["encode", "aud"], "usage: ko_cmd_tool encode"),
    (["check", ".", "."], "usage: ko_cmd_tool check"),
    (["check", "/dev/null"], '"/dev/null" is a file; name its directory'),
    (["--catalogue", ".", "check", "."], "given twice"),
    (["--timeout", "5x", "call", "aud", "dec"], '--timeout takes milliseconds, not "5x"'),
    (["watch", "--interval", "0", "aud", "dec"], '--interval takes milliseconds, not "0"'),
    (["call", "--timeout"], '"--timeout" lacks its value'),
]


@pytest.mark.parametrize("words, reason", MISTAKES)
def test_mistake(words, reason):
    result = tool(*words)
    assert (result.status, result.output) == (2, "")
    assert reason in result.messages


@pytest.mark.parametrize("command", ["check", "list", "encode", "call", "watch", "monitor"])
def test_help(command):
    usage, *rows = tool(command, "--help").output.splitlines()
    assert usage.startswith(f"usage: ko_cmd_tool {command} [--catalogue DIR]")
    explained = re.findall(r"^  (--\S+)", "\n".join(rows), re.MULTILINE)
    assert explained == [*re.findall(r"--[a-z-]+", usage), "--help", "--version"]
    assert ("  7  the page stayed in use: nothing was sent" in rows) == (command == "call")
    assert f"\n  {command} " in tool("--help").output


def test_version():
    version = tool("--version").output.replace("ko_cmd_tool ", "VERSION ").strip()
    assert f"project(ko_cmd_debug {version} " in (SOURCE / "CMakeLists.txt").read_text()
