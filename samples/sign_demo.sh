#!/usr/bin/env bash
# The library's main job, end to end: a document signed with GOST R 34.10-2012 (256) the external
# way. openssl with its GOST engine stands in for the caller's crypto provider (it hashes and signs);
# examples/sign_document hands out the bytes to sign and assembles the CMS message; openssl then
# verifies the message against the CA and `tarvelon` summarises it.
#   sign_demo.sh BUILD_DIR   (the release build, holding examples/ and tools/)
set -euo pipefail
build=$(realpath "$1")
cd "$(dirname "$0")"
sign=$build/examples/sign_document
tool=$build/tools/tarvelon
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
step() { printf '\n== %s\n' "$*"; }

when=$(date -u +%Y%m%d%H%M%S)
step "the provider hashes the document (GOST R 34.11-2012 256)"
openssl dgst -engine gost -md_gost12_256 -binary -out "$tmp/digest" document.txt 2>/dev/null
od -An -tx1 "$tmp/digest" | tr -d ' \n'; echo

step "the library hands out the signed attributes to sign (signing time $when UTC)"
"$sign" attrs "$tmp/digest" "$when" > "$tmp/attrs.der"
echo "$(stat -c %s "$tmp/attrs.der") bytes: contentType, signingTime, messageDigest"

step "the provider signs them with the user's key"
openssl dgst -engine gost -md_gost12_256 -sign gost_user.key.pem -out "$tmp/signature" "$tmp/attrs.der" 2>/dev/null
echo "$(stat -c %s "$tmp/signature") bytes of signature"

step "the library assembles the signed message"
"$sign" message document.txt "$tmp/digest" "$when" gost_user.der "$tmp/signature" > "$tmp/document.p7s"
echo "document.p7s: $(stat -c %s "$tmp/document.p7s") bytes"

step "openssl cms -verify against the CA"
openssl x509 -inform DER -in gost_ca.der -out "$tmp/ca.pem"
openssl cms -engine gost -verify -binary -inform DER -in "$tmp/document.p7s" -CAfile "$tmp/ca.pem" \
  -purpose any -out "$tmp/verified.txt" 2>&1 | grep -v '^Engine "gost" set\.$'
cmp -s "$tmp/verified.txt" document.txt || { echo "the verified content is not the document" >&2; exit 1; }
echo "the content it hands back is the document"

step "tarvelon signers document.p7s"
"$tool" signers "$tmp/document.p7s"
step "tarvelon show document.p7s"
"$tool" show "$tmp/document.p7s"
