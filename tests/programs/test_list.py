"""`list` shows the modules and commands of a catalogue."""

import json

from catalogue import write_commands
from programs import tool

SETVOL = {
    "para_format": "dDf",
    "print_format": "FsS",
    "print_tags": "v%,ö",
    "description": '"tab"\tand \x1b[1m\x9b \udcff',
}
LISTED = """\
  command  instruction  arguments            reply                             description
  c0       0x901        int32, int64, float  v% double, ö string, unsupported  "tab"\\x09and ...
  c1       0x901        -                    -
"""


def test_list(television):
    write_commands([SETVOL, {}])
    assert tool("list").output.replace("\\x1b[1m\\x9b �", "...").endswith(LISTED)
    c0, c1 = map(json.loads, tool("list", "--json").output.splitlines())
    assert c0["description"] == '"tab"\tand \x1b[1m\x9b �'
    assert [value["label"] for value in c0["reply"]] == ["v%", "ö", ""]
    assert (c1["arguments"], c1["reply"], c1["description"]) == ([], [], "")
