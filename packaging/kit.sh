#!/usr/bin/env bash
# Packs what is needed to try Kardel on a real Windows: kit.sh WINDOW_TESTS RULES_TESTS FOLDER Adds
# Kardel-VERSION-check.zip to FOLDER: both sets of tests, check.cmd that runs them, and the list of what to look at.
set -eu
window=$(realpath "$1") rules=$(realpath "$2") folder=$(realpath "$3")
root=$(realpath "$(dirname "$0")/..")
export TZ=UTC SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-1577836800}
version=$(sed -n 's/.*KARDEL_VERSION_\(MAJOR\|MINOR\|REVISION\) *\([0-9][0-9]*\)$/\2/p' "$root/resources/version.h" | paste -sd.)
name=Kardel-$version-check
umask 022
mkdir "$folder/$name"
cp "$window" "$folder/$name/kardel_window_tests.exe"
cp "$rules" "$folder/$name/kardel_rules_tests.exe"
for text in packaging/check.cmd docs/ON-WINDOWS.md; do
    sed 's/$/\r/' "$root/$text" >"$folder/$name/$(basename "$text")"
done
touch -d "@$SOURCE_DATE_EPOCH" "$folder/$name"/*
rm -f "$folder/$name.zip"
(cd "$folder" && zip -q -X -D -r "$name.zip" "$name")
rm -r "${folder:?}/$name"
cd "$folder"
shopt -s nullglob
sha256sum -- *.exe *.zip >SHA256SUMS
