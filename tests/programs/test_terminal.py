"""The console on a terminal: its settings, and the keys and signals that end or suspend it."""

import os
import signal
import subprocess
import termios

import pexpect
import pytest
from programs import PROGRAMS_OF_TEST, RULE, Console, Terminal, wait_until

SUSPENDS = int(os.environ.get("KO_SUSPENDS", 10000))
SUSPEND_KEY = "\x1a"
LOCAL_FLAGS = 3  # of what tcgetattr returns
CANONICAL_ECHO = termios.ICANON | termios.ECHO


def test_runs_raw_and_restores_the_settings():
    console = Console()
    raw = termios.tcgetattr(console.child_fd)[LOCAL_FLAGS]
    assert raw & (CANONICAL_ECHO | termios.ISIG) == termios.ISIG
    console.send("q\n")
    console.expect(pexpect.EOF)
    console.wait()
    assert console.exitstatus == 0
    assert termios.tcgetattr(console.child_fd)[LOCAL_FLAGS] == raw | CANONICAL_ECHO


@pytest.mark.parametrize(
    "options, keys, shown",
    [
        ([], "", ""),
        ([], "half a li", "half a li"),
        (["--delay", 100000], "aud\ndec\n", "dec\r\n"),
        (["--records", 1000], "aud\n" + "dec\n" * 8, RULE.strip()),  # more than anybody reads
    ],
)
def test_the_interrupt_key_ends_it(example_catalogue, stand_in, options, keys, shown):
    stand_in(*options)
    console = Console()
    console.send(keys)
    console.expect_exact(shown)
    console.sendintr()
    wait_until(lambda: not console.isalive())
    assert console.signalstatus == signal.SIGKILL


@pytest.mark.parametrize("ignored, ending", [(False, (None, signal.SIGHUP)), (True, (0, None))])
def test_a_hang_up_ends_it(ignored, ending):
    console = Terminal("ko_cmd_debug", ignore_sighup=ignored)
    console.expect_exact("TV $")
    console.ptyproc.fileobj.close()
    wait_until(lambda: not console.isalive())
    assert (console.exitstatus, console.signalstatus) == ending
    PROGRAMS_OF_TEST.remove(console)


@pytest.fixture
def load():
    """Every processor is kept busy."""
    busy = [subprocess.Popen(["sh", "-c", "while :; do :; done"]) for _ in range(os.cpu_count())]
    yield
    for program in busy:
        program.kill()
        program.wait()


def test_no_resume_is_lost_under_load(load, example_catalogue):
    """The kernel may discard a suspend: the key is pressed again. A resume is never repeated."""
    console = Console()
    further_keys = [SUSPEND_KEY] * 10
    signal.signal(signal.SIGALRM, lambda *_: console.send(further_keys.pop()))
    for number in range(SUSPENDS):
        console.send(SUSPEND_KEY)
        signal.setitimer(signal.ITIMER_REAL, 2, 2)  # seconds
        try:
            _, status = os.waitpid(console.pid, os.WUNTRACED)
        finally:
            signal.setitimer(signal.ITIMER_REAL, 0)
        assert os.WIFSTOPPED(status), number
        console.kill(signal.SIGCONT)
        _, status = os.waitpid(console.pid, os.WCONTINUED)
        assert os.WIFCONTINUED(status), number
        console.send("x\b")
        console.expect_exact("x\b \b")  # no answer comes if it has been stopped again
