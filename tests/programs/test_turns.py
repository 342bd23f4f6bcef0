"""Several clients take turns at the page, and each gets its own reply."""

import fcntl
import os
import pathlib
import signal

import pytest
from page import PAGE, POSTED, int32, write_page
from programs import EMULATOR, PATIENCE, Console, Program, run, tool, wait_until

CALLS = int(os.environ.get("KO_CALLS", 150))


def turn_is_taken():
    with open(PAGE, "r+b") as page:
        try:
            fcntl.lockf(page, fcntl.LOCK_EX | fcntl.LOCK_NB, 1)
        except BlockingIOError:
            return True


def setvol(number, force=False):
    options = ["--timeout", 300000, "--json", *(["--force"] if force else [])]
    return Program("ko_cmd_tool", "call", *options, "aud", "setvol", number, 7)


def test_everybody_gets_the_own_reply(example_catalogue, stand_in):
    service = stand_in()
    bands = range(min(CALLS, 25))
    consoles = []
    for gain in 0, 1:
        keys = "aud\n" + "".join(f"eq {band} {gain}\n" for band in bands) + "q\nq\n"
        pathlib.Path(f"keys{gain}").write_text(keys)
        consoles.append(Program("ko_cmd_debug", stdin=open(f"keys{gain}")))
    calls = [setvol(number, force=number % 2 == 1) for number in range(CALLS)]
    assert [(call.wait(PATIENCE), call.shown()) for call in calls] == [
        (0, f'{{"output":{number},"volume":7}}\n') for number in range(CALLS)
    ]
    for gain, console in enumerate(consoles):
        console.wait(PATIENCE)
        assert [line for line in console.shown().splitlines() if line.startswith("band")] == [
            f"band:{band}\tgain dB:{gain}.000000\t" for band in bands
        ]
    service.end(signal.SIGTERM)
    assert service.shown().count("setvol") == CALLS


def test_a_console_at_its_prompt_holds_nobody_up(example_catalogue, stand_in):
    stand_in()
    console = Console("aud")
    console.answer("mute 1")
    assert tool("call", "aud", "mute", 1).status == 0


@pytest.mark.skipif("valgrind" in EMULATOR, reason="nothing interrupts its locks")
@pytest.mark.parametrize(
    "timeout, before, status",
    [
        (50, lambda: signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGALRM]), 7),
        (300000, lambda: signal.setitimer(signal.ITIMER_REAL, 0.2), -signal.SIGALRM),
    ],
)
def test_a_turn_leaves_the_alarm_to_the_caller(
    played_service, example_catalogue, timeout, before, status
):
    played_service.request(setvol(1))
    late = run("ko_cmd_tool", "call", "--timeout", timeout, "aud", "dec", preexec_fn=before)
    assert late.returncode == status
    assert (b"no turn within 50 ms; nothing was sent" in late.stderr) == (status == 7)


def test_an_unanswered_request_is_answered_first(played_service, example_catalogue):
    assert tool("call", "--timeout", 50, "aud", "setvol", 1, 7).status == 4
    call = setvol(2)
    wait_until(turn_is_taken, call)
    for number in 1, 2:
        assert played_service.request(call) == int32(0x201, number, 7)
        played_service.reply(int32(0, number, 7))
    assert call.wait(PATIENCE) == 0
    assert call.shown() == '{"output":2,"volume":7}\n'


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM, signal.SIGHUP])
def test_a_signal_ends_a_call_and_leaves_its_request(played_service, example_catalogue, number):
    call = setvol(1)
    played_service.request(call)
    assert call.end(number) == -number
    assert "the request stays" in call.shown()


@pytest.mark.parametrize("command, calls", [("call", 1), ("watch --interval 200 --count 2", 2)])
def test_a_hang_up_ends_nothing_under_nohup(played_service, example_catalogue, command, calls):
    program = Program(
        "ko_cmd_tool",
        *[*command.split(), "--timeout", 60000, "--json", "aud", "mute", 1],
        preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN),
    )
    for number in range(calls):
        played_service.request(program)
        program.send_signal(signal.SIGHUP)
        played_service.reply(int32(0, number))
        program.wait_for(f'"muted":{number}')
        program.send_signal(signal.SIGHUP)  # while the watch waits for the next call
    assert program.wait(PATIENCE) == 0


def test_a_service_refuses_a_request_from_before_its_start(played_service, stand_in):
    write_page(POSTED, int32(0x201, 5, 5))
    stand_in().wait_for("0x201 was there before the start -> status -3")
