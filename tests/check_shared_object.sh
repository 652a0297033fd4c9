#!/usr/bin/env bash
# The shipped object: its name, that it needs only the C library, and that it exports nothing
# beyond the public interface: the names of the export list and one JNI wrapper for each.
set -euo pipefail
so=$1
exports=$2
sanitized=${3:-OFF}   # a sanitizer build carries the sanitizer runtimes as dependencies
fail() { echo "FAIL: $*"; exit 1; }
needed=$(readelf -d "$so" | awk '/NEEDED/ {print $5}' | tr -d '[]')
echo "NEEDED: $needed"
for lib in $needed; do
  case $lib in
    libc.so.*|libm.so.*|ld-linux*) ;;
    libasan.so.*|libubsan.so.*) [ "$sanitized" = ON ] || fail "sanitizer runtime $lib in a plain build" ;;
    *) fail "unexpected run-time dependency $lib" ;;
  esac
done
readelf -d "$so" | grep -q 'SONAME.*\[libtarvelon\.so\.1\]' || fail "SONAME is not libtarvelon.so.1"
exported=$(nm -D --defined-only "$so" | awk '{print $3}' | sort -u)
if [ -f "$exports" ]; then
  extra=$(comm -23 <(echo "$exported" | grep -v '^Java_' ) <(sort -u "$exports"))
  [ -z "$extra" ] || fail "exported but not in the interface: $extra"
  have=$(comm -12 <(echo "$exported") <(sort -u "$exports") | wc -l)
  echo "exported: $have of $(sort -u "$exports" | wc -l) interface functions"
  # One JNI wrapper per name (JNI writes the method name's '_' as "_1"), and no other Java_ symbol.
  wrappers=$(sed 's/_/_1/g; s/^/Java_velmorant_x509_tarvelon_Tarvelon_dll_1/' "$exports" | sort -u)
  [ "$(echo "$exported" | grep '^Java_')" = "$wrappers" ] || fail "the JNI wrappers are not one per exported name: \
$(comm -3 <(echo "$exported" | grep '^Java_') <(echo "$wrappers") | head -5)"
  echo "JNI wrappers: $(echo "$wrappers" | wc -l)"
else
  echo "no export list at $exports; checked dependencies only"
fi
echo "shared object: ok"
