#!/usr/bin/env bash
# Packs two built programs: pack.sh PROGRAM64 PROGRAM32 FOLDER [words for makensis]
# Makes the installer, a portable zip of each program and their SHA-256 sums in FOLDER. The bytes depend on nothing but
# the programs, the files packed with them, and SOURCE_DATE_EPOCH (the time that all of them carry).
set -eu
program64=$(realpath "$1") program32=$(realpath "$2") folder=$(realpath -m "$3")
shift 3
root=$(realpath "$(dirname "$0")/..")
export TZ=UTC SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-1577836800}
version=$(sed -n 's/.*KARDEL_VERSION_\(MAJOR\|MINOR\|REVISION\) *\([0-9][0-9]*\)$/\2/p' "$root/resources/version.h" | paste -sd.)
umask 022
rm -rf "$folder"
mkdir -p "$folder"

makensis -V2 -NOCD -INPUTCHARSET UTF8 -DVERSION="$version" -DPROGRAM64="$program64" -DPROGRAM32="$program32" \
    -DROOT="$root" -DOUTPUT="$folder/Kardel-$version-setup.exe" "$@" "$root/packaging/Kardel.nsi"

portable() {
    local name=Kardel-$version-$1
    mkdir "$folder/$name"
    cp "$2" "$folder/$name/Kardel.exe"
    # Read by Windows' own editor as well.
    sed 's/$/\r/' "$root/packaging/README.txt" >"$folder/$name/README.txt"
    sed 's/$/\r/' "$root/LICENSE" >"$folder/$name/LICENSE.txt"
    touch -d "@$SOURCE_DATE_EPOCH" "$folder/$name"/*
    (cd "$folder" && zip -q -X -D "$name.zip" "$name/Kardel.exe" "$name/LICENSE.txt" "$name/README.txt")
    rm -r "${folder:?}/$name"
}
portable win64 "$program64"
portable win32 "$program32"

cd "$folder"
sha256sum -- *.exe *.zip >SHA256SUMS
