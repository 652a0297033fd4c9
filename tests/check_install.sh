#!/usr/bin/env bash
# The packages as a user meets them: CPack makes the Debian packages of the build, they are unpacked
# into a scratch root, and a small C program built with `pkg-config --cflags --libs tarvelon` and a
# small CMake project built with find_package(Tarvelon) both run against the unpacked library.
#   check_install.sh BUILD_DIR
set -euo pipefail
build=$(realpath "$1")
fail() { echo "FAIL: $*"; exit 1; }
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT

(cd "$tmp" && cpack -G DEB --config "$build/CPackConfig.cmake" -B "$tmp/packages" >/dev/null) || fail "cpack"
debs=$(ls "$tmp"/packages/*.deb)
for p in libtarvelon1 libtarvelon-dev tarvelon-tool libtarvelon-java; do
  grep -q "/${p}_" <<<"$debs" || fail "no $p package among: $debs"
done
for deb in $debs; do dpkg-deb -x "$deb" "$tmp/root"; done
usr=$tmp/root/usr
[ -L "$usr/lib/libtarvelon.so" ] && [ -f "$usr/lib/libtarvelon.so.1.0.0" ] || fail "library or development link missing"
for f in include/tarvelon/tarvelon.h share/java/tarvelon.jar share/man/man1/tarvelon.1 bin/tarvelon; do
  [ -e "$usr/$f" ] || fail "$f missing"
done
export LD_LIBRARY_PATH=$usr/lib

cat > "$tmp/banner.c" <<'C'
#include <stdio.h>
#include <tarvelon/tarvelon.h>
int main(void) {
    char banner[128];
    uint32_t length = sizeof banner;
    if (GetVersionInfo(banner, &length) != 0) return 1;
    puts(banner);
    return 0;
}
C
flags=$(PKG_CONFIG_PATH=$usr/lib/pkgconfig pkg-config --cflags --libs tarvelon) || fail "pkg-config"
cc -std=c11 -o "$tmp/banner" "$tmp/banner.c" $flags || fail "C program with pkg-config flags: $flags"
[[ $("$tmp/banner") == "Tarvelon v1.0 "* ]] || fail "the C program did not run"

mkdir "$tmp/project"
cat > "$tmp/project/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(consumer C)
find_package(Tarvelon 1.0 REQUIRED)
add_executable(banner ../banner.c)
target_link_libraries(banner PRIVATE Tarvelon::tarvelon)
CMAKE
cmake -S "$tmp/project" -B "$tmp/project/build" -DCMAKE_PREFIX_PATH="$usr" >/dev/null || fail "find_package(Tarvelon)"
cmake --build "$tmp/project/build" >/dev/null || fail "CMake project build"
[[ $("$tmp/project/build/banner") == "Tarvelon v1.0 "* ]] || fail "the CMake project did not run"

# Whole outputs are compared, not piped into grep -q, which may close the pipe while the tool writes.
shown=$("$usr/bin/tarvelon" show "$(dirname "$0")/fixtures/pki/ee_rsa.der") || fail "the packaged tool"
[[ $shown == Certificate:* ]] || fail "the packaged tool's summary"
echo "install: ok ($(echo "$debs" | wc -l) packages)"
