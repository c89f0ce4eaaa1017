"""One Wine session on a display: its own prefix, for 64-bit or 32-bit programs.

The 64-bit Wine is the system's own, unless KARDEL_WINE_ROOT names a root folder with another one (tools/wine10-root
makes one). The 32-bit one lives in a small i386 root folder (tools/i386-root makes it). Both run through chroot;
callers need not care, since the work folder has the same path inside. Where the system and the i386 root are overlaid,
the 64-bit Wine also runs 32-bit programs, as Windows does."""

import contextlib
import fcntl
import functools
import os
import pathlib
import shutil
import subprocess

from . import processes
from .paths import I386_ROOT, WORK

_WINE_ENV = {"WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree,mshtml=", "TZ": "UTC", "LC_ALL": "C.UTF-8"}
_WINE64, _WINE32, _WINESERVER = "/usr/lib/wine/wine64", "/usr/lib/wine/wine", "/usr/lib/wine/wineserver"
# Puts the libraries of both kinds under one path, for the command that follows and what it starts.
_WITH_32_BIT = ["unshare", "--mount", "--propagation", "private", "sh", "-c",
                'mount -t overlay overlay -o "lowerdir=/usr/lib:$0" /usr/lib && '
                'LD_LIBRARY_PATH=/usr/lib/i386-linux-gnu exec "$@"', str(I386_ROOT / "usr/lib")]


def root_of(arch: str) -> pathlib.Path | None:
    """The root folder with the Wine of an architecture; None for the system's own."""
    if arch == "win32":
        return I386_ROOT
    other = os.environ.get("KARDEL_WINE_ROOT")
    return pathlib.Path(other) if other else None


def available(arch: str) -> bool:
    return arch == "win64" or (I386_ROOT / "usr/lib/wine/wine").exists()


@functools.cache
def runs_both() -> bool:
    """Whether the 64-bit Wine can be made to run 32-bit programs, too."""
    return (root_of("win64") is None and available("win32") and
            subprocess.run([*_WITH_32_BIT, "true"], stderr=subprocess.DEVNULL).returncode == 0)


@functools.cache
def _steady() -> tuple[str, ...]:
    """Begins a command whose programs have their heap at a fixed address, where the machine allows that. At a random one
    it lies, once in some hundred starts, where Wine needs a page of its own, and the program ends before it began."""
    words = ("setarch", "-R")
    return words if subprocess.run([*words, "true"], stderr=subprocess.DEVNULL).returncode == 0 else ()


@functools.cache
def _enter(root: pathlib.Path) -> None:
    """Makes what its Wine needs of this system visible in a root folder."""
    processes.private_mounts()
    WORK.mkdir(parents=True, exist_ok=True)
    for source in ("/proc", "/dev", "/tmp/.X11-unix", "/usr/share/fonts", "/usr/lib/locale", str(WORK)):
        target = root / source.lstrip("/")
        target.mkdir(parents=True, exist_ok=True)
        subprocess.run(["mount", "--rbind" if source == "/dev" else "--bind", source, target], check=True)


# Only Xinerama knows about one screen divided into monitors.
_MONITORS = '''
[Software\\\\Wine\\\\X11 Driver]
"UseXRandR"="N"
'''


class Wine:
    """`env` names the display and home. The prefix is a copy of a template that is made once. `both`: a win64 one that
    also runs 32-bit programs. `monitors`: the screen has several."""

    def __init__(self, arch: str, env: dict[str, str], work: pathlib.Path, both: bool = False, monitors: bool = False):
        self.arch, self.both, self._root = arch, both, root_of(arch)
        self.prefix = work / "prefix"
        self.env = {**env, **_WINE_ENV, "WINEARCH": arch, "WINEPREFIX": str(self.prefix)}
        if self._root:
            _enter(self._root)
        elif os.geteuid() == 0:
            # Before the server starts: it opens the files and must see what read_only() mounts.
            with contextlib.suppress(processes.Unavailable):
                processes.private_mounts()
        self._copy_template()
        if monitors:
            with open(self.prefix / "user.reg", "a", encoding="utf-8") as registry:
                registry.write(_MONITORS)
        self._begin_session()

    def _begin_session(self) -> None:
        # The server stays until close(). The first call must not write into a pipe, because Wine's services would
        # inherit it and whoever reads the pipe would wait for ever.
        self._quietly("server", "-p")
        self._quietly("wine", "wineboot")

    def log_on_again(self) -> None:
        """Ends every program and the session, and begins another one with the same settings and files."""
        self._quietly("server", "-k")
        self._begin_session()

    def _command(self, kind: str, words: list[str], folder: pathlib.Path | None = None) -> list[str]:
        wine = _WINE32 if self.arch == "win32" else _WINE64
        program = [wine if kind == "wine" else _WINESERVER, *words]
        if self._root:
            return [*_steady(), "chroot", str(self._root), "/usr/bin/env", f"--chdir={folder or '/'}", *program]
        return [*_steady(), *(_WITH_32_BIT if self.both else []), *program]

    def _quietly(self, kind: str, *words: str, env: dict[str, str] | None = None) -> None:
        subprocess.run(self._command(kind, list(words)), env=env or self.env, check=True, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=180)

    def _copy_template(self) -> None:
        WORK.mkdir(parents=True, exist_ok=True)
        kind = "both" if self.both else self.arch
        template = WORK / f"template-{kind}{f'-{self._root.name}' if self._root and self.arch == 'win64' else ''}"
        with open(template.with_suffix(".lock"), "w") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            if not (template / "complete").exists():
                shutil.rmtree(template, ignore_errors=True)
                template.mkdir()
                self._make_template(template)
        # Wine's own files are shared by hard links, which takes no time; files that a session changes are copied.
        self.prefix.mkdir(parents=True)
        for entry in template.iterdir():
            if entry.name == "drive_c":
                (self.prefix / "drive_c").mkdir()
                for folder in entry.iterdir():
                    how = "-al" if folder.name == "windows" else "-a"
                    subprocess.run(["cp", how, folder, self.prefix / "drive_c" / folder.name], check=True)
            else:
                subprocess.run(["cp", "-a", entry, self.prefix / entry.name], check=True)

    def _make_template(self, template: pathlib.Path) -> None:
        env = {**self.env, "WINEPREFIX": str(template)}
        env.pop("DISPLAY", None)
        self._quietly("wine", "wineboot", "-i", env=env)
        # A program that crashes must end with a report rather than wait behind a dialog.
        self._quietly("wine", "reg", "add", r"HKCU\Software\Wine\WineDbg", "/v", "ShowCrashDialog", "/t", "REG_DWORD",
                      "/d", "0", "/f", env=env)
        self._quietly("server", "-w", env=env)
        (template / "complete").touch()

    def link_font(self, font: str, file: str, family: str) -> None:
        """Lets programs that start from now on take letters that a font lacks from another one, as Windows does with the
        fonts it ships. Wine's own edit controls do not."""
        for name in (font, f"{font} Bold"):
            self._quietly("wine", "reg", "add", r"HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontLink\SystemLink",
                          "/v", name, "/t", "REG_MULTI_SZ", "/d", f"{file},{family}", "/f",
                          env={**self.env, "WINEPREFIX": str(self.prefix)})

    def start(self, program: str, *words: str, folder: pathlib.Path | None = None, env: dict[str, str] | None = None,
              **pipes) -> subprocess.Popen:
        """Starts a Windows program, given by its Windows path; the process is the program itself."""
        where = None if self._root else folder
        return subprocess.Popen(self._command("wine", [program, *words], folder), cwd=where,
                                env={**self.env, **(env or {})}, **pipes)

    def path(self, windows_path: str) -> pathlib.Path:
        """C:\\desk\\1 -> the same folder of the prefix."""
        return self.prefix / "drive_c" / windows_path[3:].replace("\\", "/")

    @contextlib.contextmanager
    def read_only(self, folder: pathlib.Path):
        """While the block runs, nobody can change a folder of the prefix or anything in it, not even the administrator.
        Raises Unavailable where mounting is refused."""
        if os.geteuid() != 0:
            modes = {path: path.stat().st_mode for path in [folder, *folder.rglob("*")]}
            for path, mode in modes.items():
                path.chmod(mode & ~0o222)
            try:
                yield
            finally:
                for path, mode in modes.items():
                    path.chmod(mode)
            return
        processes.private_mounts()
        place = f"{self._root or ''}{folder}"
        if subprocess.run(["mount", "--bind", place, place], check=False).returncode != 0:
            raise processes.Unavailable("nothing can be mounted here")
        try:
            subprocess.run(["mount", "-o", "remount,bind,ro", place], check=True)
            yield
        finally:
            subprocess.run(["umount", "--lazy", place], check=True)

    def close(self) -> None:
        if self.prefix.exists():
            subprocess.run(self._command("server", ["-k"]), env=self.env, check=False, stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=60)
            processes.kill_with_variable("WINEPREFIX", str(self.prefix))
            shutil.rmtree(self.prefix, ignore_errors=True)
