#!/bin/sh
# Makes the RSA key pair of the login and game servers (1024 bits, public
# exponent 65537) and writes its two halves:
#   data/server/rsa-key.txt  "modulus <decimal>" and "private-exponent <decimal>",
#                            read by the local server
#   net/DeploymentKey.h      the modulus as the client's built-in default
# The client holds the modulus as 309 decimal digits, so a key whose modulus
# has fewer is thrown away and made again.
# Run once; the tests' RSA known answers belong to the key in the tree, so a
# new key (--force) means computing them again.
set -eu
cd "$(dirname "$0")/.."

key_file=data/server/rsa-key.txt
header=net/DeploymentKey.h

if [ "${1:-}" != "--force" ] && { [ -e "$key_file" ] || [ -e "$header" ]; }; then
  echo "$key_file or $header exists already; use --force to replace the key" >&2
  exit 1
fi
for tool in openssl bc; do
  command -v "$tool" >/dev/null || { echo "needs $tool (apt-get install $tool)" >&2; exit 1; }
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The hexadecimal value of one field of "openssl pkey -text" as a decimal number.
field_decimal() {
  hex=$(sed -n "/^$1:/,/^[a-zA-Z]/p" "$work/key.txt" | sed '1d;$d' | tr -d ' :\n' |
    tr 'a-f' 'A-F')
  echo "ibase=16; $hex" | BC_LINE_LENGTH=0 bc
}

while :; do
  openssl genpkey -algorithm RSA -pkeyopt rsa_keygen_bits:1024 \
    -pkeyopt rsa_keygen_pubexp:65537 -out "$work/key.pem" 2>/dev/null
  openssl pkey -in "$work/key.pem" -text -noout >"$work/key.txt"
  grep -q '^publicExponent: 65537 ' "$work/key.txt"
  modulus=$(field_decimal modulus)
  [ "${#modulus}" -eq 309 ] && break
done
private_exponent=$(field_decimal privateExponent)

mkdir -p "$(dirname "$key_file")"
printf 'modulus %s\nprivate-exponent %s\n' "$modulus" "$private_exponent" >"$key_file"
cat >"$header" <<HEADER
#pragma once
// The modulus of the servers' RSA key (public exponent 65537), the client's
// built-in default. Written by tools/make-rsa-key.sh together with the
// server's half in data/server/rsa-key.txt.
constexpr const char* DEFAULT_RSA_MODULUS =
    "$modulus";
HEADER
echo "wrote $key_file and $header"
