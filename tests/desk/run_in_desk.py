"""Runs a Windows test program on a virtual desk: run_in_desk.py --arch win64 [--xml FILE] program.exe [words...]"""

import argparse
import pathlib
import signal
import sys

from kardel_desk import Desk


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--arch", choices=("win64", "win32"), default="win64")
    parser.add_argument("--xml", type=pathlib.Path, help="where the GoogleTest results go")
    parser.add_argument("--timeout", type=float, default=900, help="seconds")
    parser.add_argument("program", type=pathlib.Path)
    parser.add_argument("words", nargs=argparse.REMAINDER)
    args = parser.parse_args()
    signal.signal(signal.SIGTERM, signal.default_int_handler)

    words, results = list(args.words), {}
    if args.xml:
        words.append("--gtest_output=xml:results.xml")
        results["results.xml"] = args.xml
    desk = Desk(args.arch)
    try:
        code = desk.run_program(args.program, words, results, args.timeout)
    finally:
        desk.close()
    if code == -1:
        print(f"{args.program.name} did not end within {args.timeout:g} s and was stopped")
    return 0 if code == 0 else 1


if __name__ == "__main__":
    sys.exit(main())
