#!/bin/sh
# Runs each fuzz target for some seconds on a copy of its corpus. Usage: run_smoke.sh BIN_DIR [SECONDS]
# One line per target; the exit status is 1 when one of them found a fault or none was there to run. What a
# target found stays in a folder that is named then.
set -u
[ $# -ge 1 ] || { sed -n '2s/^# //p' "$0" >&2; exit 2; }
bin=$1
seconds=${2:-5}
here=$(cd "$(dirname "$0")" && pwd) || exit 1
work=$(mktemp -d) || exit 1
failed=0
count=0

for source in "$here"/fuzz_*.cpp; do
  name=$(basename "$source" .cpp)
  corpus=$here/corpus/${name#fuzz_}
  mkdir -p "$work/$name/corpus"
  [ ! -d "$corpus" ] || cp -R "$corpus/." "$work/$name/corpus"
  count=$((count + 1))
  if [ ! -x "$bin/$name" ]; then
    printf '%-24s MISSING in %s\n' "$name" "$bin"
    failed=1
    continue
  fi
  if "$bin/$name" -max_total_time="$seconds" -max_len=8192 -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$work/$name/" "$work/$name/corpus" >"$work/$name/log" 2>&1; then
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$work/$name/log")
    printf '%-24s passed  %10s runs\n' "$name" "$runs"
    rm -r "${work:?}/$name"
  else
    printf '%-24s FAILED, see %s\n' "$name" "$work/$name"
    tail -n 30 "$work/$name/log"
    failed=1
  fi
done

[ "$count" -gt 0 ] || { echo "no fuzz targets in $here"; failed=1; }
rmdir "$work" 2>/dev/null
exit "$failed"
