#!/usr/bin/env bash
# Packs two built programs: pack.sh PROGRAM64 PROGRAM32 FOLDER [arguments for makensis] Makes the installer, a portable
# zip of each program and their SHA-256 sums in FOLDER. The bytes depend on nothing but the programs, the files packed
# with them, and SOURCE_DATE_EPOCH (the time stamp of all files). With $KARDEL_SIGN_CERT (see sign.sh) both programs,
# the installer and its uninstaller are signed.
set -eu
program64=$(realpath "$1") program32=$(realpath "$2") folder=$(realpath -m "$3")
shift 3
root=$(realpath "$(dirname "$0")/..")
export TZ=UTC SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-1577836800}
version=$(sed -n 's/.*KARDEL_VERSION_\(MAJOR\|MINOR\|REVISION\) *\([0-9][0-9]*\)$/\2/p' "$root/resources/version.h" | paste -sd.)
umask 022
rm -rf "$folder"
mkdir -p "$folder"

sign=()
if [ -n "${KARDEL_SIGN_CERT:-}" ]; then
    export KARDEL_SIGN_CERT
    KARDEL_SIGN_CERT=$(realpath "$KARDEL_SIGN_CERT")
    signed=$(mktemp -d)
    trap 'rm -r "$signed"' EXIT
    cp "$program64" "$signed/64.exe"
    cp "$program32" "$signed/32.exe"
    program64=$signed/64.exe program32=$signed/32.exe
    "$root/packaging/sign.sh" "$program64" "$program32"
    sign=("-DSIGN=$root/packaging/sign.sh")
fi

makensis -V2 -NOCD -INPUTCHARSET UTF8 -DVERSION="$version" -DPROGRAM64="$program64" -DPROGRAM32="$program32" \
    -DROOT="$root" -DOUTPUT="$folder/Kardel-$version-setup.exe" "${sign[@]}" "$@" "$root/packaging/Kardel.nsi"
[ ${#sign[@]} -eq 0 ] || "$root/packaging/sign.sh" "$folder/Kardel-$version-setup.exe"

portable() {
    local name=Kardel-$version-$1
    mkdir "$folder/$name"
    cp "$2" "$folder/$name/Kardel.exe"
    # Line ends that every editor of Windows can read.
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
