#!/usr/bin/env bash
# The command-line tool: dumps a real certificate, converts between DER and PEM, and refuses broken
# files with a message and a non-zero exit instead of crashing.
set -uo pipefail
tool=$1
fixtures=$2
fail() { echo "FAIL: $*"; exit 1; }
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
cert=$fixtures/certs/rsa_ca.der
out=$("$tool" asn1 "$cert") || fail "dump of $cert failed"
grep -q '1.2.840.113549.1.1.11' <<<"$out" || fail "OID not shown in dotted form"
grep -q 'SEQUENCE {' <<<"$out" || fail "no SEQUENCE shown"
head -c 100 "$cert" > "$tmp/truncated.der"
msg=$("$tool" asn1 "$tmp/truncated.der" 2>&1); rc=$?
[ $rc -ne 0 ] || fail "truncated file accepted"
grep -q 'offset' <<<"$msg" || fail "no offset in: $msg"
grep -q 'status 302' <<<"$msg" || fail "no status in: $msg"
printf '\x30\x80\x02\x01\x05' > "$tmp/noeoc.der"
msg=$("$tool" asn1 "$tmp/noeoc.der" 2>&1); rc=$?
[ $rc -ne 0 ] || fail "missing end-of-contents accepted"
printf '\x30\x80\x04\x02\xAA\xBB\x00\x00' > "$tmp/indef.der"
out=$("$tool" asn1 "$tmp/indef.der") || fail "indefinite form refused"
grep -q 'indefinite' <<<"$out" || fail "indefinite length not shown"

# PEM wherever a file is read; OpenSSL wrote the fixtures and decoded them to the .der beside them.
pem=$fixtures/pem/rsa_ca.pem
"$tool" asn1 "$pem" > "$tmp/from_pem.txt" || fail "dump of $pem failed"
"$tool" asn1 "$cert" > "$tmp/from_der.txt" || fail "dump of $cert failed"
cmp -s "$tmp/from_pem.txt" "$tmp/from_der.txt" || fail "PEM and DER dumps differ"
for name in rsa_ca rsa_key request; do
  "$tool" der "$fixtures/pem/$name.pem" > "$tmp/$name.der" || fail "der of $name.pem failed"
  cmp -s "$tmp/$name.der" "$fixtures/pem/$name.der" || fail "der of $name.pem differs from OpenSSL's"
done
"$tool" der "$cert" > "$tmp/same.der" || fail "der of a DER file failed"
cmp -s "$tmp/same.der" "$cert" || fail "der of a DER file changed it"
"$tool" pem CERTIFICATE "$cert" > "$tmp/ours.pem" || fail "pem of $cert failed"
head -1 "$tmp/ours.pem" | grep -q $'^-----BEGIN CERTIFICATE-----\r$' || fail "no CR LF header line"
tr -d '\r' < "$tmp/ours.pem" | cmp -s - "$pem" || fail "PEM text differs from OpenSSL's"
"$tool" pem "X509 CRL" "$pem" | grep -q '^-----END X509 CRL-----' || fail "label not used for PEM input"
"$tool" der "$tmp/ours.pem" | cmp -s - "$cert" || fail "PEM round trip changed the object"
printf -- '-----BEGIN X-----\nMII\tB\n-----END X-----\n' > "$tmp/broken.pem"
msg=$("$tool" der "$tmp/broken.pem" 2>&1 >/dev/null); rc=$?
[ $rc -ne 0 ] || fail "broken PEM accepted"
grep -q 'status 319' <<<"$msg" || fail "no status in: $msg"
"$tool" pem 2>/dev/null && fail "pem without arguments accepted"
echo "tool: ok"
