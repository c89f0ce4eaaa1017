"""Fixtures of the black-box tests: one desk per run, a clean start for every test, a screenshot of every failure."""

import collections
import os
import pathlib
import re
import signal
import sys

import pytest

sys.path.insert(0, str(pathlib.Path(__file__).parent))

from kardel_desk import Desk, Unavailable  # noqa: E402
from kardel_desk.one_note import Hand  # noqa: E402
from kardel_desk.paths import FAILURES, program  # noqa: E402
from kardel_desk.stores import KINDS  # noqa: E402


# Their tests wait for alarms, and take so many times as long as others.
SLOW = {"test_armed.py": 4, "test_ringing.py": 3}


def pytest_addoption(parser):
    parser.addoption("--arch", choices=("win64", "win32"), default="win64", help="which build of Kardel to try")
    parser.addoption("--share", metavar="I/N", default="1/1", help="only the Ith of N shares of the scenarios")


def pytest_configure(config):
    # When the run is asked to end from outside, it cleans up as after Ctrl+C.
    signal.signal(signal.SIGTERM, lambda *_: os.kill(os.getpid(), signal.SIGINT))
    arch = config.getoption("--arch")
    if not program(arch).exists():
        raise pytest.UsageError(f"{program(arch)} is missing: build the preset {arch} first")


def pytest_collection_modifyitems(config, items):
    """Keeps this run's share: whole files, since tests of one share what it prepares; the longest are dealt first."""
    share, shares = map(int, config.getoption("--share").split("/"))
    sizes = collections.Counter()
    for item in items:
        sizes[item.path] += SLOW.get(item.path.name, 1)
    loads, mine = [0] * shares, set()
    for path, size in sorted(sizes.items(), key=lambda of: (-of[1], of[0])):
        least = loads.index(min(loads))
        loads[least] += size
        if least == share - 1:
            mine.add(path)
    config.hook.pytest_deselected(items=[item for item in items if item.path not in mine])
    items[:] = [item for item in items if item.path in mine]


@pytest.fixture(scope="session")
def arch(pytestconfig) -> str:
    return pytestconfig.getoption("--arch")


@pytest.fixture(scope="session")
def session(arch):
    desk = Desk(arch)
    yield desk
    desk.close()


@pytest.fixture
def desk(session):
    """A clean desk: no program running, nothing stored, and the program alone in a new folder."""
    session.reset()
    yield session
    crashes = session.crashes()
    session.end_programs()
    assert not crashes, "the program ended by a crash:\n" + "\n".join(crashes)


@pytest.fixture(params=KINDS)
def hand(request, desk) -> Hand:
    """A hand for single notes; the test runs once for each store."""
    return Hand(desk, request.param)


@pytest.fixture
def count(capsys):
    """Says how much was tried, in a line that is shown even when all went well."""
    def say(line: str) -> None:
        with capsys.disabled():
            print(f"\n{line}", flush=True)
    return say


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    outcome = yield
    report = outcome.get_result()
    if call.excinfo is not None and call.excinfo.errisinstance(Unavailable):
        report.outcome = "skipped"
        report.longrepr = (str(item.path), item.location[1] or 0, f"Skipped: {call.excinfo.value}")
        return
    desk = item.funcargs.get("session") or item.funcargs.get("desk") if hasattr(item, "funcargs") else None
    if report.when == "call" and report.failed and desk is not None and desk.display is not None:
        name = re.sub(r"[^\w.-]+", "_", item.name) + f"-{desk.arch}.png"
        path = desk.screenshot(FAILURES / name)
        report.sections.append(("screenshot", str(path)))
