"""The line editor: what is typed on a terminal, and the bytes that show it there."""

import pexpect
from catalogue import block, write_catalogue
from programs import Console, typed_at_once

UP, DOWN, RIGHT, LEFT = "\x1b[A", "\x1b[B", "\x1b[C", "\x1b[D"
ERASE = "\b \b"
MODULES = "\r\n" + 34 * "=" + " all mods " + 34 * "=" + "\r\n"
COMMANDS = "\r\n" + 34 * "=" + "lamp cmds" + 34 * "=" + "\r\n"
ILLEGAL = "\r\n\rError:Illegal Command.\r\nTV $"

# One session; each row goes on where the one before it ended.
KEYS = [
    # typed, shown
    ("\b" + UP + DOWN, ""),
    ("one\n", "one" + ILLEGAL),
    ("two\n", "two" + ILLEGAL),
    (UP, "two"),
    (UP, 3 * ERASE + "one"),
    (UP, ""),
    (DOWN, 3 * ERASE + "two"),
    # The newest line stays, and comes again.
    (DOWN + DOWN + "!\b", "!" + ERASE),
    (UP, 3 * ERASE + "two"),
    ("\b\bie\n", 2 * ERASE + "ie" + ILLEGAL),
    # The recalled line is kept as it was. The letters of arrow keys are those keys.
    ("AA", "tie" + 3 * ERASE + "two"),
    ("B", 3 * ERASE + "tie"),
    ("CD[" + RIGHT + LEFT, ""),
    ("\b\b\b\n", 3 * ERASE + "\r\n\rTV $"),
    (UP, "tie"),
    ("\b\b\b\x7f\b", 3 * ERASE + "\x7f" + ERASE),
    ("é\b\b", "é" + 2 * ERASE),
    # TAB completes the only word with that beginning, and lists several.
    ("\t", MODULES + "lamp\ttv\r\nTV $"),
    ("t\t\t", "tv"),
    ("\b\blamp\n", 2 * ERASE + "lamp\r\n\rlamp@TV $"),
    ("b\t", "b" + COMMANDS + "b0\tb1\tb10\tb2\tb3\tb4\tb5\tb6\tb7\tb8\r\nb9\r\nlamp@TV $b"),
    ("9 \t", "9 "),
    ("\b\b\bL\t\b", 3 * ERASE + "L" + ERASE),
    ("la\t", "la" + MODULES + "lamp" + COMMANDS + "lamp\r\nlamp@TV $la"),
    ("\b\bq\nq\n", 2 * ERASE + "q\r\n\rTV $q\r\n\r"),
]


def test_keys_on_a_terminal(television):
    words = ["lamp", *(f"b{number}" for number in range(11))]
    write_catalogue(
        block("lamp", command="lamp", instruction=1) + block("tv", command="tv", instruction=2),
        "".join(block(word, command=word, belong_module="lamp") for word in words),
    )
    console = Console()
    for typed, shown in KEYS:
        console.send(typed)
        console.expect_exact(shown)
        assert (typed, console.before) == (typed, "")
    console.expect(pexpect.EOF)


def test_a_line_has_up_to_1023_bytes(example_catalogue):
    line = 1023 * "x"
    shown = typed_at_once(f"{line}\n{line}y\nnot read\n")
    assert f"TV ${line}\n\rError:Illegal Command.\nTV $" in shown
    assert shown.endswith(f"TV ${line}y\n\rError:m_strInbuffer too large\n")


def test_input_ends_in_a_line(example_catalogue):
    assert typed_at_once("aud\nset").endswith("\n\raudio@TV $set")
