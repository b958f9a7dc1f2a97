#!/usr/bin/env bash
# Sources are formatted as .clang-format says, and includes keep to the floors of the house.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
find src tests bench tools -name '*.cpp' -o -name '*.h' | sort |
  xargs -d '\n' clang-format-14 --dry-run -Werror
tools/check-layers.sh
echo "Style: no complaints"
