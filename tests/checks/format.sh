#!/bin/bash
# Fails, with the place, when a source is not formatted as .clang-format says. format.sh --fix formats them.
cd "$(dirname "$0")/../.." || exit 1
how=(--dry-run -Werror)
[ "${1:-}" = --fix ] && how=(-i)
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h' | grep -v '^resources/')
[ ${#sources[@]} -gt 0 ] || { echo "no sources found"; exit 1; }
clang-format "${how[@]}" "${sources[@]}"
