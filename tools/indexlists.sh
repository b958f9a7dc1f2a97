#!/usr/bin/env bash
# Runs an indexing engine over all peak lists of a folder and prints its solutions as a table.
#   tools/indexlists.sh REPLAY ENGINE FOLDER [FIELD=VALUE ...]
# REPLAY is quillagram-replay, ENGINE is ITO or TREOR90, and each FIELD is a label of the engine's
# dialog, as in "Max lines=40".
#
# TREOR90 lists trial cells as they come: here they are ranked by their figure of merit.
#
# Columns: file, rank, a, b, c, al, be, ga (angstrom, degrees), fom, nix, time_s. A list without a
# solution has a row with its time alone. The time holds the start of the program.
set -euo pipefail

replay=$(realpath -- "$1")
engine=$2
folder=$(realpath -- "$3")
shift 3

case $engine in
  ITO) plot="Plot ITO solutions" ;;
  TREOR90) plot="Plot TREOR solutions" ;;
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

echo "file,rank,a,b,c,al,be,ga,fom,nix,time_s"
for list in "$folder"/*.pks; do
  cat > run.replay << END
open pattern.xy
menu "Index/$engine"
set "Wavelength" 1.54056
set "Peak file" "$list"
${entries}press "Run $engine"
menu "Index/$plot"
press Cancel
$(for row in {1..100}; do echo "get solutions($row,1:9)"; done)
END
  began=$(date +%s.%N)
  # Without solutions there is no grid to cancel, and the transcript ends there.
  "$replay" run.replay > run.out 2>&1 || true
  ended=$(date +%s.%N)
  awk -F'\t' -v OFS=, '$1 == "value" && $2 ~ /^solutions/ && $3 > 0 {
    print $3, $4, $5, $6, $7, $8, $10, $11
  }' run.out > rows
  if [[ $engine == TREOR90 ]]; then sort -t, -s -k7,7gr -o rows rows; fi
  [[ -s rows ]] || echo ",,,,,,," > rows
  awk -F, -v OFS=, -v file="$(basename -- "$list")" -v began="$began" -v ended="$ended" '{
    print file, $1 == "" ? "" : NR, $0, ended - began
  }' rows
done
