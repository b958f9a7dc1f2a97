#!/usr/bin/env bash
# Runs an indexing engine, or "Find cell", over all peak lists of a folder and prints the solutions
# as a table.
#   tools/indexlists.sh REPLAY ENGINE FOLDER [FIELD=VALUE ...]
# REPLAY is quillagram-replay, ENGINE is ITO, TREOR90 or FIND, and each FIELD is a label of the
# engine's dialog, as in "Max lines=40".
#
# TREOR90 lists trial cells as they come: here they are ranked by their figure of merit.
#
# Columns: file, rank, a, b, c, al, be, ga (angstrom, degrees), fom, nix, time_s. Of FIND fom is the
# logarithm of the odds, and the letter of the centering, cent, takes the place of nix. A list
# without a solution has a row with its time alone. The time holds the start of the program.
set -euo pipefail

replay=$(realpath -- "$1")
engine=$2
folder=$(realpath -- "$3")
shift 3

case $engine in
  ITO) plot="Plot ITO solutions" ;;
  TREOR90) plot="Plot TREOR solutions" ;;
  FIND) plot= ;;
  *)
    echo "There is no engine $engine." >&2
    exit 1
    ;;
esac

scratch=$(mktemp -d)
trap 'rm -rf -- "$scratch"' EXIT
cd "$scratch"
# The engines do not look at the pattern, but the menu wants one.
printf '%s\n' "5 1" "6 2" "7 1" > pattern.xy

entries=
for entry in "$@"; do
  entries+="set \"${entry%%=*}\" \"${entry#*=}\""$'\n'
done

# The lines of a run on the list "$1".
engine_run() {
  cat << END
menu "Index/$engine"
set "Wavelength" 1.54056
set "Peak file" "$1"
${entries}press "Run $engine"
menu "Index/$plot"
press Cancel
END
  for row in {1..100}; do echo "get solutions($row,1:9)"; done
}
find_run() {
  printf '%s\n' 'menu "Index/Find cell"' "file \"$1\""
  for row in {1..20}; do echo "get findcell($row,1:24)"; done
  echo "press Cancel"
}

# Cell, figure of merit and what comes last in the table.
engine_rows() {
  awk -F'\t' -v OFS=, '$1 == "value" && $2 ~ /^solutions/ && $3 > 0 {
    print $3, $4, $5, $6, $7, $8, $10, $11
  }'
}
find_rows() {
  awk -F'\t' -v OFS=, '$1 == "value" && $2 ~ /^findcell/ && $3 > 0 {
    print $3, $4, $5, $6, $7, $8, $22, substr("PABCIFR", $26, 1)
  }'
}

if [[ $engine == FIND ]]; then kind=find last=cent; else kind=engine last=nix; fi
echo "file,rank,a,b,c,al,be,ga,fom,$last,time_s"
for list in "$folder"/*.pks; do
  { echo "open pattern.xy" && "${kind}_run" "$list"; } > run.replay
  began=$(date +%s.%N)
  # Without solutions there is no table to cancel, and the transcript ends there.
  "$replay" run.replay > run.out 2>&1 || true
  ended=$(date +%s.%N)
  "${kind}_rows" < run.out > rows
  if [[ $engine == TREOR90 ]]; then sort -t, -s -k7,7gr -o rows rows; fi
  [[ -s rows ]] || echo ",,,,,,," > rows
  awk -F, -v OFS=, -v file="$(basename -- "$list")" -v began="$began" -v ended="$ended" '{
    print file, $1 == "" ? "" : NR, $0, ended - began
  }' rows
done
