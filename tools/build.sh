#!/usr/bin/env bash
# Builds targets in a build directory below the root of the source tree.
#   tools/build.sh DIRECTORY [-DOPTION=VALUE ...] [TARGET ...]
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/$1
shift
options=(-G Ninja -DCMAKE_BUILD_TYPE=Release)
targets=()
for word in "$@"; do
  if [[ $word == -D* ]]; then options+=("$word"); else targets+=("$word"); fi
done
if command -v ccache >/dev/null; then options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi

# What CMake remembers of a tree that has been moved or copied is of no use.
cache=$build/CMakeCache.txt
if [[ -f $cache ]] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$cache"; then
  rm -rf -- "$build"
fi
log=$(mktemp)
trap 'rm -f -- "$log"' EXIT
if ! cmake -S "$root" -B "$build" "${options[@]}" >"$log" 2>&1; then
  cat "$log" >&2
  echo "The build could not be set up." >&2
  exit 1
fi
cmake --build "$build" ${targets[@]:+--target "${targets[@]}"}
