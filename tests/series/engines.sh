#!/usr/bin/env bash
# A series in parts gives the table of a plain run, byte for byte, through each engine, also with
# chains and after a part has died.
#   engines.sh SERIES-PROGRAM [parallel|ssh|snakemake|slurm ...]      all of them if none is named
# An engine that is not installed is left out, and said; status 77 if that leaves nothing. A server of
# ssh and a Slurm of one node are made here, in a directory and on ports of their own, and ended here.
set -euo pipefail

program=$(realpath -- "$1")
shift
engines=("$@")
[[ $# -gt 0 ]] || engines=(parallel ssh snakemake slurm)
source=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd)
workflows=$source/workflows/series
scratch=$(mktemp -d)
chmod 711 "$scratch"
children=()
finish() {
  [[ ${#children[@]} -eq 0 ]] || kill "${children[@]}" 2>/dev/null || true
  wait
  [[ -z ${made_run-} ]] || rmdir /run/sshd
  rm -rf -- "$scratch"
}
trap finish EXIT

fail() {
  echo "$*" >&2
  cat "$scratch"/log* >&2
  exit 1
}
# Waits until a command succeeds.
await() {
  for _ in {1..200}; do
    ! "$@" &>/dev/null || return 0
    sleep 0.1
  done
  fail "In vain: $*"
}
free_port() {
  local port
  until port=$((20000 + RANDOM)) && ! (: >"/dev/tcp/127.0.0.1/$port") 2>/dev/null; do :; done
  echo "$port"
}
serve() {
  "$@" >"$scratch/log-${1##*/}" 2>&1 &
  children+=($!)
}

# Ceria on heating, under names that a shell would take apart; one file is missing, one is no pattern.
make_series() {
  local k
  for k in {1..35}; do
    LC_ALL=C awk -v k="$k" '{
      s = sin($1 * atan2(0, -1) / 360) / (1 + k / 30000)
      printf "%.4f %s\n", atan2(s, sqrt(1 - s * s)) * 360 / atan2(0, -1), $2
    }' "$source/examples/ceria.xy" >"it's \"$k\" \$HOME {} 100%.xy"
    echo "it's \"$k\" \$HOME {} 100%.xy"
  done >'the "list" of $k.txt'
  rm -- *"\"3\""*
  echo nothing >"$(ls -- *"\"20\""*)"
}

make_recipes() {
  cat >"plain 'recipe'.txt" <<'END_OF_RECIPE'
open "{file}"
menu "Peak search/Auto peak search"
get npeaks as peaks
get peaks(1,1:3) as angle
END_OF_RECIPE
  cat >"chain 'recipe'.txt" <<'END_OF_RECIPE'
open "{file}"
menu "Peak fit/General peak fit"
press "Laue class"
set "m3m" on
set "F" on
press OK
set 1401 5.412
set 1411 on
set 1423 0.01
set 1426 0.01
set 1433 on
set 1443 on
set 1471 on
press Refine
get fitrwp as Rwp
get cell(1) as a
get cell(2:6) as more
get cellesd(1) as "a esd"
END_OF_RECIPE
}

# Words of the two runs: recipe, options.
plain=("plain 'recipe'.txt" --chunk 4)
chain=("chain 'recipe'.txt" --chunk 4 --chain --restart-when 'Rwp>6.72')
list='the "list" of $k.txt'

# The program, which once, in the second part, is killed when its table comes to 1024 bytes: within a row.
make_mortal() {
  cat >"$scratch/mortal" <<END_OF_PROGRAM
#!/usr/bin/env bash
if [[ " \$* " == *" --part 2/"* && \$* == *--chain* ]] && mkdir "\$0.died" 2>/dev/null; then
  (ulimit -c 0 -f 1 && exec "$program" "\$@")
  status=\$?
  while [[ \$1 != --table ]]; do shift; done
  ln -- "\$2" "\$0.died/table"
  stat -c %s -- "\$2" >"\$0.died/size"
  exit \$status
fi
exec "$program" "\$@"
END_OF_PROGRAM
  chmod +x "$scratch/mortal"
}
export QUILLAGRAM_SERIES=$scratch/mortal
# What the engines keep of their own goes with the rest.
export PARALLEL_HOME=$scratch/parallel XDG_CACHE_HOME=$scratch/cache

# An engine gets: name of the run, recipe, options.
through_parallel() {
  "$workflows/parallel.sh" --jobs 2 -- "$2" "$list" "$1.csv" 4 "${@:3}"
}

start_ssh() {
  local folder=$scratch/ssh port key
  port=$(free_port)
  mkdir "$folder"
  for key in host user; do ssh-keygen -q -t ed25519 -N '' -f "$folder/$key"; done
  cat >"$folder/server" <<END_OF_SERVER
ListenAddress 127.0.0.1:$port
HostKey $folder/host
AuthorizedKeysFile $folder/user.pub
StrictModes no
PidFile none
END_OF_SERVER
  if [[ $(id -u) -eq 0 ]]; then
    echo "UsePAM yes" >>"$folder/server"
    ! mkdir /run/sshd 2>/dev/null || made_run=1
  fi
  cat >"$folder/config" <<END_OF_CONFIG
Host one other
  HostName 127.0.0.1
  Port $port
  IdentityFile $folder/user
  IdentitiesOnly yes
  BatchMode yes
  UserKnownHostsFile $folder/known
  StrictHostKeyChecking accept-new
END_OF_CONFIG
  serve "$(command -v sshd)" -D -e -f "$folder/server"
  await ssh -F "$folder/config" one true
}
through_ssh() {
  "$workflows/parallel.sh" --ssh "ssh -F $scratch/ssh/config" --sshlogin 1/one,1/other -- \
    "$2" "$list" "$1.csv" 4 "${@:3}"
}

through_snakemake() {
  python3 -c 'import json, sys
print(json.dumps(dict(zip(["list", "program", "table", "recipe"], sys.argv[1:]),
                      parts=4, options=sys.argv[5:])))' \
    "$list" "$QUILLAGRAM_SERIES" "$1.csv" "${@:2}" >"$1.json"
  snakemake --quiet --cores 2 --snakefile "$workflows/Snakefile" --configfile "$1.json"
}

start_slurm() {
  local folder=$scratch/slurm node
  node=$(hostname -s)
  mkdir -p "$folder/state" "$folder/spool"
  head -c 1024 /dev/urandom >"$folder/key"
  chmod 400 "$folder/key"
  cat >"$folder/slurm.conf" <<END_OF_CONFIG
ClusterName=one
SlurmctldHost=$node(127.0.0.1)
SlurmctldPort=$(free_port)
SlurmdPort=$(free_port)
SlurmUser=$(id -un)
SlurmdUser=$(id -un)
AuthType=auth/munge
AuthInfo=socket=$folder/munge
StateSaveLocation=$folder/state
SlurmdSpoolDir=$folder/spool
SlurmctldPidFile=$folder/slurmctld.pid
SlurmdPidFile=$folder/slurmd.pid
ProctrackType=proctrack/pgid
TaskPlugin=task/none
MpiDefault=none
SchedulerType=sched/builtin
SchedulerParameters=sched_min_interval=100000,sched_interval=1
SelectType=select/cons_tres
NodeName=$node NodeAddr=127.0.0.1 CPUs=2
PartitionName=all Nodes=$node Default=YES
END_OF_CONFIG
  export SLURM_CONF=$folder/slurm.conf
  serve munged --foreground --socket="$folder/munge" --key-file="$folder/key" \
    --pid-file="$folder/munged.pid" --seed-file="$folder/seed"
  await munge -n --socket="$folder/munge"
  serve slurmctld -D
  serve slurmd -D
  await srun true
}
ended() { [[ -z $(squeue --noheader --jobs "$1") ]]; }
# The second time only the part that has died.
through_slurm() {
  local job join words=("$workflows/series.sbatch" "$2" "$list" "$1.csv" 4 "${@:3}")
  job=$(sbatch --parsable --output=part-%a.log --array="${again:-1-4}" "${words[@]}")
  join=$(sbatch --parsable --output=join.log --dependency="afterok:$job" \
    --kill-on-invalid-dep=yes "${words[@]}")
  await ended "$job,$join"
  [[ -e $1.csv ]]
}

# Snakemake tries again by itself; the others leave no table before somebody has called them again.
check() {
  local engine=$1 part run
  rm -rf "$scratch/mortal.died"
  "through_$engine" "$engine-plain" "${plain[@]}" &>"$scratch/log" || fail "$engine: failed"
  if "through_$engine" "$engine-chain" "${chain[@]}" &>"$scratch/log"; then
    [[ $engine == snakemake ]] || fail "$engine: nobody saw that a part has died"
  else
    [[ ! -e $engine-chain.csv ]] || fail "$engine: a table without the part that has died"
    again=2 "through_$engine" "$engine-chain" "${chain[@]}" &>"$scratch/log" ||
      fail "$engine: does not go on"
  fi
  part=$engine-chain.csv.parts/2-of-4.csv
  [[ $(cat "$scratch/mortal.died/size") -lt $(stat -c %s "$part") ]] || fail "$engine: the part has not died"
  [[ $part -ef $scratch/mortal.died/table ]] || fail "$engine: the part has begun anew instead of going on"
  for run in plain chain; do
    cmp "local-$run.csv" "$engine-$run.csv" || fail "$engine: another table"
  done
  echo "$engine: the same tables"
}

PATH+=:/usr/sbin
mkdir "$scratch/a 'day' at \"the\" \$beamline"
cd "$scratch"/a*
make_series
make_recipes
make_mortal
for run in plain chain; do
  declare -n words=$run  # the array of that name
  "$program" --jobs 2 --list "$list" --table "local-$run.csv" "${words[@]:1}" -- "${words[0]}" \
    &>"$scratch/log" || fail "The plain run failed"
done
for word in chain restart Error; do
  grep -q ",\"\?$word" local-chain.csv || fail "No row of the chains tells \"$word\""
done

declare -A needs=([parallel]="parallel" [ssh]="parallel ssh sshd" [snakemake]="snakemake"
  [slurm]="munged slurmctld slurmd sbatch")
checked=0
for engine in "${engines[@]}"; do
  read -ra programs <<<"${needs[$engine]}"
  if [[ $(command -v "${programs[@]}" | wc -l) -lt ${#programs[@]} ]]; then
    echo "$engine: left out, as not all of these are installed: ${programs[*]}"
    continue
  fi
  [[ $(type -t "start_$engine") != function ]] || "start_$engine"
  check "$engine"
  checked=1
done
[[ $checked -eq 1 ]] || exit 77
