#!/usr/bin/env bash
# A series in parts through GNU parallel, on this machine or, with --sshlogin, on others.
#   parallel.sh [OPTION-OF-PARALLEL ...] -- RECIPE LIST TABLE PARTS [OPTION-OF-SERIES ...]
# for example
#   parallel.sh --jobs 8 --bar -- cell.recipe files.txt cell.csv 100 --chain
#   parallel.sh --sshlogin 8/node1,8/node2 --retries 3 -- cell.recipe files.txt cell.csv 100
# Tables of the parts lie in TABLE.parts; the same line again goes on where they ended. A part is one
# process unless OPTION-OF-SERIES says --jobs. QUILLAGRAM_SERIES names the program if it is not found
# as quillagram-series, on all hosts alike.
set -euo pipefail

usage() {
  sed -n '2,9s/^# \{0,1\}//p' "${BASH_SOURCE[0]}" >&2
  exit 2
}

engine=()
while [[ ${1---} != -- ]]; do
  engine+=("$1")
  shift
done
[[ $# -ge 5 && $5 =~ ^[1-9][0-9]*$ ]] || usage
recipe=$2 list=$3 table=$4 parts=$5
shift 5
series=${QUILLAGRAM_SERIES:-quillagram-series}
folder=$table.parts
part() { echo "$folder/$1-of-$parts.csv"; }

# Words as one line that any shell of a host reads back.
line() {
  local word
  for word in "$@"; do printf "'%s' " "${word//\'/\'\\\'\'}"; done
}

# Whole command lines leave parallel nothing to replace, whatever a path holds.
lines() {
  local k
  for k in $(seq "$parts"); do
    printf 'cd %s&& exec %s\n' "$(line "$PWD")" "$(line "$series" --jobs 1 "$@" \
      --list "$list" --part "$k/$parts" --table "$(part "$k")" -- "$recipe")"
  done
}

"$series" --check --list "$list" "$@" -- "$recipe"
mkdir -p -- "$folder"
if ! lines "$@" | parallel "${engine[@]}"; then
  echo "Not all parts are complete (see above); the same command goes on where they ended." >&2
  exit 1
fi
tables=()
for k in $(seq "$parts"); do tables+=("$(part "$k")"); done
exec "$series" --join "$table" --list "$list" -- "${tables[@]}"
