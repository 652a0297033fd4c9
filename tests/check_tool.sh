#!/usr/bin/env bash
# The command-line tool: dumps real objects, converts between DER and PEM, summarises certificates,
# CRLs, requests, OCSP, CMS signed and enveloped messages, time stamps and SeveralData, lists a CMS message's signers, and refuses broken files with
# one message and a non-zero exit instead of crashing.
set -uo pipefail
tool=$1 fixtures=$2 pki=$2/pki cert=$2/certs/rsa_ca.der pem=$2/pem/rsa_ca.pem
ee=$pki/ee_gost2012_256.der crl=$pki/crl_gost2012_256.der req=$pki/req_gost2012_256.der
fail() { echo "FAIL: $*"; exit 1; }
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
# check HOW WANT ARGUMENTS...: runs the tool on the arguments. ok: exit 0 and WANT in the output;
# line: exit 0 and WANT a whole line of it; same: exit 0 and the output equals the file WANT;
# fail: an exit below 128 and one line on stderr that matches the pattern WANT.
check() {
  local how=$1 want=$2 rc; shift 2
  "$tool" "$@" >"$tmp/out" 2>"$tmp/err"; rc=$?
  case $how in
    ok) [ $rc -eq 0 ] && grep -qF -- "$want" "$tmp/out" ;;
    line) [ $rc -eq 0 ] && grep -qxF -- "$want" "$tmp/out" ;;
    same) [ $rc -eq 0 ] && cmp -s "$want" "$tmp/out" ;;
    fail) [ $rc -ne 0 ] && [ $rc -lt 128 ] && [ "$(wc -l <"$tmp/err")" -eq 1 ] && grep -qE -- "$want" "$tmp/err" ;;
  esac || fail "tool $*: exit $rc, no $how '$want' in:"$'\n'"$(cat "$tmp/out" "$tmp/err")"
}

# Broken input, and the outputs other runs must reproduce: OpenSSL's PEM with the CR LF line ends
# the tool writes, the dumps and summaries of the DER beside a PEM text.
head -c 100 "$cert" > "$tmp/truncated.der"
printf '\x30\x80\x02\x01\x05' > "$tmp/noeoc.der"
printf '\x30\x80\x04\x02\xAA\xBB\x00\x00' > "$tmp/indef.der"
printf -- '-----BEGIN X-----\nMII\tB\n-----END X-----\n' > "$tmp/broken.pem"
: > "$tmp/empty.der"
head -c 300 "$pki/ee_rsa.der" > "$tmp/cut.der"
printf 'not DER at all' > "$tmp/text.der"
printf '\x30\x03\x02\x01\x05' > "$tmp/int.der"
sed 's/$/\r/' "$pem" > "$tmp/crlf.pem"
"$tool" asn1 "$cert" > "$tmp/dump.txt"
"$tool" show "$ee" > "$tmp/ee.txt"
"$tool" pem CERTIFICATE "$ee" > "$tmp/ee.pem"

check ok '1.2.840.113549.1.1.11' asn1 "$cert"  # OIDs in dotted form
check ok 'SEQUENCE {' asn1 "$cert"
check ok 'indefinite' asn1 "$tmp/indef.der"
check fail 'offset 0 .*status 302' asn1 "$tmp/truncated.der"
check fail 'status 335' asn1 "$tmp/noeoc.der"
check same "$tmp/dump.txt" asn1 "$pem"
for name in rsa_ca rsa_key request; do check same "$fixtures/pem/$name.der" der "$fixtures/pem/$name.pem"; done
check same "$cert" der "$cert"
check same "$tmp/crlf.pem" pem CERTIFICATE "$cert"
check same "$cert" der "$tmp/crlf.pem"
check ok '-----END X509 CRL-----' pem "X509 CRL" "$pem"
check fail 'status 319' der "$tmp/broken.pem"
"$tool" pem 2>/dev/null && fail "pem without arguments accepted"
# show: one summary per kind, decoded through the typed codecs.
summary() {  # FILE WANT...: show FILE succeeds and its output holds each WANT
  local file=$1 want; shift
  for want; do check ok "$want" show "$file"; done
}
summary "$ee" 'Subject: emailAddress=ivanov@example.ru,OGRN=1027700132195,INN=007712345678,SNILS=12345678901,GN=Иван Иванович,SN=Иванов,CN=Иванов Иван Иванович,O=ООО \"Тарвелон\",L=Москва,ST=77 г. Москва,C=RU' \
  'Parameter set: id-GostR3410-2001-CryptoPro-A-ParamSet' 'Digest parameter set: id-tc26-gost3411-12-256' \
  'keyUsage (critical): digitalSignature, nonRepudiation, keyEncipherment, dataEncipherment' 'basicConstraints: CA:FALSE' \
  'reasons: keyCompromise, cACompromise, superseded' 'CRL issuer: DirName:CN=CRL Service,O=Tarvelon,C=RU' \
  'extKeyUsage: clientAuth, emailProtection, 1.2.643.2.2.34.6' 'OCSP - URI:http://ocsp.example.ru/' \
  'Explicit text: "Сертификат квалифицированной подписи"' 'subjectSignTool: СКЗИ «Тарвелон-CSP» версия 5.0' \
  'cAToolCert: Заключение № 149/3/2/1/24 от 15.01.2024' 'serial: 7E:57:CA:00:00:00:00:03' \
  'Kestrune key identifier: ключ-7f3a-19c2' \
  'Signature algorithm: GOST R 34.11-2012 256 with GOST R 34.10-2012 256 (1.2.643.7.1.1.3.2)'
check same "$tmp/ee.txt" show "$tmp/ee.pem"
summary "$pki/ca_gost2012_512.der" 'Parameter set: id-tc26-gost-3410-2012-512-paramSetA'
summary "$pki/ca_gost2001.der" 'Public key: GOST R 34.10-2001 (1.2.643.2.2.19)'
summary "$pki/ee_rsa.der" 'RSA key: 2048 bits, exponent 65537' 'Signature: 256 bytes'
summary "$crl" 'This update: 2025-04-01 00:00:00 UTC' 'Revoked certificates: 9' 'cRLNumber: 19 (0x13)' \
  'invalidityDate: 2025-01-20 08:15:00 UTC' 'reasonCode: certificateHold'
summary "$pki/crl_indirect.der" 'certificateIssuer (critical): DirName:CN=Issuer B,O=Tarvelon B,C=RU' 'indirectCRL'
summary "$pki/crl_10000.der" 'Revoked certificates: 10000' '... and 9980 more'
[ "$(grep -c '^    Serial ' "$tmp/out")" -eq 20 ] || fail "huge CRL not cut at 20 entries"
summary "$req" 'Certification request:' 'challengePassword: "пароль-1234"' 'Requested extensions (4):'
summary "$pki/req_ms_extensions.der" 'extKeyUsage: clientAuth, emailProtection'
# Broken input: one message naming the file, and the library status once it got that far.
check fail 'empty\.der' show "$tmp/empty.der"
check fail 'absent\.der' show "$tmp/absent.der"
check fail 'cut\.der: .*truncated.*status 302' show "$tmp/cut.der"
check fail 'text\.der: .*status 302' show "$tmp/text.der"
check fail 'int\.der: .*status 302' show "$tmp/int.der"

# Hand-made requests for what no fixture holds: string types, RFC 4514 escaping, general-name kinds,
# the hex fallback. Builders work on hex text.
tlv() {
  local n=$(( ${#2} / 2 ))
  if [ $n -lt 128 ]; then printf '%s%02x%s' "$1" $n "$2"
  elif [ $n -lt 256 ]; then printf '%s81%02x%s' "$1" $n "$2"
  else printf '%s82%04x%s' "$1" $n "$2"; fi
}
bytes() { printf '%b' "$(sed 's/../\\x&/g' <<<"$1")"; }  # hex to octets
hexof() { printf '%s' "$1" | od -An -tx1 -v | tr -d ' \n'; }
atv() { tlv 30 "$(tlv 06 "$1")$(tlv "$2" "$3")"; }            # OID, string tag, value
name() { local r= a; for a; do r+=$(tlv 31 "$a"); done; tlv 30 "$r"; }  # one argument per RDN
ext() { tlv 30 "$(tlv 06 "$1")${3:+0101ff}$(tlv 04 "$2")"; }   # OID, value, critical when set
alg=300d06092a864886f70d01010b0500 issuer=$(name "$(atv 550403 13 41)") when=170d3235303130313030303030305a
spki=$(tlv 30 "300d06092a864886f70d0101010500$(tlv 03 "00$(tlv 30 "$(tlv 02 00c1)$(tlv 02 010001)")")")
shows() {  # NAME EXTS EXPECTED-LINE...: an unsigned request with that subject and requested extensions
  local attr=$(tlv 30 "06092a864886f70d01090e$(tlv 31 "$(tlv 30 "$2")")") want
  bytes "$(tlv 30 "$(tlv 30 "020100$1$spki$(tlv a0 "$attr")")${alg}030200ff")" > "$tmp/made.der"
  shift 2
  for want; do check line "$want" show "$tmp/made.der"; done
}
CN=550403 O=55040a C=550406
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
bytes "$(tlv 30 "$(tlv 30 "$alg$issuer$when")${alg}030200ff")" > "$tmp/v1.crl"
for want in 'CRL:' '  This update: 2025-01-01 00:00:00 UTC' '  Revoked certificates: 0'; do check line "$want" show "$tmp/v1.crl"; done
bytes "$(tlv 30 "$(tlv 30 "020107$alg$issuer$(tlv 30 "$when$when")$issuer$spki")${alg}030200ff")" > "$tmp/v1.cer"
for want in 'Certificate:' '  Version: 1' '  Serial: 07'; do check line "$want" show "$tmp/v1.cer"; done

# OCSP: openssl's requests and responses, a status code alone, an undecodable basic response.
o=$fixtures/ocsp keyHash=45:AC:85:7C:27:34:3F:7D:86:3D:E8:33:B6:33:DF:30:49:AF:40:83
summary "$o/req_rsa_signed.der" 'OCSP request:' 'Requestor: DirName:emailAddress=ivanov@example.ru' 'Requests: 1' \
  'Certificate ID: sha1 (1.3.14.3.2.26), serial 0E:E0:00:00:00:00:00:01' "Issuer key hash: $keyHash" 'OCSP nonce: ' \
  'Signature algorithm: sha256WithRSAEncryption' 'Serial 0E:E0:00:00:00:00:00:01, subject emailAddress='
check line '  Signature: (none)' show "$o/req_rsa_no_nonce.der"
summary "$o/resp_rsa_keyid.der" 'Status: successful' 'Response type: basic (1.3.6.1.5.5.7.48.1.1)' \
  "Responder key hash: $keyHash" 'Status: revoked 2025-02-01 00:00:00 UTC, keyCompromise' \
  'invalidityDate: 2025-01-20 08:15:00 UTC' 'Status: revoked 2025-03-05 00:00:00 UTC, certificateHold' 'OCSP nonce: '
summary "$o/resp_rsa_multi.der" 'Responder: INN=007701234567,OGRN=1027700132195,CN=Тестовый УЦ RSA,O=Тарвелон,C=RU' \
  'Status: good' 'Status: unknown' 'Next update: ' 'Serial 7E:57:CA:00:00:00:00:01, subject INN=007701234567'
grep -q 'Next update' <("$tool" show "$o/resp_rsa_keyid.der") && fail "nextUpdate shown where none was given"
check line '  Status: malformedRequest' show "$o/resp_malformed.der"
bytes "$(tlv 30 "0a0100$(tlv a0 "$(tlv 30 "06092b0601050507300101$(tlv 04 0500)")")")" > "$tmp/basic.der"
check fail 'basic\.der: 1 field\(s\) could not be read' show "$tmp/basic.der"
bytes 30050a0100a000 > "$tmp/resp.der"
check fail 'cannot decode the OCSP response \(status 302\)' show "$tmp/resp.der"

# CMS: openssl's CAdES messages checked against their EXPECT rows, the same as BER, PEM and
# detached, and broken messages.
a=$fixtures/attributes
expect() { sed -n "s/^$1 .* $2=\([^ ]*\).*/\1/p" "$a/EXPECT"; }  # FILE KEY: the value of KEY in FILE's row
colons() { sed 's/../&:/g; s/:$//' <<<"$1" | tr a-f A-F; }      # hex as the tool prints it
when() { sed -E 's/(....)(..)(..)(..)(..)(..)/\1-\2-\3 \4:\5:\6 UTC/' <<<"$1"; }
declare -A caCN=([rsa]='Тестовый УЦ RSA' [gost]='Тестовый УЦ ГОСТ 2012-256') algName=([rsa]=sha256 [gost]='GOST R 34.11-2012 256')
for alg in rsa gost; do
  m=cades_$alg.der v2=cades_${alg}_signing_certificate_v2.der
  time=$(when "$(expect $m signingTime)") digestAlg=$(expect $m digestAlg)
  summary "$a/$m" 'Content: 28 bytes' "Digest algorithm: ${algName[$alg]} ($digestAlg)" \
    "Identifier: issuer INN=007701234567,OGRN=1027700132195,CN=${caCN[$alg]},O=Тарвелон,C=RU, serial $(colons "$(expect $m serial)")" \
    "Signed attributes ($(expect $m attrs)):" "signingTime: $time" "messageDigest: $(colons "$(expect $m messageDigest)")" \
    "Certificate 1: ${algName[$alg]} ($digestAlg), hash $(colons "$(expect $v2 certHash)")" \
    "Serial $(colons "$(expect $m serial)"), subject CN=Иванов Иван Иванович, issuer CN=${caCN[$alg]}"
  check line "1: $time, ${caCN[$alg]}" signers "$a/$m"
  [ "$("$tool" signers "$a/$m" | wc -l)" -eq 1 ] || fail "signers of $m: not one line"
done
check line '        contentType: data (1.2.840.113549.1.7.1)' show "$a/cades_rsa.der"
check line '        smimeCapabilities: 153 bytes' show "$a/cades_rsa.der"
"$tool" show "$a/cades_rsa.der" > "$tmp/cades.txt"
"$tool" pem CMS "$a/cades_rsa.der" > "$tmp/cades.pem"
sed 's/BEGIN CMS/BEGIN PKCS7/; s/END CMS/END PKCS7/' "$tmp/cades.pem" > "$tmp/cades7.pem"
check same "$tmp/cades.txt" show "$tmp/cades.pem"
check same "$tmp/cades.txt" show "$tmp/cades7.pem"
# openssl's streamed BER (indefinite lengths, eContent in segments), detached, and key-identifier
# messages; a key identifier is longer than the library's display text takes, so signers shows it.
if command -v openssl >/dev/null; then
  openssl x509 -inform DER -in "$pki/ee_rsa.der" -out "$tmp/ee_rsa.pem"
  printf 'streamed' > "$tmp/content.txt"
  declare -A options=([stream]='-stream -nodetach' [detached]='' [keyid]='-keyid')
  for form in "${!options[@]}"; do
    openssl cms -sign -binary ${options[$form]} -outform DER -in "$tmp/content.txt" -signer "$tmp/ee_rsa.pem" \
      -inkey "$pki/ee_rsa.key.pem" -out "$tmp/$form.der" 2>/dev/null || fail "openssl cms $form"
  done
  check line "1: $(sed 's/.*signingTime: //;t;d' <("$tool" show "$tmp/keyid.der")), key id $(openssl x509 -in "$tmp/ee_rsa.pem" -noout -ext subjectKeyIdentifier | sed -n 2p | tr -d ' ')" \
    signers "$tmp/keyid.der"
  [ "$(head -c 2 "$tmp/stream.der" | od -An -tx1 | tr -d ' ')" = 3080 ] || fail "openssl did not stream"
  summary "$tmp/stream.der" 'Content: 8 bytes' 'Signers: 1'
  check ok '  Content: detached' show "$tmp/detached.der"
  check ok ', Тестовый УЦ RSA' signers "$tmp/stream.der"
  head -c 400 "$tmp/stream.der" > "$tmp/cutber.p7"
  check fail 'cutber\.p7: .*indefinite length never ends \(status 335\)' show "$tmp/cutber.p7"
  check fail 'cutber\.p7: .*indefinite length never ends \(status 335\)' signers "$tmp/cutber.p7"
fi
# Hand-made: a key-identifier signer, kinds of certificates and CRLs other than the plain ones, a
# certificate that does not decode, an undecodable signed attribute, a signingCertificate (v1) with
# its SHA-1 hash alone, an unsigned attribute.
oid() { tlv 06 "$1"; }
sha256=$(tlv 30 "$(oid 608648016503040201)") data=2a864886f70d010701
attr() { tlv 30 "$(oid "$1")$(tlv 31 "$2")"; }
signer=$(tlv 30 "020103$(tlv 80 01020304)$sha256$(tlv a0 "$(attr 2a864886f70d010903 "$(oid $data)")$(attr 2a864886f70d010904 020105)$(attr 2a864886f70d010910020c "$(tlv 30 "$(tlv 30 "$(tlv 30 "$(tlv 04 "$(printf '%040x' 20)")")")")")")300d06092a864886f70d0101010500$(tlv 04 0102)$(tlv a1 "$(attr 2a0304 "$(tlv 04 aabbcc)")")")
certs=$(tlv a0 "$(tlv a1 020100)$(tlv a3 "$(oid 2a0305)0500")3003020105")
crls=$(tlv a1 "$(tlv a1 "$(oid 2b06010505071002)0500")$(od -An -tx1 -v "$pki/crl_rsa.der" | tr -d ' \n')")
signedData() { tlv 30 "$(oid 2a864886f70d010702)$(tlv a0 "$(tlv 30 "020103$(tlv 31 "$sha256")$(tlv 30 "$(oid $data)")$1")")"; }
bytes "$(signedData "$certs$crls$(tlv 31 "$signer")")" > "$tmp/made.p7"
for want in '  Content: detached' '    attribute certificate v1, 5 bytes' '    other certificate format, 9 bytes' \
  '    certificate, 5 bytes (not decoded, status 302)' '    other revocation info 1.3.6.1.5.5.7.16.2, 14 bytes' \
  '      Identifier: key id 01:02:03:04' '        messageDigest: 3 bytes (not decoded, status 302)' \
  '      Unsigned attributes (1):' '        1.2.3.4: 5 bytes' \
  '    Issuer CN=Тестовый УЦ RSA, this update 2025-04-01 00:00:00 UTC, 9 entries' \
  "        signingCertificate: Certificate 1: sha1 (1.3.14.3.2.26), hash $(printf '00:%.0s' {1..19})14"; do check line "$want" show "$tmp/made.p7"; done
check line '1: no signing time, Подписант не найден' signers "$tmp/made.p7"
# A signingTime with two values: each is shown, but it names no one time for signers.
twice=$(tlv 30 "020101$(tlv 30 "$issuer$(tlv 02 07)")$sha256$(tlv a0 "$(attr 2a864886f70d010905 "$when$when")")300d06092a864886f70d0101010500$(tlv 04 0102)")
bytes "$(signedData "$(tlv 31 "$twice")")" > "$tmp/twice.p7"
check line '      Identifier: issuer CN=A, serial 07' show "$tmp/twice.p7"
[ "$("$tool" show "$tmp/twice.p7" | grep -cx '        signingTime: 2025-01-01 00:00:00 UTC')" -eq 2 ] || fail "two signing times not shown"
check fail 'twice\.p7: 1 field\(s\) could not be read' signers "$tmp/twice.p7"
# The status stands in for the time; the display text has a '?' per octet of a PrintableString.
[ "$("$tool" signers "$tmp/twice.p7" 2>/dev/null)" = '1: <unreadable, status 323>, ?' ] || fail "signers of twice.p7"
bytes "$(signedData 3100)" > "$tmp/nosigners.p7"
check line '  Signers: 0' show "$tmp/nosigners.p7"
check line 'no signers' signers "$tmp/nosigners.p7"
# Broken: cut short, another content type, no CMS at all.
head -c 1000 "$a/cades_rsa.der" > "$tmp/cut.p7"
bytes "$(tlv 30 "$(oid $data)$(tlv a0 "$(tlv 04 4142)")")" > "$tmp/data.p7"
check fail 'cut\.p7: cannot decode the CMS signed message: truncated, 1000 of [0-9]+ bytes \(status 302\)' show "$tmp/cut.p7"
check fail 'cut\.p7: not a CMS signed message: truncated, 1000 of [0-9]+ bytes \(status 302\)' signers "$tmp/cut.p7"
check fail 'data\.p7: cannot decode the CMS signed message: content type data \(1\.2\.840\.113549\.1\.7\.1\) is not signedData \(status 314\)' show "$tmp/data.p7"
check fail 'data\.p7: not a CMS signed message: content type data .* \(status 314\)' signers "$tmp/data.p7"
check fail 'ee_rsa\.der: not a CMS signed message \(status 302\)' signers "$pki/ee_rsa.der"
check fail 'empty\.der' signers "$tmp/empty.der"
# Every openssl-made signed message of the CMS fixtures: its signers counted alike by show and signers.
for f in $(cut -d' ' -f1 "$fixtures/cms/EXPECT" | grep '^signed_'); do
  n=$(sed -n "s/^$f .* signers=\([0-9]*\).*/\1/p" "$fixtures/cms/EXPECT")
  summary "$fixtures/cms/$f" "  Signers: $n"
  [ "$("$tool" signers "$fixtures/cms/$f" | wc -l)" -eq "$n" ] || fail "signers of $f: not $n lines"
done
# Time stamps: every openssl query, reply and token against its EXPECT row; the SeveralData of two
# tokens; a cut token and a reply with a status RFC 3161 does not name.
t=$fixtures/timestamp
field() { sed -n "s/^$1 .* $2=\([^ ]*\).*/\1/p" "$t/EXPECT"; }  # FILE KEY: the value of KEY in FILE's row
declare -A statusOf=([granted]='granted (0)' [rejection]='rejection (2)')
for f in $(cut -d' ' -f1 "$t/EXPECT" | grep -E '^(query|reply|token)_'); do
  want=()
  case $f in
    query_*) want=('Time-stamp query:' "Hash: $(colons "$(field "$f" imprint)")") ;;
    reply_*) want=("Status: ${statusOf[$(field "$f" status)]}") ;;
    token_*) accuracy=$(field "$f" accuracy | awk -F, '{split("s ms us", u, " "); s=""; for (i = 1; i <= 3; i++) if ($i != "" && $i != "-") s = s (s ? ", " : "") $i " " u[i]; print s}')
      want=("Serial: $(field "$f" serial | sed 's/^0*//') (0x$(field "$f" serial))" \
        "Generation time: $(field "$f" genTime | tr T ' ') UTC" "Policy: $(field "$f" policy)")
      [ -n "$accuracy" ] && want+=("Accuracy: $accuracy") ;;
  esac
  nonce=$(field "$f" nonce)
  [ -n "$nonce" ] && [ "$nonce" != - ] && want+=("Nonce: $(colons "$nonce")")
  summary "$t/$f" "${want[@]}"
done
check ok 'Status text: "Requested policy is not supported."' show "$t/reply_rejected_policy.der"
check ok 'Failure: badAlg' show "$t/reply_rejected_alg.der"
[ "$("$tool" show "$t/several.der" | grep -c '^      Time-stamp info:$')" -eq 2 ] || fail "SeveralData: not two tokens"
check ok 'SeveralData: 2 messages' show "$t/several.der"
head -c 700 "$t/token_rsa.der" > "$tmp/token_cut.der"
check fail 'token_cut\.der: cannot decode the CMS signed message: truncated' show "$tmp/token_cut.der"
bytes 3008300602010902010a > "$tmp/reply_odd.der"
check line '  Status: unknown (9)' show "$tmp/reply_odd.der"
# CMS enveloped messages: openssl's RSA (by issuer and serial, and by key id) and GOST key transport,
# a hand-made one with an opaque recipient, and one cut short.
if command -v openssl >/dev/null; then
  openssl x509 -inform DER -in "$pki/ee_gost2012_256.der" -out "$tmp/ee_gost.pem"
  printf 'секрет' > "$tmp/secret.txt"
  openssl cms -encrypt -aes128 -binary -outform DER -in "$tmp/secret.txt" -out "$tmp/env_rsa.p7m" "$tmp/ee_rsa.pem" \
    && openssl cms -encrypt -keyid -binary -outform DER -in "$tmp/secret.txt" -out "$tmp/env_keyid.p7m" "$tmp/ee_rsa.pem" \
    && printf 'openssl_conf = i\n[i]\nengines = e\n[e]\ngost = g\n[g]\ndefault_algorithms = ALL\n' > "$tmp/gost.cnf" \
    && OPENSSL_CONF=$tmp/gost.cnf openssl cms -encrypt -gost89 -binary -outform DER -in "$tmp/secret.txt" \
      -out "$tmp/env_gost.p7m" "$tmp/ee_gost.pem" || fail "openssl cms -encrypt"
  summary "$tmp/env_rsa.p7m" 'CMS enveloped message:' '    Recipient 1: key transport' \
    'Key encryption algorithm: rsaEncryption (1.2.840.113549.1.1.1)' 'Content encryption: aes128-CBC (2.16.840.1.101.3.4.1.2)' \
    'Encrypted content: 16 bytes'
  check line "      Identifier: key id $(openssl x509 -in "$tmp/ee_rsa.pem" -noout -ext subjectKeyIdentifier | sed -n 2p | tr -d ' ')" \
    show "$tmp/env_keyid.p7m"
  summary "$tmp/env_gost.p7m" '        GOST key transport:' '          Parameter set: id-tc26-gost-28147-param-Z' \
    'Ephemeral key algorithm: GOST R 34.10-2012 256 (1.2.643.7.1.1.1.1)' 'Content encryption: GOST 28147-89 (1.2.643.2.2.21)'
  head -c 200 "$tmp/env_gost.p7m" > "$tmp/env_cut.p7m"
  check fail 'env_cut\.p7m: cannot decode the CMS enveloped message: truncated, 200 of [0-9]+ bytes \(status 302\)' show "$tmp/env_cut.p7m"
fi
enveloped=$(tlv 30 "020102$(tlv 31 "$(tlv a1 020103)")$(tlv 30 "$(oid $data)$(tlv 30 "$(oid 608648016503040102)")")")
bytes "$(tlv 30 "$(oid 2a864886f70d010703)$(tlv a0 "$enveloped")")" > "$tmp/opaque.p7m"
for want in '    Recipient 1: key agreement, 5 bytes' '  Encrypted content: detached'; do check line "$want" show "$tmp/opaque.p7m"; done
# As people use other inspectors: --help and --version, - for standard input, every block of a PEM
# bundle, and the reason a file cannot be read.
[[ $("$tool" --help) == "usage: tarvelon "* ]] || fail "--help"
[[ $("$tool" --version) =~ ^tarvelon\ [0-9]+\.[0-9]+\.[0-9]+\ \(Tarvelon\ v ]] || fail "--version"
"$tool" show - < "$ee" > "$tmp/stdin.txt" && cmp -s "$tmp/stdin.txt" "$tmp/ee.txt" || fail "show - (standard input)"
"$tool" pem CERTIFICATE "$pki/ca_rsa.der" > "$tmp/bundle.pem" && cat "$tmp/ee.pem" >> "$tmp/bundle.pem"
[ "$("$tool" show "$tmp/bundle.pem" | grep -c '^Certificate:')" -eq 2 ] || fail "show of a bundle: not two summaries"
check line '2 objects read' show "$tmp/bundle.pem"
"$tool" der "$tmp/bundle.pem" 2>/dev/null | cmp -s - <(cat "$pki/ca_rsa.der" "$ee") || fail "der of a bundle"
check fail 'cannot read .*absent\.der: No such file or directory' show "$tmp/absent.der"
check fail "cannot read $tmp: Is a directory" show "$tmp"
# The fingerprint is SHA-1 over the DER, as openssl computes it; -noout with selectors prints only
# the fields asked for, one name=value line each.
if command -v openssl >/dev/null; then
  want=$(openssl x509 -inform DER -in "$ee" -noout -fingerprint -sha1 | sed 's/^.*=//')
  check line "SHA-1 fingerprint: $want" show "$ee"
  "$tool" show -noout -serial -fingerprint "$ee" > "$tmp/fields.txt" || fail "show -noout"
  [ "$(cat "$tmp/fields.txt")" = "serial=$(openssl x509 -inform DER -in "$ee" -noout -serial | sed 's/^serial=//')
SHA1 Fingerprint=$want" ] || fail "show -noout -serial -fingerprint: $(cat "$tmp/fields.txt")"
fi
check line 'notAfter=2027-11-21 22:24:47 UTC' show -noout -dates "$pki/ee_rsa.der"
check fail 'needs a certificate' show -noout -subject "$crl"
# asn1 names the OIDs it knows and opens what OCTET STRINGs and BIT STRINGs encapsulate.
"$tool" asn1 "$pki/ee_rsa.der" > "$tmp/dump_ee.txt" || fail "asn1 of a certificate"
grep -q 'OBJECT IDENTIFIER len=9 1.2.840.113549.1.1.11 (sha256WithRSAEncryption)$' "$tmp/dump_ee.txt" || fail "asn1: OID names"
grep -q 'BIT STRING len=271 encapsulates {$' "$tmp/dump_ee.txt" || fail "asn1: the RSA key in its BIT STRING"
grep -q 'OBJECT IDENTIFIER len=3 2.5.29.14 (subjectKeyIdentifier)$' "$tmp/dump_ee.txt" || fail "asn1: extension names"
# Garbage stops the dump at once instead of being listed; der refuses what is not one element.
head -c 4096 /dev/zero > "$tmp/zeros.der"
check fail 'zeros\.der: end-of-contents outside an indefinite-length element at offset 0' asn1 "$tmp/zeros.der"
check fail 'text\.der: object 1 is not one BER or DER element' der "$tmp/text.der"
# A notAfter past the years the library's time records hold is shown from its own text, exit 0.
if command -v openssl >/dev/null; then
  openssl req -x509 -newkey rsa:1024 -nodes -keyout "$tmp/forever.key" -subj /CN=forever -days 2900000 -outform DER \
    -out "$tmp/forever.der" 2>/dev/null || fail "openssl req"
  check ok '  Not after:  99' show "$tmp/forever.der"
fi
echo "tool: ok"
