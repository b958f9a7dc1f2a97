#!/usr/bin/env bash
# Runs the tests of a build directory under a language with decimal commas, then under the caller's.
#   tools/runtests.sh BUILD-DIRECTORY [CTEST-OPTION ...]
set -euo pipefail

build=$1
shift
run=(ctest --test-dir "$build" --output-on-failure --no-tests=error -j "$(nproc)" "$@")

# The language is made here: few machines have it, and none needs it for good.
locales=$build/locales
if [[ ! -d $locales/de_DE.UTF-8 ]]; then
  mkdir -p -- "$locales"
  localedef -i de_DE -f UTF-8 "$locales/de_DE.UTF-8"
fi
# A language that is not found is silently taken for "C", whose point would prove nothing.
mark=$(LOCPATH=$locales LC_ALL=de_DE.UTF-8 locale decimal_point)
if [[ $mark != , ]]; then
  echo "de_DE.UTF-8 could not be made in $locales: its decimal point is \"$mark\"." >&2
  exit 1
fi
echo "Tests under de_DE.UTF-8"
LOCPATH=$locales LC_ALL=de_DE.UTF-8 LANG=de_DE.UTF-8 "${run[@]}"
echo "Tests under ${LC_ALL:-${LANG:-C}}"
"${run[@]}"
