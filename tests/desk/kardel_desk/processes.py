"""Starting and ending the desk's processes so that none outlives it."""

import ctypes
import functools
import os
import pathlib
import signal
import subprocess
import time

_libc = ctypes.CDLL(None, use_errno=True)
_PR_SET_PDEATHSIG = 1


class Unavailable(Exception):
    """This machine cannot do what a test needs, so the test is skipped."""


def die_with_parent() -> None:
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL)


def start(command: list[str], env: dict[str, str], log: pathlib.Path, **more) -> subprocess.Popen:
    """Starts a server of the desk, which ends with this process, however that ends."""
    with open(log, "ab") as output:
        return subprocess.Popen([str(word) for word in command], env=env, stdin=subprocess.DEVNULL, stdout=output,
                                stderr=output, preexec_fn=die_with_parent, **more)


def stop(process: subprocess.Popen | None) -> None:
    if process is None or process.poll() is not None:
        return
    process.terminate()
    try:
        process.wait(5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def with_variable(name: str, value: str) -> list[int]:
    """Ids of the processes that were started with this environment variable."""
    wanted = f"{name}={value}".encode()
    found = []
    for folder in pathlib.Path("/proc").iterdir():
        if folder.name.isdigit() and int(folder.name) != os.getpid():
            try:
                if wanted in (folder / "environ").read_bytes().split(b"\0"):
                    found.append(int(folder.name))
            except OSError:
                pass  # gone meanwhile, or another user's
    return found


def kill_with_variable(name: str, value: str, patience: float = 5.0) -> None:
    """Waits a little for those processes to end by themselves, then kills what is left."""
    end = time.monotonic() + patience
    while with_variable(name, value) and time.monotonic() < end:
        time.sleep(0.05)
    for process in with_variable(name, value):
        try:
            os.kill(process, signal.SIGKILL)
        except ProcessLookupError:
            pass


@functools.cache
def _refused() -> str:
    """Separates this process' mounts from everybody else's. Only once: a second time would also separate it from its
    children, which would not see what is mounted later. Returns why the machine refuses that, or nothing."""
    CLONE_NEWNS, MS_REC, MS_PRIVATE = 0x00020000, 0x4000, 0x40000
    if _libc.unshare(CLONE_NEWNS) == 0 and _libc.mount(None, b"/", None, MS_REC | MS_PRIVATE, None) == 0:
        return ""
    return os.strerror(ctypes.get_errno())


def private_mounts() -> None:
    """From here on, mounts made by this process are visible only to it and its children, and vanish with them. Raises
    Unavailable where they are refused: in a container without rights, or where `/` is no mount point."""
    if _refused():
        raise Unavailable(f"this machine allows no private mounts: {_refused()}")
