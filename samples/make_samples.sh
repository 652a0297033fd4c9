#!/usr/bin/env bash
# Makes the demo files (`make demo`, `tarvelon show`): a small GOST R 34.10-2012 (256) PKI in the style of a
# Russian qualified CA.  It reuses the PKI test fixtures (tests/fixtures/pki/make_fixtures.sh, run
# first so they exist) rather than building a second chain:
#   gost_ca.der       self-signed CA
#   gost_user.der     qualified-style end entity: Cyrillic names, SNILS/INN/OGRN, signing-tool
#                     extensions, certificate policies
#   gost_crl.der      v2 CRL of the CA with reason codes and invalidity dates
#   gost_request.der  PKCS#10 request with an extensionRequest and PKCS#9 attributes
#   gost_user.key.pem the user's private key (a test key), with which sign_demo.sh signs
# document.txt, the document sign_demo.sh signs, is written by hand.
# gost2012_256_cert.der is not made here: tests/fixtures/certs/make_fixtures.sh copies it.
set -euo pipefail
cd "$(dirname "$0")"
pki=../tests/fixtures/pki
[[ -s $pki/ca_gost2012_256.der ]] || bash "$pki/make_fixtures.sh"
cp "$pki/ca_gost2012_256.der" gost_ca.der
cp "$pki/ee_gost2012_256.der" gost_user.der
cp "$pki/crl_gost2012_256.der" gost_crl.der
cp "$pki/req_gost2012_256.der" gost_request.der
cp "$pki/ee_gost2012_256.key.pem" gost_user.key.pem
