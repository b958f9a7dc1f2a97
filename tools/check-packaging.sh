#!/usr/bin/env bash
# Desktop entry, file types and manual pages are what desktops and readers understand.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root/packaging"
scratch=$(mktemp -d)
trap 'rm -rf -- "$scratch"' EXIT

desktop-file-validate quillagram.desktop
xmllint --noout quillagram-types.xml icons/quillagram.svg
mkdir -p "$scratch/mime/packages"
cp quillagram-types.xml "$scratch/mime/packages"
XDG_DATA_HOME=$scratch update-mime-database "$scratch/mime"
for page in man/*.1; do
  MANROFFSEQ='' man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>>"$scratch/warnings" >/dev/null
done
if [[ -s $scratch/warnings ]]; then
  cat "$scratch/warnings" >&2
  exit 1
fi
echo "Packaging: no complaints"
