#!/usr/bin/env bash
# Builds Quillagram if need be and opens a pattern.
#   ./run.sh [PATTERN]
# Without a display the pattern is opened, described, drawn and saved without a window.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)

fail() {
  echo "$*" >&2
  exit 1
}

case ${1:-} in
  -h | --help)
    echo "Usage: $0 [PATTERN]"
    exit 0
    ;;
esac
[[ $# -le 1 ]] || fail "One pattern at a time, please: $0 [PATTERN]"

pattern=${1:-$root/examples/corundum.xrdml}
[[ $pattern == /* ]] || pattern=$PWD/$pattern
[[ -e $pattern ]] || fail "There is no file $pattern"
[[ -f $pattern && -r $pattern ]] || fail "$pattern cannot be read"

"$root/tools/setup.sh"
"$root/tools/build.sh" build quillagram quillagram-edit quillagram-replay quillagram-series

if [[ -n ${DISPLAY:-} || -n ${WAYLAND_DISPLAY:-} ]]; then
  exec "$root/build/quillagram" "$pattern"
fi
exec "$root/tools/describe.sh" "$root/build/quillagram-replay" "$pattern" "$PWD/quillagram-out"
