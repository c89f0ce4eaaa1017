#!/usr/bin/env bash
# Signs programs in place: sign.sh FILE ... $KARDEL_SIGN_CERT is the certificate with its key: a .pem file, or otherwise
# PKCS#12 with the password $KARDEL_SIGN_PASSWORD. With $KARDEL_SIGN_TIMESTAMP, the address of a time-stamping service,
# signatures stay valid after the certificate has expired.
set -eu
case $KARDEL_SIGN_CERT in
    *.pem) how=(-certs "$KARDEL_SIGN_CERT" -key "$KARDEL_SIGN_CERT") ;;
    *) how=(-pkcs12 "$KARDEL_SIGN_CERT") ;;
esac
password=$(mktemp)
trap 'rm -f "$password"' EXIT
printf %s "${KARDEL_SIGN_PASSWORD:-}" >"$password" # not as an argument of a command, which everybody can see
how+=(-readpass "$password")
[ -z "${KARDEL_SIGN_TIMESTAMP:-}" ] || how+=(-ts "$KARDEL_SIGN_TIMESTAMP")
for file; do
    osslsigncode sign "${how[@]}" -h sha256 -n Kardel -in "$file" -out "$file.signed" >/dev/null
    mv "$file.signed" "$file"
done
