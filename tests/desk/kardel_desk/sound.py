"""What the desk hears: a sound server with a loudspeaker that leads nowhere, and a recorder of it."""

import array
import pathlib
import subprocess
import threading

from . import processes
from .waiting import wait

RATE = 8000            # samples per second
LOUD = 1000            # of 32767: anything above counts as a sound
REST_SECONDS = 0.3     # a silence of this length separates two sounds; there is none within the alarm
LAG_SECONDS = 0.3      # upper limit for the time until a sound arrives here


class Recorder:
    """Records everything that programs with the environment `env` play, from the very beginning."""

    def __init__(self, work: pathlib.Path, env: dict[str, str]):
        folder = work / "sound"
        folder.mkdir()
        socket = folder / "native"
        if len(str(socket)) > 107:
            raise RuntimeError(f"the path of the checkout is too long for a socket: {socket}")
        script = folder / "server.pa"
        script.write_text(f"load-module module-null-sink sink_name=desk rate=44100\n"
                          f"load-module module-native-protocol-unix socket={socket} auth-anonymous=1\n"
                          f"set-default-sink desk\n")
        self.env = {"PULSE_SERVER": f"unix:{socket}"}
        self._samples = array.array("h")
        self._lock = threading.Lock()
        self._recording = None
        self._server = processes.start(
            ["pulseaudio", "--system=false", "--daemonize=no", "-n", "-F", script, "--exit-idle-time=-1",
             "--disable-shm=true", "--use-pid-file=no"], env, folder / "server.log")
        try:
            wait(lambda: self._server.poll() is not None or socket.exists(), 20, "the sound server")
            self._recording = subprocess.Popen(
                ["parec", "--latency-msec=20", "--device=desk.monitor", "--format=s16le", f"--rate={RATE}",
                 "--channels=1"], env={**env, **self.env}, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                stderr=subprocess.DEVNULL, preexec_fn=processes.die_with_parent)
            threading.Thread(target=self._read, daemon=True).start()
            wait(lambda: self.seconds > 0, 20, "the recorder")
        except BaseException:
            self.close()
            raise

    def _read(self) -> None:
        odd = b""
        while data := self._recording.stdout.read1(4096):
            data = odd + data
            odd = data[len(data) & ~1:]
            with self._lock:
                self._samples.frombytes(data[:len(data) & ~1])

    @property
    def seconds(self) -> float:
        """The length of the recording so far, to be passed as `since`."""
        with self._lock:
            return len(self._samples) / RATE

    def onsets(self, since: float = 0.0) -> list[float]:
        """When the sounds after `since` began, in seconds of the recording."""
        with self._lock:
            samples = self._samples[:]
        found, last = [], -REST_SECONDS
        step = RATE // 100
        for start in range(0, len(samples), step):
            piece = samples[start:start + step]
            if max(piece) > LOUD or min(piece) < -LOUD:
                moment = start / RATE
                if moment - last > REST_SECONDS:
                    found.append(moment)
                last = moment
        return [moment for moment in found if moment >= since]

    def close(self) -> None:
        for process in (self._recording, self._server):
            processes.stop(process)
