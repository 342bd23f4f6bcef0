"""A television of each test's own, and what a test may ask for on it."""

import os
import pathlib
import shutil
import signal
import tempfile

import pytest
from page import PlayedService
from programs import PROGRAMS_OF_TEST, SOURCE, LogDaemon, Program

# Whoever starts the tests may ignore or block what programs are to be ended by.
signal.pthread_sigmask(signal.SIG_SETMASK, [])
for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM, signal.SIGQUIT, signal.SIGTSTP):
    signal.signal(number, signal.SIG_DFL)


def pytest_xdist_auto_num_workers():
    """Most programs wait for something most of the time."""
    return 2 * len(os.sched_getaffinity(0))


@pytest.fixture(autouse=True)
def television(monkeypatch):
    """The working directory; the device's files are below root/.

    Programs still running at the end are killed. What a sanitizer or valgrind reports of any
    program fails the test.
    """
    with tempfile.TemporaryDirectory(prefix="ko_test.") as folder:
        monkeypatch.chdir(folder)
        monkeypatch.setenv("SHELL", "/bin/sh")
        monkeypatch.setenv("HYPOTHESIS_STORAGE_DIRECTORY", f"{folder}/hypothesis")
        report = f"{folder}/report"
        for sanitizer in ("ASAN", "UBSAN", "TSAN"):
            # Bus errors are the page guard's.
            monkeypatch.setenv(f"{sanitizer}_OPTIONS", f"handle_sigbus=0:log_path={report}")
        monkeypatch.setenv("VALGRIND_OPTS", f"--log-file={report}.%p")
        pathlib.Path("root/data/vendor").mkdir(parents=True)
        yield pathlib.Path(folder)
        for program in PROGRAMS_OF_TEST:
            program.end()
        PROGRAMS_OF_TEST.clear()
        reports = [path.read_text() for path in pathlib.Path(folder).glob("report.*")]
        assert not any(reports), "".join(reports)


@pytest.fixture
def example_catalogue(television):
    """The catalogue that comes with the console, where the programs look for it."""
    shutil.copytree(SOURCE / "examples/atv/dbg", "root/vendor/etc/atv/dbg")


@pytest.fixture
def played_service(television):
    """The page, with its service in the hands of the test."""
    return PlayedService()


@pytest.fixture
def stand_in(television):
    """Starts the stand-in service with options, ready to answer."""

    def start(*options):
        service = Program("ko_tv_service", *options)
        service.wait_for("serving ")
        return service

    return start


@pytest.fixture
def log_daemon(television):
    with LogDaemon() as daemon:
        yield daemon
