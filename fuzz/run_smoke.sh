#!/bin/sh
# Runs each fuzz target for some seconds on a copy of its corpus. Usage: run_smoke.sh BIN_DIR [SECONDS]
# As many at once as there are processors. One line per target; the exit status is 1 when one of them found a
# fault or none was there to run. What a target found stays in a folder that is named then.
set -u
[ $# -ge 1 ] || { sed -n '2s/^# //p' "$0" >&2; exit 2; }
bin=$1
seconds=${2:-5}
here=$(cd "$(dirname "$0")" && pwd) || exit 1
lanes=$(nproc)

run_target() {  # run_target NAME
  [ -x "$bin/$1" ] || { printf '%-24s MISSING in %s\n' "$1" "$bin"; return 1; }
  work=$(mktemp -d) || return 1
  mkdir "$work/corpus"
  [ ! -d "$here/corpus/${1#fuzz_}" ] || cp -R "$here/corpus/${1#fuzz_}/." "$work/corpus"
  if "$bin/$1" -max_total_time="$seconds" -max_len=8192 -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$work/" "$work/corpus" >"$work/log" 2>&1; then
    printf '%-24s passed  %10s runs\n' "$1" "$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/log")"
    rm -r "${work:?}"
  else
    # In one piece, so that the lines of another target do not come in between.
    printf '%-24s FAILED, see %s\n%s\n' "$1" "$work" "$(tail -n 30 "$work/log")"
    return 1
  fi
}

run_lane() {  # run_lane NUMBER TARGET...: every target whose turn it is in this lane
  turn=$1
  status=0
  shift
  for target in "$@"; do
    [ $((turn % lanes)) != 0 ] || run_target "$target" || status=1
    turn=$((turn + 1))
  done
  return "$status"
}

set --
for source in "$here"/fuzz_*.cpp; do
  [ ! -e "$source" ] || set -- "$@" "$(basename "$source" .cpp)"
done
[ $# -gt 0 ] || { echo "no fuzz targets in $here"; exit 1; }
running=""
lane=0
while [ "$lane" -lt "$lanes" ]; do
  run_lane "$lane" "$@" &
  running="$running $!"
  lane=$((lane + 1))
done
failed=0
for one in $running; do wait "$one" || failed=1; done
exit "$failed"
