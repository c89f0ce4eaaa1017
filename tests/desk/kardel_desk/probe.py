"""The client of kardel_probe, the helper that runs under Wine: one line asked, one line of JSON answered."""

import json
import shutil
import subprocess
import threading

from .paths import helper
from .wine import Wine

ANSWER_SECONDS = 30


class ProbeError(LookupError):
    """The helper could not do it, for example because the window is gone."""


class Probe:
    def __init__(self, wine: Wine):
        folder = wine.path(r"C:\probe")
        folder.mkdir(parents=True, exist_ok=True)
        for name in ("kardel_probe.exe", "kardel_probe_hook.dll"):
            source = helper(wine.arch, name)
            if not source.exists():
                raise FileNotFoundError(f"{source} is missing: build the preset {wine.arch} first")
            if not (folder / name).exists():  # another one may be running from it
                shutil.copy(source, folder / name)
        self._process = wine.start(r"C:\probe\kardel_probe.exe", folder=folder, stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        if self.ask("ping") is not True:
            raise RuntimeError(f"{wine.arch} programs do not run here")

    def ask(self, *words):
        """Sends one command (see probe/Commands.h) and returns its answer. Raises ProbeError when it fails."""
        line = "\t".join(self._escape(str(word)) for word in words) + "\n"
        watchdog = threading.Timer(ANSWER_SECONDS, self._process.kill)
        watchdog.start()
        try:
            self._process.stdin.write(line.encode("utf-8", "surrogatepass"))
            self._process.stdin.flush()
            answer = self._process.stdout.readline()
        finally:
            watchdog.cancel()
        if not answer:
            raise RuntimeError(f"kardel_probe ended or hung at {words!r}")
        value = json.loads(answer)
        if isinstance(value, dict) and list(value) == ["error"]:
            raise ProbeError(value["error"])
        return value

    @staticmethod
    def _escape(word: str) -> str:
        if word == "":
            return "\\0"
        return word.replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n").replace("\r", "\\r")

    @property
    def alive(self) -> bool:
        return self._process.poll() is None

    def close(self) -> None:
        try:
            self._process.stdin.close()
            self._process.wait(5)
        except (BrokenPipeError, subprocess.TimeoutExpired):
            self._process.kill()
            self._process.wait()
        self._process.stdout.close()
