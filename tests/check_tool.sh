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
# show: one summary per kind, decoded through the typed codecs. Each row: file, fixed text expected.
pki=$fixtures/pki
while IFS='|' read -r file want; do
  out=$("$tool" show "$pki/$file") || fail "show $file failed"
  grep -qF -- "$want" <<<"$out" || fail "show $file: no '$want' in:"$'\n'"$out"
done <<'EOF'
ee_gost2012_256.der|Certificate:
ee_gost2012_256.der|Subject: emailAddress=ivanov@example.ru,OGRN=1027700132195,INN=007712345678,SNILS=12345678901,GN=Иван Иванович,SN=Иванов,CN=Иванов Иван Иванович,O=ООО \"Тарвелон\",L=Москва,ST=77 г. Москва,C=RU
crl_gost2012_256.der|This update: 2025-04-01 00:00:00 UTC
ee_gost2012_256.der|Parameter set: id-GostR3410-2001-CryptoPro-A-ParamSet
ee_gost2012_256.der|Digest parameter set: id-tc26-gost3411-12-256
ee_gost2012_256.der|keyUsage (critical): digitalSignature, nonRepudiation, keyEncipherment, dataEncipherment
ee_gost2012_256.der|basicConstraints: CA:FALSE
ee_gost2012_256.der|reasons: keyCompromise, cACompromise, superseded
ee_gost2012_256.der|CRL issuer: DirName:CN=CRL Service,O=Tarvelon,C=RU
ee_gost2012_256.der|extKeyUsage: clientAuth, emailProtection, 1.2.643.2.2.34.6
ee_gost2012_256.der|OCSP - URI:http://ocsp.example.ru/
ee_gost2012_256.der|Explicit text: "Сертификат квалифицированной подписи"
ee_gost2012_256.der|subjectSignTool: СКЗИ «Тарвелон-CSP» версия 5.0
ee_gost2012_256.der|cAToolCert: Заключение № 149/3/2/1/24 от 15.01.2024
ee_gost2012_256.der|serial: 7E:57:CA:00:00:00:00:03
ee_gost2012_256.der|Kestrune key identifier: ключ-7f3a-19c2
ee_gost2012_256.der|Signature algorithm: GOST R 34.11-2012 256 with GOST R 34.10-2012 256 (1.2.643.7.1.1.3.2)
ca_gost2012_512.der|Parameter set: id-tc26-gost-3410-2012-512-paramSetA
ca_gost2001.der|Public key: GOST R 34.10-2001 (1.2.643.2.2.19)
ee_rsa.der|RSA key: 2048 bits, exponent 65537
ee_rsa.der|Signature: 256 bytes
crl_gost2012_256.der|Revoked certificates: 9
crl_gost2012_256.der|cRLNumber: 19 (0x13)
crl_gost2012_256.der|invalidityDate: 2025-01-20 08:15:00 UTC
crl_gost2012_256.der|reasonCode: certificateHold
crl_indirect.der|certificateIssuer (critical): DirName:CN=Issuer B,O=Tarvelon B,C=RU
crl_indirect.der|indirectCRL
crl_10000.der|Revoked certificates: 10000
crl_10000.der|... and 9980 more
req_gost2012_256.der|Certification request:
req_gost2012_256.der|challengePassword: "пароль-1234"
req_gost2012_256.der|Requested extensions (4):
req_gost2012_256.der|subjectAltName:
req_ms_extensions.der|extKeyUsage: clientAuth, emailProtection
EOF
[ "$("$tool" show "$pki/crl_10000.der" | grep -c '^    Serial ')" -eq 20 ] || fail "huge CRL not cut at 20 entries"
"$tool" pem CERTIFICATE "$pki/ee_gost2012_256.der" > "$tmp/ee.pem" || fail "pem of the GOST end entity failed"
cmp -s <("$tool" show "$tmp/ee.pem") <("$tool" show "$pki/ee_gost2012_256.der") || fail "show differs for PEM and DER"
# Broken input: one message naming the file (and the library status once it got that far), no crash.
: > "$tmp/empty.der"
head -c 300 "$pki/ee_rsa.der" > "$tmp/cut.der"
printf 'not DER at all' > "$tmp/text.der"
printf '\x30\x03\x02\x01\x05' > "$tmp/int.der"
for bad in empty cut text int absent; do
  msg=$("$tool" show "$tmp/$bad.der" 2>&1 >/dev/null); rc=$?
  [ $rc -ne 0 ] && [ $rc -lt 128 ] || fail "show of $bad input: exit $rc"
  grep -q "$bad.der" <<<"$msg" || fail "show of $bad input: file not named in: $msg"
  [ "$(wc -l <<<"$msg")" -eq 1 ] || fail "show of $bad input: not one line: $msg"
done
for bad in cut text int; do
  grep -q 'status 302' <<<"$("$tool" show "$tmp/$bad.der" 2>&1)" || fail "show of $bad input: no status"
done
grep -q 'truncated' <<<"$("$tool" show "$tmp/cut.der" 2>&1)" || fail "truncation not named"
# Hand-made requests for what no fixture holds: string types, RFC 4514 escaping, general-name kinds,
# the hex fallback. Builders work on hex text.
tlv() {
  local n=$(( ${#2} / 2 ))
  if [ $n -lt 128 ]; then printf '%s%02x%s' "$1" $n "$2"
  elif [ $n -lt 256 ]; then printf '%s81%02x%s' "$1" $n "$2"
  else printf '%s82%04x%s' "$1" $n "$2"; fi
}
bytes() {  # hex to octets
  printf '%b' "$(sed 's/../\\x&/g' <<<"$1")"
}
hexof() { printf '%s' "$1" | od -An -tx1 -v | tr -d ' \n'; }
atv() { tlv 30 "$(tlv 06 "$1")$(tlv "$2" "$3")"; }            # OID, string tag, value
name() { local r= a; for a; do r+=$(tlv 31 "$a"); done; tlv 30 "$r"; }  # one argument per RDN
ext() { tlv 30 "$(tlv 06 "$1")${3:+0101ff}$(tlv 04 "$2")"; }   # OID, value, critical when set
# An unsigned request: subject NAME, requested extensions EXTS (both hex).
request() {
  local spki attr
  spki=$(tlv 30 "300d06092a864886f70d0101010500$(tlv 03 "00$(tlv 30 "$(tlv 02 00c1)$(tlv 02 010001)")")")
  attr=$(tlv 30 "06092a864886f70d01090e$(tlv 31 "$(tlv 30 "$2")")")
  bytes "$(tlv 30 "$(tlv 30 "020100$1$spki$(tlv a0 "$attr")")300d06092a864886f70d01010b0500030200ff")"
}
CN=550403 O=55040a C=550406
shows() {  # NAME EXTS EXPECTED-LINE...
  local n=$1 e=$2 want out; shift 2
  request "$n" "$e" > "$tmp/made.der"
  out=$("$tool" show "$tmp/made.der") || fail "show of a made request failed"
  for want; do grep -qxF -- "$want" <<<"$out" || fail "no line '$want' in:"$'\n'"$out"; done
}
shows "$(name "$(atv $CN 1e 04220435)")" "" "  Subject: CN=Те"                  # BMPString
shows "$(name "$(atv $CN 1c 00000416)")" "" "  Subject: CN=Ж"                   # UniversalString
shows "$(name "$(atv $CN 14 e9)")" "" "  Subject: CN=é"                         # TeletexString as Latin-1
shows "$(name "$(atv $CN 0c "$(hexof '#a,b+c"d\e<f>g;h ')")")" "" '  Subject: CN=\#a\,b\+c\"d\\e\<f\>g\;h\ '
shows "$(name "$(atv $CN 0c 2078)")" "" '  Subject: CN=\ x'                     # leading space
shows "$(name "$(atv $CN 0c 610162ff)")" "" '  Subject: CN=a\01b\FF'            # control, bad UTF-8
shows "$(name "$(atv $CN 02 05)")" "" '  Subject: CN=#020105'                   # not a string
shows "$(name "$(atv $C 13 5255)" "$(atv $CN 13 42)$(atv $O 13 41)" "$(atv 2a0304 13 78)$(atv 2a85036404 12 3132)")" "" \
  '  Subject: 1.2.3.4=x+INNLE=12,CN=B+O=A,C=RU'                                # RDN order, multi-valued
shows "$(tlv 30 "")" "" '  Subject: (empty)'
san=$(tlv 30 "8704c00002018710$(printf '20010db8%024x' 1)88032a0304$(tlv a0 "060a2b060104018237140203$(tlv a0 "$(tlv 0c "$(hexof a@b.c)")")")")
shows "$(name "$(atv $CN 13 41)")" \
  "$(ext 551d11 "$san")$(ext 551d0f 0400 1)$(ext 551d13 30060101ff020100 1)$(ext 2a0304 "$(printf '%0200x' 7)")$(ext 6086480186f8420101 03020780)" \
  '    subjectAltName:' '      IP:192.0.2.1' '      IP:2001:db8:0:0:0:0:0:1' '      RID:1.2.3.4' \
  '      otherName:1.3.6.1.4.1.311.20.2.3;"a@b.c"' \
  '    keyUsage (critical): 04:00 (not decoded, status 302)' \
  '    basicConstraints (critical): CA:TRUE, pathlen:0' \
  '    netscapeCertType: SSL client' \
  "    1.2.3.4: $(printf '00:%.0s' {1..63})00... (100 bytes)"
idp=$(od -An -tx1 -v "$fixtures/extensions/idp_rfc_reasons.der" | tr -d ' \n')    # reasons under [3]
shows "$(tlv 30 "")" "$(ext 551d1c "$idp" 1)" '    issuingDistributionPoint (critical):' \
  '      URI:http://crl.example.ru/ca.crl' '      onlySomeReasons: keyCompromise, cACompromise'
# Kind detection on the forms without a version: v1 CRL (thisUpdate third) and v1 certificate.
alg=300d06092a864886f70d01010b0500 issuer=$(name "$(atv $CN 13 41)") when=170d3235303130313030303030305a
bytes "$(tlv 30 "$(tlv 30 "$alg$issuer$when")${alg}030200ff")" > "$tmp/v1.crl"
out=$("$tool" show "$tmp/v1.crl") || fail "show of a v1 CRL failed"
grep -qx 'CRL:' <<<"$out" && grep -qx '  This update: 2025-01-01 00:00:00 UTC' <<<"$out" &&
  grep -qx '  Revoked certificates: 0' <<<"$out" || fail "v1 CRL shown as:"$'\n'"$out"
spki=$(tlv 30 "300d06092a864886f70d0101010500$(tlv 03 "00$(tlv 30 "$(tlv 02 00c1)$(tlv 02 010001)")")")
bytes "$(tlv 30 "$(tlv 30 "020107$alg$issuer$(tlv 30 "$when$when")$issuer$spki")${alg}030200ff")" > "$tmp/v1.cer"
out=$("$tool" show "$tmp/v1.cer") || fail "show of a v1 certificate failed"
grep -qx 'Certificate:' <<<"$out" && grep -qx '  Version: 1' <<<"$out" && grep -qx '  Serial: 07' <<<"$out" ||
  fail "v1 certificate shown as:"$'\n'"$out"
echo "tool: ok"
