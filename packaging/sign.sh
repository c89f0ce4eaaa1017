#!/usr/bin/env bash
# Signs programs in place: sign.sh FILE ...
# $KARDEL_SIGN_CERT is the certificate with its key: a .pem file, or else PKCS#12, with $KARDEL_SIGN_PASSWORD. With
# $KARDEL_SIGN_TIMESTAMP, the address of a time-stamping service, a signature outlives its certificate.
set -eu
case $KARDEL_SIGN_CERT in
    *.pem) how=(-certs "$KARDEL_SIGN_CERT" -key "$KARDEL_SIGN_CERT") ;;
    *) how=(-pkcs12 "$KARDEL_SIGN_CERT") ;;
esac
password=$(mktemp)
trap 'rm -f "$password"' EXIT
printf %s "${KARDEL_SIGN_PASSWORD:-}" >"$password" # not among the words of a command, which everybody can see
how+=(-readpass "$password")
[ -z "${KARDEL_SIGN_TIMESTAMP:-}" ] || how+=(-ts "$KARDEL_SIGN_TIMESTAMP")
for file; do
    osslsigncode sign "${how[@]}" -h sha256 -n Kardel -in "$file" -out "$file.signed" >/dev/null
    mv "$file.signed" "$file"
done
