#!/usr/bin/env bash
# README's C snippets compile as written: each ```c block, a unit of its own, against the headers.
set -euo pipefail
readme=$1 include=$2
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
awk -v dir="$tmp" '/^```c$/ { n++; f = dir "/snippet" n ".c"; next } /^```/ { f = ""; next } f { print > f }' "$readme"
count=$(ls "$tmp"/snippet*.c 2>/dev/null | wc -l)
[ "$count" -gt 0 ] || { echo "FAIL: no C snippets in $readme"; exit 1; }
for c in "$tmp"/snippet*.c; do
  cc -std=c11 -Wall -Wextra -Werror -I "$include" -c "$c" -o "${c%.c}.o" || { echo "FAIL: $(basename "$c"):"; cat -n "$c"; exit 1; }
done
echo "readme: $count snippets compile"
