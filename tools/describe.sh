#!/usr/bin/env bash
# Opens a pattern without a window, says what it holds, and leaves pictures and a copy in xy format.
#   tools/describe.sh REPLAY-PROGRAM PATTERN OUTPUT-DIRECTORY
set -euo pipefail

replay=$1 pattern=$2 out=$3
mkdir -p -- "$out"
stem=${pattern##*/}
stem=${stem%.*}

# A text of a transcript.
quoted() { printf '"%s"' "${1//\"/\"\"}"; }

transcript=$(mktemp) events=$(mktemp) home=$(mktemp -d)
trap 'rm -rf -- "$transcript" "$events" "$home"' EXIT
cat >"$transcript" <<END
open $(quoted "$pattern")
get npts(1)
get scanwave(1)
get xval(1,1,1:20000)
get yval(1,1:20000)
plot $(quoted "$out/$stem.eps")
plot $(quoted "$out/$stem.svg")
plot $(quoted "$out/$stem.bmp")
menu "File/Save pattern file(s)"
press OK
file $(quoted "$out/$stem-saved.xy")
menu "Peak search/Auto peak search"
get npeaks
END

QUILLAGRAM_HOME=$home "$replay" "$transcript" >"$events" && status=0 || status=$?

awk -F '\t' -v name="${pattern##*/}" '
  $1 == "box" { gsub(/\\n/, "\n  ", $3); printf "%s: %s\n", $2, $3 }
  $1 == "value" && $2 == "npts(1)" { n = $3 }
  $1 == "value" && $2 == "scanwave(1)" { wavelength = $3 }
  $1 == "value" && $2 ~ /^xval/ { for (i = 1; i <= n; ++i) x[i] = $(i + 2) }
  $1 == "value" && $2 ~ /^yval/ {
    for (i = 1; i <= n; ++i) {
      sum += y[i] = $(i + 2)
      if (i == 1 || y[i] > y[best]) best = i
    }
    if (n < 1) next
    printf "%s holds %d points from %.4f to %.4f degrees two-theta", name, n, x[1], x[n]
    if (n > 1) printf ", a step of %.4f", (x[n] - x[1]) / (n - 1)
    printf ".\n"
    if (wavelength > 0) printf "Wavelength %.5f angstrom, ", wavelength
    printf "%.0f counts in all.\n", sum
    half = atan2(0, -1) / 360
    printf "The strongest line stands at %.4f degrees with %.0f counts", x[best], y[best]
    if (x[best] > 0 && wavelength > 0)
      printf ", d = %.4f angstrom", wavelength / (2 * sin(x[best] * half))
    print "."
  }
  $1 == "value" && $2 == "npeaks" { printf "The automatic peak search finds %d peaks.\n", $3 }
' "$events"
if [[ $status -ne 0 ]]; then
  grep -q '^box' "$events" || sed -n 's/^error\t[0-9]*\t//p' "$events" >&2
  echo "$pattern could not be opened." >&2
  exit 1
fi
echo "No display was found, so there is no window. Left in $out:"
for file in "$stem.eps" "$stem.svg" "$stem.bmp" "$stem-saved.xy"; do
  if [[ -f $out/$file ]]; then echo "  $file"; fi
done
