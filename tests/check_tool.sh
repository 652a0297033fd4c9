#!/usr/bin/env bash
# The command-line tool: dumps a real certificate, and refuses broken files with a message and a
# non-zero exit instead of crashing.
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
echo "tool: ok"
