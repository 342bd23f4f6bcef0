"""The scripts of a checkout: builds wait for each other, and one console runs at a time."""

import fcntl
import os
import pathlib
import shutil
import signal

import pytest
from programs import PATIENCE, SOURCE, Program, run, wait_until


def write_program(path, *lines):
    pathlib.Path(path).write_text("\n".join(["#!/bin/sh", *lines, ""]))
    os.chmod(path, 0o755)


@pytest.fixture(autouse=True)
def checkout(television, monkeypatch):
    """A checkout in tree/ with its builds in builds/; its programs only show that they run."""
    os.makedirs("builds/host/bin")
    shutil.copytree(SOURCE / "script", "tree/script")
    shutil.copytree(SOURCE / "examples/atv/dbg", "tree/examples/atv/dbg")
    shutil.copy(SOURCE / "CMakePresets.json", "tree")
    write_program("tree/script/bootstrap")
    write_program("builds/host/bin/ko_cmd_tool")
    write_program("builds/host/bin/ko_tv_service", 'echo "serving $*"', "exec sleep 60")
    write_program("builds/host/bin/ko_cmd_debug", "echo console", "exec sleep 60")
    os.symlink("tree/script/run", "run")
    os.symlink("tree/script/build", "build")
    monkeypatch.setattr("programs.PROGRAMS", television)
    monkeypatch.setattr("programs.EMULATOR", [])
    monkeypatch.setenv("KO_BUILD_DIR", "builds")
    monkeypatch.setenv("CDPATH", f"{television}/tree")
    monkeypatch.setenv("PATH", str(television), prepend=":")


def test_a_build_waits_for_another_and_a_second_console_is_refused():
    write_program(
        "cmake",
        "mkdir ../building || exit 1  # beside another",
        "until [ -e ../go ]; do sleep 0.01; done",
        "rmdir ../building",
    )
    first = Program("run", "--delay", 5)
    wait_until(lambda: os.path.exists("building"), first)
    build = Program("build", "host")
    build.wait_for("waits for a running build")
    pathlib.Path("go").touch()
    assert build.wait(PATIENCE) == 0
    first.wait_for("console")
    assert pathlib.Path("builds/host/service.log").read_text() == "serving --delay 5\n"
    second = run("run")
    assert second.returncode == 1
    assert f"already runs here (process {first.pid})" in second.stderr.decode()
    first.end()
    with open("builds/run.lock") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)  # fails if what it started keeps it
    os.killpg(first.pid, signal.SIGKILL)


def test_a_build_of_another_checkout_is_configured_anew(television):
    write_program("cmake", 'echo "$*" >>../calls')
    cache = pathlib.Path("builds/host/CMakeCache.txt")
    cache.write_text("CMAKE_HOME_DIRECTORY:INTERNAL=/moved\n")
    assert b"configures it anew" in run("build", "host").stderr
    host = television / "builds/host"
    fresh = f"--preset host -B {host} -D KO_DEVICE_ROOT={host}/root --fresh\n"
    assert pathlib.Path("calls").read_text() == f"{fresh}--build {host}\n"


def test_a_directory_that_cannot_be_written_is_named(monkeypatch):
    monkeypatch.setenv("KO_BUILD_DIR", "run/none")
    assert b"/run/none; set KO_BUILD_DIR=DIR" in run("build", "host").stderr
