#!/usr/bin/env bash
# The shipped object: its name, that it needs only the C library, and that it exports nothing
# beyond the public interface: the names of the linker version script and one JNI wrapper for each.
set -euo pipefail
so=$1
map=$2   # the linker version script: the interface
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
# Every defined dynamic symbol, without its version, must be a name of the version script, and
# every name there must be exported, each with one JNI wrapper (JNI writes the method name's '_'
# as "_1") and no other Java_ symbol beside them.
exported=$(nm -D --defined-only "$so" | awk '$2 != "A" {print $3}' | sed 's/@.*//' | sort -u)  # A: the version node
names=$(sed -n 's/^ *\([A-Za-z0-9_]*\);$/\1/p' "$map" | sort -u)
[ -n "$names" ] || fail "no names in $map"
missing=$(comm -13 <(echo "$exported") <(echo "$names"))
[ -z "$missing" ] || fail "in the interface but not exported: $missing"
extra=$(comm -23 <(echo "$exported" | grep -v '^Java_') <(echo "$names"))
[ -z "$extra" ] || fail "exported but not in the interface: $extra"
echo "exported: $(echo "$names" | wc -l) interface functions"
wrappers=$(echo "$names" | sed 's/_/_1/g; s/^/Java_velmorant_x509_tarvelon_Tarvelon_dll_1/' | sort -u)
[ "$(echo "$exported" | grep '^Java_')" = "$wrappers" ] || fail "the JNI wrappers are not one per exported name: \
$(comm -3 <(echo "$exported" | grep '^Java_') <(echo "$wrappers") | head -5)"
echo "JNI wrappers: $(echo "$wrappers" | wc -l)"
echo "shared object: ok"
