#!/bin/bash
# Takes pictures of the window: tools/screenshots.sh PROGRAM DIRECTORY [PATTERN] [WIDTHxHEIGHT]
# Runs the program on a screen of its own (Xvfb, with openbox as window manager), works it with
# xdotool as a user does, and writes one PNG file per picture.
set -eu
[ $# -ge 2 ] || { sed -n 2,4p "$0"; exit 2; }
source=$(cd "$(dirname "$0")/.." && pwd)
program=$(realpath "$1")
mkdir -p "$2"; pictures=$(realpath "$2")
pattern=$(realpath "${3:-$source/examples/corundum.xrdml}")
size=${4:-1280x900}

home=$(mktemp -d)
cp "$pattern" "$home"  # what the commands write goes there
started=()
finish() {
  for ((i = ${#started[@]} - 1; i >= 0; --i)); do kill "${started[i]}" 2>/dev/null || true; done
  rm -rf "$home"
}
trap finish EXIT

mkfifo "$home/display"
Xvfb -displayfd 3 -screen 0 "${size}x24" 3>"$home/display" >/dev/null 2>&1 & started+=($!)
read -r number <"$home/display"
export DISPLAY=:$number QT_QPA_PLATFORM=xcb QUILLAGRAM_HOME=$home
export XDG_CONFIG_HOME=$home  # the window manager as it is, not as its user has set it up
openbox >/dev/null 2>&1 & started+=($!)
# A window that comes before the window manager gets no focus.
until xdotool get_num_desktops >/dev/null 2>&1; do sleep 0.1; done

keys() { for key in "$@"; do xdotool key "$key"; sleep 0.15; done; sleep 0.4; }
window() { xdotool getactivewindow; }
# Waits until a window whose title matches has the focus.
await() {
  for _ in $(seq 100); do
    xdotool getactivewindow getwindowname 2>/dev/null | grep -q -- "$1" && { sleep 0.4; return; }
    sleep 0.1
  done
  echo "$0: no window \"$1\"" >&2
  exit 1
}
# The window in front, or with "root" the whole screen.
picture() {
  import -window "${2:-$(window)}" "$pictures/$1.png"
  if [ "${2:-}" = root ]; then mogrify -trim +repage "$pictures/$1.png"; fi
  echo "$1.png"
}
# Opens a menu, picks rows by their letters, and takes the dialog that comes.
dialog() {
  local name=$1 title=$2
  shift 2
  keys "$@"
  await "$title"
  picture "dialog-$name"
  keys Escape
  await "Quillagram"
}
# From one place of the plot to another, in thousandths of the window.
drag() {
  local id width height
  id=$(window)
  eval "$(xdotool getwindowgeometry --shell "$id" | grep -E '^(WIDTH|HEIGHT)=')"
  at() { xdotool mousemove --sync --window "$id" $(($1 * WIDTH / 1000)) $(($2 * HEIGHT / 1000)); }
  at "$1" "$2"; xdotool mousedown 1; sleep 0.2
  at $((($1 + $3) / 2)) $((($2 + $4) / 2)); sleep 0.1
  at "$3" "$4"; sleep 0.3
  picture "$5"
  xdotool mouseup 1; sleep 0.4
}

"$program" & started+=($!)
await "Quillagram"
picture window-empty
xdotool key ctrl+q; sleep 0.5

"$program" "$home/$(basename "$pattern")" & started+=($!)
await " - Quillagram"
picture window-twotheta
keys alt+s x d; picture window-d
keys alt+s x q; picture window-q
keys alt+s x t
keys alt+s y o; picture window-logarithmic
keys alt+s y l
drag 250 250 450 850 window-rubberband
eval "$(xdotool getwindowgeometry --shell "$(window)" | grep -E '^(WIDTH|HEIGHT)=')"
xdotool mousemove --window "$(window)" $((WIDTH / 2)) $((HEIGHT / 2)); sleep 0.4
picture window-zoomed
keys F1
keys alt+f; picture menu-file root; keys Escape Escape

# Name, title, and the keys that lead there: menu bar, then a letter for each row.
while read -r name title steps; do
  # shellcheck disable=SC2086
  dialog "$name" "${title//_/ }" $steps
done <<'TABLE'
about About_Quillagram alt+h a
save-pattern Save_pattern alt+f s
information Information alt+s i
wavelengths Wavelength alt+s w
alpha2-stripping Alpha2_stripping alt+m 2
cylinder Cylinder_correction alt+m b c
plate Plate_correction alt+m b f
lp Lp-corrections alt+m l
zero-shift Zero_shift alt+m z
truncate Truncate_pattern alt+m t
convert Convert_pattern alt+m c
polynomial Add_polynomial alt+m p
scale Scale_pattern alt+m s
smooth Smoothing alt+m m
savitzky-golay Savitzky alt+m g
chebyshev Chebyshev_fit alt+m h
background-manual Set_manuel_background alt+b m
background-options Manuel_background_options alt+b o
background-scale Scale_background alt+b s
background-interval Scale_to_interval alt+b t
crystallinity Crystallinity alt+b c
autosubtract Autosubtract_options alt+b p
peak-search Peak_search_options alt+p s
peaks-manual Set_manual_peak alt+p m
peak-fit-options Single_peak_fit_options alt+a o
TABLE

# What the commands make of the pattern. The main window keeps its number while dialogs come and go.
main=$(window)
click() {  # button, and the place in thousandths of the main window
  eval "$(xdotool getwindowgeometry --shell "$main" | grep -E '^(WIDTH|HEIGHT)=')"
  xdotool mousemove --window "$main" $(($2 * WIDTH / 1000)) $(($3 * HEIGHT / 1000)) click "$1"
  sleep 0.3
}
activate() { xdotool windowactivate "$1"; sleep 0.4; }
# The dialog beside the plot whose title matches.
beside() { xdotool search --name "$1" | tail -1; }

keys alt+b m; await "Set manuel background"
activate "$main"
for x in 140 170 250 400 600 800 940; do click 1 "$x" 868; done
click 1 500 500; picture background-points root
click 3 500 500
activate "$(beside "Set manuel background")"; keys alt+f; await " - Quillagram"
picture background-manual
keys alt+b a; await "Background subtraction"; picture autosubtract-question root
keys Return; await " - Quillagram"; picture autosubtract
keys alt+e; picture menu-edit root; keys Escape Escape

keys alt+p c; keys alt+p a; picture peak-search
keys alt+a a; keys alt+p p; await "Peak table"; keys Down Down Down; picture peak-table root
keys Escape; await " - Quillagram"
keys alt+i Return; await "Cells found"; picture find-cell root; keys Escape; await " - Quillagram"
keys alt+p c; keys alt+p a
keys alt+p m; await "Set manual peak"; activate "$main"
click 1 336 400; click 1 436 400; click 3 620 400; picture peak-picking root
activate "$(beside "Set manual peak")"; keys alt+o; await " - Quillagram"
keys alt+p c
keys F1; drag 325 100 350 880 peak-fit-band
keys alt+a f; await "Single peak fit results"; picture peak-fit-results root
keys Return; await " - Quillagram"; picture peak-fit
keys F1 alt+p a
for kind in "fwhm p" "shape t" "size i" "williamson-hall w"; do
  keys alt+a ${kind#* }; picture "plot-${kind% *}"
done

# The whole-pattern fit of the pattern as it came, step by step. Fields without a letter are so many Tabs from one with.
text() { xdotool key ctrl+a; xdotool type --delay 20 "$1"; keys Tab; }
general_fit() { keys alt+a g; await "Peak fit"; }
refine() { keys alt+r; await " - Quillagram"; }
tie_w() { keys alt+v Tab Tab Tab Tab Tab Tab Tab space; }
tie_u() { keys alt+v shift+Tab shift+Tab shift+Tab space; }
tie_g1() { keys alt+2 shift+Tab shift+Tab shift+Tab space; }

xdotool key ctrl+q; sleep 0.5
"$program" "$home/$(basename "$pattern")" & started+=($!)
await " - Quillagram"
general_fit
keys alt+s; await "Laue class"; keys alt+h alt+r; picture dialog-laue-class
keys Return; await "Peak fit"
keys alt+a; text 4.762; keys space Tab; text 12.985; keys space alt+z Tab space; refine
general_fit; tie_w; refine
general_fit; tie_u; refine
general_fit; tie_g1; picture dialog-general-fit; refine
picture general-fit
drag 535 650 700 880 general-fit-zoomed  # the picture is replaced by that of what it zooms into
picture general-fit-zoomed
keys alt+a r; await "Fit results"; picture general-fit-results
keys Return; await " - Quillagram"

# From peaks to cells, with the pattern for which they are made.
cp "$source/examples/forsterite.gdf" "$home"
(cd "$home" && "$(dirname "$program")/quillagram-replay" >/dev/null) <<END
open "$home/forsterite.gdf"
menu "Peak search/Auto peak search"
menu "Peak search/Save peaks"
file "$home/forsterite.pks"
END
xdotool key ctrl+q; sleep 0.5
"$program" "$home/forsterite.gdf" & started+=($!)
await " - Quillagram"
keys alt+i t; await "TREOR90 Input"; picture dialog-treor; keys Escape; await " - Quillagram"
keys alt+i i; await "ITO Input"; picture dialog-ito
keys alt+r; await "ito.out"; keys ctrl+q; await " - Quillagram"
keys alt+i s; await "Indexing solutions"; picture index-solutions root
keys Return; await " - Quillagram"; picture index-lines

# Patterns over another, in steps of a heating run that is made here, and a script.
for k in 0 1 2 3 4; do
  awk -v k=$k 'BEGIN { srand(7 + k); for (x = 20; x < 60; x += 0.02) {
    y = 120; split("24.3 31.7 36.2 44.9 52.4", at, " "); split("900 2600 1500 700 1100", high, " ")
    for (j = 1; j <= 5; ++j) y += high[j] * exp(-((x - at[j] * (1 - 0.0012 * k)) / 0.11)^2)
    y *= 1 - 0.04 * k
    printf "%8.3f %8.0f\n", x, y + sqrt(y) * (rand() + rand() + rand() - 1.5) * 2 } }' >"$home/ramp_$((k + 1))00K.xy"
done
xdotool key ctrl+q; sleep 0.5
"$program" "$home/ramp_100K.xy" & started+=($!)
await " - Quillagram"
keys alt+u o x; await "Open pattern file"
xdotool type --delay 20 '"ramp_200K.xy" "ramp_300K.xy" "ramp_400K.xy" "ramp_500K.xy"'
keys Return; await " - Quillagram"
keys alt+u d; await "Displace patterns"; keys Tab; text 600; picture dialog-displace
keys Return; await " - Quillagram"; picture overlays
keys alt+u f; await "Fit patterns"; keys Tab space Tab Tab space; picture dialog-fit-patterns
keys Return; await " - Quillagram"; picture overlay-fit
keys alt+c c; await "Create Script"; picture dialog-script; keys Escape; await " - Quillagram"

# Structures below a pattern.
xdotool key ctrl+q; sleep 0.5
"$program" "$home/$(basename "$pattern")" & started+=($!)
await " - Quillagram"
for name in corundum calcite; do
  keys alt+u r; await "Open structures"
  xdotool type --delay 20 "$source/tools/structures/$name.cif"
  keys Return; await " - Quillagram"
done
picture structures

# A run of the furnace: the window with its map and with a column, and the fitted cell beside the true one.
programs=$(dirname "$program") recipes=$source/examples/recipes
"$programs/tools/simulateseries" heating "$home/heat" 2000 >/dev/null
(cd "$home" && "$programs/quillagram-series" "$recipes/cell-temperature.recipe" --list heat/heating.csv \
  --table cell.csv --chain --restart-when "correlation>0.92" --restart-with "$recipes/cell-temperature-hot.recipe" 2>/dev/null)
keys alt+u e; await "Series"
keys alt+t; await "Table of the series"; xdotool type --delay 20 "$home/cell.csv"; keys Return; await "Series"
keys alt+m; sleep 3; picture series-map root
keys alt+o; sleep 1; picture series-column root
keys Escape; await " - Quillagram"
(cd "$home" && "$programs/quillagram-replay" >/dev/null) <<END
menu "Multiple patterns/Series"
press "Table..."
file cell.csv
set Second 2
set Column on
plot series-heating.png
drag 690 4.62 750 4.64
plot series-change.png
press Close
END
for name in series-heating series-change; do
  convert "$home/$name.png" -resize 1000x "$pictures/$name.png"
  echo "$name.png"
done

# The printed page beside the window.
(cd "$home" && "$(dirname "$program")/quillagram-replay" >/dev/null) <<END
open "$home/$(basename "$pattern")"
menu 40038
set Department "Institute of Crystals"
set Company "University of the Coast"
set Address "Harbour Street 5"
press OK
menu 40005
file page.pdf
menu 40021
file report.pdf
END
pdftoppm -r 75 -png -singlefile "$home/report.pdf" "$home/report"
convert "$home/report.png" -rotate 90 -bordercolor grey -border 1 "$pictures/report.png"
echo report.png
pdftoppm -r 75 -png -singlefile "$home/page.pdf" "$home/page"
convert "$home/page.png" -bordercolor grey -border 1 "$pictures/window-twotheta.png" \
  -gravity center +append "$pictures/printed.png"
echo printed.png
mogrify -depth 8 +dither -colors 128 "$pictures"/*.png
