#!/usr/bin/env bash
# Installs into a scratch folder and starts the programs from there.
#   installed.sh BUILD-DIRECTORY VERSION [WINDOW]     WINDOW is ON if there is one
set -euo pipefail

build=$1 version=$2 window=${3:-OFF}
scratch=$(mktemp -d)
trap 'rm -rf -- "$scratch"' EXIT
prefix=$scratch/prefix home=$scratch/home
mkdir "$home" "$scratch/links"

fail() {
  echo "$*" >&2
  exit 1
}
# Whether a file holds a line of this form.
holds() { grep -qE -- "$2" "$1" || fail "$1 holds no line $2:"$'\n'"$(cat "$1")"; }

cmake --install "$build" --prefix "$prefix" >"$scratch/log"
# Of the environment only what a bare login has: neither display nor settings.
bare() { env -i HOME="$home" PATH=/usr/bin:/bin ASAN_OPTIONS=detect_leaks=0 "$@"; }

programs=(quillagram-replay quillagram-series)
[[ $window != ON ]] || programs+=(quillagram quillagram-edit)
for program in "${programs[@]}"; do
  [[ $(bare "$prefix/bin/$program" --version) == "$program $version" ]] || fail "$program: another version"
  bare "$prefix/bin/$program" --help >"$scratch/help" || fail "$program: no help"
  holds "$scratch/help" "^Usage: $program "
  status=0
  bare "$prefix/bin/$program" -x >"$scratch/out" 2>"$scratch/err" || status=$?
  [[ $status -eq 2 && ! -s $scratch/out ]] || fail "$program -x ends with $status"
  holds "$scratch/err" "^$program: unknown option -x$"
  holds "$prefix/share/man/man1/$program.1" "^\.TH .* \"Quillagram $version\""
done

# A transcript whose name looks like an option, through a link from elsewhere: the editor is the one
# beside the program, and the settings are the user's own.
cd "$scratch/links"
ln -s "$prefix/bin/quillagram-replay" .
cp "$prefix/share/doc/quillagram/examples/corundum.xrdml" .
cat >-x <<'END'
open corundum.xrdml
get npts(1)
menu "Modify/Edit data"
END
bare "$prefix/bin/quillagram-replay" --settings write -- -x >"$scratch/out"
holds "$scratch/out" $'^value\tnpts\\(1\\)\t5501$'
holds "$home/.config/quillagram/quillagram.ini" "/corundum.xrdml$"
[[ ! -e $prefix/bin/quillagram.ini ]] || fail "settings among the programs"
[[ $window == ON ]] || exit 0

for program in "$prefix/bin/quillagram-replay" ./quillagram-replay; do
  bare "$program" -- -x >"$scratch/out"
  holds "$scratch/out" $'^command\t'"$prefix/bin/quillagram-edit "
done
# What the desktop starts, and the picture it shows, are there.
entry=$prefix/share/applications/quillagram.desktop
[[ -x $prefix/bin/$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$entry") ]] || fail "$entry starts nothing"
icon=$(sed -n 's/^Icon=//p' "$entry")
[[ -s $prefix/share/icons/hicolor/48x48/apps/$icon.png ]] || fail "no icon $icon"
