#!/usr/bin/env bash
# The library's folders show its architecture; this keeps them honest.
# - Includes point down the layer order only: a folder may use the internal headers of its own
#   folder and of the folders before it, never of a later one.
# - One source file per module, named as the last-error record names it: a file that opens
#   TV_MODULE(Name) is Name.cpp, and no two files open the same module.
# - Every library source is listed in tarvelon/CMakeLists.txt (explicit lists, no glob).
set -u
root=${1:-$(dirname "$0")/..}
cd "$root/tarvelon" || exit 2
layers=(engine text pkix extensions x509 messages)
rank() { local i; for i in "${!layers[@]}"; do [ "${layers[$i]}" = "$1" ] && { echo "$i"; return; }; done; echo -1; }
bad=0
for f in $(find . -name '*.cpp' -o -name '*.h' | sed 's|^\./||' | sort); do
  dir=${f%%/*}
  [ "$dir" = "$f" ] && { echo "$f: library sources live in a layer folder"; bad=1; continue; }
  own=$(rank "$dir")
  [ "$own" -lt 0 ] && { echo "$f: $dir is not a layer (${layers[*]})"; bad=1; continue; }
  while read -r inc; do
    used=$(rank "${inc%%/*}")
    if [ "$used" -lt 0 ] || [ "$used" -gt "$own" ]; then
      echo "$f includes tarvelon/$inc: $dir may not depend on ${inc%%/*}"; bad=1
    fi
  done < <(grep -o '#include "tarvelon/[a-z0-9]*/[A-Za-z0-9_]*\.h"' "$f" | sed 's|#include "tarvelon/||;s|"||')
  case "$f" in
    *.cpp)
      grep -Eq "^ *$f\)?\$" CMakeLists.txt || { echo "$f: not listed in tarvelon/CMakeLists.txt"; bad=1; }
      module=$(sed -n 's/^TV_MODULE(\([A-Za-z0-9_]*\)).*/\1/p' "$f")
      if [ -n "$module" ] && [ "$module.cpp" != "$(basename "$f")" ]; then
        echo "$f: records failures as $module, so it must be $module.cpp"; bad=1
      fi ;;
  esac
done
dups=$(grep -rho '^TV_MODULE([A-Za-z0-9_]*)' --include='*.cpp' . | sort | uniq -d)
[ -n "$dups" ] && { echo "modules opened by more than one file: $dups"; bad=1; }
[ "$bad" = 0 ] && echo "layout OK: ${layers[*]}"
exit "$bad"
