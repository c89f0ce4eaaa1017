#!/bin/bash
# Fails when a source is not formatted according to .clang-format, and says where. format.sh --fix formats the sources.
cd "$(dirname "$0")/../.." || exit 1
how=(--dry-run -Werror)
[ "${1:-}" = --fix ] && how=(-i)
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h' | grep -v '^resources/')
[ ${#sources[@]} -gt 0 ] || { echo "no sources found"; exit 1; }
clang-format "${how[@]}" "${sources[@]}"
