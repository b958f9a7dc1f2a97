#!/usr/bin/env bash
# Includes point down only: see docs/architecture.md. Prints every include that does not, and every
# type that two headers define under one name: the linker would take either for both.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root/src"

find . -name '*.cpp' -o -name '*.h' | sed 's|^\./||' | sort |
  xargs -d '\n' awk '
    BEGIN {
      split("toolkit:0 workspace:1 crystal:1 patternfiles:2 modify:2 background:2 peaks:2 plot:2 " \
            "script:3 multi:3 index:3 fit:3 series:3 shell:4 seriesrun:4", rows, " ")
      for (k in rows) { split(rows[k], pair, ":"); floor_of[pair[1]] = pair[2] }
    }
    function folder(path) { return path ~ /\// ? substr(path, 1, index(path, "/") - 1) : "" }
    function part(path,  words) {  # qt, replay, or nothing
      if (path !~ /^toolkit\/(qt|replay)\//) return ""
      split(path, words, "/")
      return words[2]
    }
    function complain(why) {
      printf "src/%s:%d: %s: %s\n", FILENAME, FNR, why, $0
      bad = 1
    }
    FNR == 1 && !(folder(FILENAME) in floor_of) { complain("a folder without a floor"); nextfile }
    /^(struct|class|enum class|enum) [A-Za-z]+.*[{:]/ && !/;/ && FILENAME ~ /\.h$/ {
      name = $2 == "class" ? $3 : $2
      if (name in home) complain("a name taken by src/" home[name])
      home[name] = FILENAME
    }
    /^#include </ && /<Q/ && part(FILENAME) != "qt" { complain("Qt outside its front end") }
    /^#include "/ {
      split($0, words, "\"")
      target = words[2]
      # A name without a folder lies beside the file.
      if (folder(target) == "" || !(folder(target) in floor_of)) {
        here = FILENAME
        sub(/[^\/]*$/, "", here)
        target = here target
      }
      if (floor_of[folder(target)] > floor_of[folder(FILENAME)]) complain("an include upwards")
      # The program of series is an executable of the front end without a window.
      if (folder(FILENAME) == "seriesrun" && part(target) == "replay") part_of_it = 1
      else part_of_it = part(target) == part(FILENAME)
      if (part(target) != "" && !part_of_it) complain("a front end is included")
      edges[FILENAME] = edges[FILENAME] " " target
    }
    # Depth first: a file met again on the way that led to it closes a loop.
    function visit(file,  n, next_files, k) {
      state[file] = 1
      n = split(edges[file], next_files, " ")
      for (k = 1; k <= n; ++k) {
        if (state[next_files[k]] == 1) {
          printf "src/%s and src/%s include each other in a loop\n", file, next_files[k]
          bad = 1
        } else if (!state[next_files[k]]) {
          visit(next_files[k])
        }
      }
      state[file] = 2
    }
    END {
      for (file in edges) if (!state[file]) visit(file)
      exit bad
    }
  '
