"""Starts the programs of a build as their users do, and waits for what they print."""

import os
import pathlib
import re
import shlex
import signal
import socket
import struct
import subprocess
import tempfile
import time

import pexpect

SOURCE = pathlib.Path(__file__).resolve().parents[2]
PROGRAMS = pathlib.Path(os.environ.get("KO_BIN_DIR", SOURCE / "build/test/bin")).resolve()
EMULATOR = shlex.split(os.environ.get("KO_EMULATOR", ""))  # qemu or valgrind, with its options
PATIENCE = 60  # seconds; more than the slowest machine needs for anything
PROMPT = r"([^\r\n]*@)?TV \$"
RULE = "=" * 27 + "\n"

PROGRAMS_OF_TEST = []


def command_line(name, *args):
    return [*EMULATOR, str(PROGRAMS / name), *map(str, args)]


def wait_until(condition, *programs):
    """Waits for the condition and returns it; fails at once when one of the programs has ended."""
    end = time.monotonic() + PATIENCE
    while not (reached := condition()):
        for program in programs:
            if not program.is_running() and not condition():
                raise AssertionError(f"{program.args} has ended: {program.shown()}")
        assert time.monotonic() < end, "waited in vain"
        time.sleep(0.001)
    return reached


def run(name, *args, input="", **options):
    """Runs a program on pipes to its end."""
    return subprocess.run(
        command_line(name, *args),
        input=input if isinstance(input, bytes) else input.encode(),
        capture_output="stdout" not in options,
        timeout=PATIENCE,
        **options,
    )


class Result:
    """What a run of the tool came to: its exit status, output and messages."""

    def __init__(self, completed):
        self.status = completed.returncode
        self.output = completed.stdout.decode(errors="backslashreplace")
        self.messages = completed.stderr.decode(errors="backslashreplace")


def tool(*args):
    """Runs ko_cmd_tool to its end."""
    return Result(run("ko_cmd_tool", *args))


def typed_at_once(lines):
    """What the console prints on a pipe, its line starts plain."""
    return run("ko_cmd_debug", input=lines).stdout.decode(errors="backslashreplace")


class Program(subprocess.Popen):
    """A program in the background; what it prints goes to a file."""

    def __init__(self, name, *args, **options):
        with tempfile.NamedTemporaryFile(dir=".", delete=False) as output:
            self.output = pathlib.Path(output.name)
            streams = {"stdin": subprocess.DEVNULL, "stdout": output, "stderr": output} | options
            super().__init__(command_line(name, *args), start_new_session=True, **streams)
        PROGRAMS_OF_TEST.append(self)

    def is_running(self):
        return self.poll() is None

    def shown(self):
        return self.output.read_text(errors="backslashreplace")

    def wait_for(self, text):
        wait_until(lambda: text in self.shown(), self)

    def end(self, number=signal.SIGKILL):
        """Ends it with a signal, unless it has ended; returns its exit status."""
        if self.is_running():
            self.send_signal(number)
        return self.wait(PATIENCE)


class Terminal(pexpect.spawn):
    """A program on a terminal of its own, 80 columns wide."""

    def __init__(self, name, *args, **options):
        command, *rest = command_line(name, *args)
        super().__init__(
            command, rest, PATIENCE, encoding="utf-8", codec_errors="backslashreplace", **options
        )
        self.delaybeforesend = None  # seconds of sleep before anything is typed
        PROGRAMS_OF_TEST.append(self)

    def send(self, keys):
        """Types text, or bytes that need not be text."""
        return os.write(self.child_fd, keys) if isinstance(keys, bytes) else super().send(keys)

    def is_running(self):
        return self.isalive()

    def shown(self):
        return self.before

    def end(self, number=signal.SIGKILL):
        """Ends it with a signal, unless it has ended; returns the signal that ended it."""
        if self.isalive():
            self.kill(number)
        self.expect(pexpect.EOF)
        self.wait()
        return self.signalstatus


class Console(Terminal):
    """The console on a terminal, at its first prompt or in a module."""

    def __init__(self, module=""):
        super().__init__("ko_cmd_debug")
        self.expect(PROMPT)
        if module:
            self.answer(module)

    def type(self, line):
        """Types a line; what it shows from then on can be expected."""
        self.send(line)
        self.send("\n")
        self.expect("\r\n\r")

    def answer(self, line):
        """Types a line; what is printed up to the next prompt."""
        self.type(line)
        return self.printed()

    def printed(self):
        """What is printed up to the next prompt."""
        self.expect(PROMPT)
        return self.shown()

    def is_at_prompt(self):
        """Whether it shows the next prompt already."""
        return self.expect([PROMPT, pexpect.TIMEOUT], timeout=0) == 0

    def shown(self):
        """What was printed before the prompt."""
        return re.sub("\r+\n", "\n", self.before)


class LogDaemon(socket.socket):
    """The platform's log daemon, or another at a path, for programs that run while it lives."""

    def __init__(self, path="root/dev/socket/logdw"):
        super().__init__(socket.AF_UNIX, socket.SOCK_DGRAM)
        pathlib.Path(path).parent.mkdir(parents=True, exist_ok=True)
        self.bind(path)
        self.setblocking(False)
        self.start = int(time.time())

    def entries(self):
        """All entries since the last call, as "priority tag message"."""
        entries = []
        while True:
            try:
                entry = self.recv(4096)
            except BlockingIOError:
                return entries
            buffer, thread, seconds, nanoseconds, priority = struct.unpack_from("<BHIIB", entry)
            assert buffer == 0 and thread != 0 and nanoseconds < 10**9
            assert self.start <= seconds <= time.time()
            tag, message = entry[12:].rstrip(b"\0").split(b"\0")
            entries.append(f"{priority} {tag.decode()} {message.decode()}")
