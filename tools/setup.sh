#!/usr/bin/env bash
# Installs what the build and the tests need on Debian, if anything is missing.
#   tools/setup.sh          compiler, CMake, Qt, test and benchmark libraries
#   tools/setup.sh check    also what fuzzing, benchmarks, the checks of style and packaging and the tests of series
#                           on other engines need
set -euo pipefail

packages=(g++ cmake ninja-build ccache qt6-base-dev qt6-svg-dev qt6-wayland libgl-dev libjpeg62-turbo-dev
  libgtest-dev libc-bin locales gemmi-dev tao-pegtl-dev libstb-dev libpugixml-dev libzip-dev)
if [[ ${1:-} == check ]]; then
  packages+=(clang-14 libclang-rt-14-dev clang-format-14 libbenchmark-dev git
    desktop-file-utils libxml2-utils shared-mime-info man-db python3-gemmi parallel snakemake)
fi

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
  echo "This is no Debian system; the build needs what these packages hold: ${packages[*]}" >&2
  exit 0
fi

missing=()
for package in "${packages[@]}"; do
  state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
  [[ $state == installed ]] || missing+=("$package")
done
[[ ${#missing[@]} -gt 0 ]] || exit 0

as_root=()
if [[ $(id -u) -ne 0 ]]; then
  if ! command -v sudo >/dev/null; then
    echo "Please have these packages installed by the administrator: ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi
echo "Installing ${missing[*]} ..."
apt_get() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get -q -y -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3 "$@"
}
apt_get update
apt_get install --no-install-recommends "${missing[@]}"
