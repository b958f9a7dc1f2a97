#!/usr/bin/env bash
# Builds Quillagram and runs all tests, first under a language with decimal commas, then under the
# caller's own.
#   ./test.sh [CTEST-OPTION ...]      for example ./test.sh -R workspace
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
"$root/tools/setup.sh"
"$root/tools/build.sh" build -DQUILLAGRAM_TESTS=ON
"$root/tools/runtests.sh" "$root/build" "$@"
