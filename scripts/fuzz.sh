#!/usr/bin/env bash
# Runs every libFuzzer target of the fuzz tree for a bounded time (make fuzz; FUZZ_SECONDS,
# default 60 each), or until FUZZ_RUNS inputs when that comes first. The seed corpus in tests/fuzz/corpus/<target>/ is only read: what the
# fuzzer finds goes to a working corpus under the build tree, crashes to <build>/fuzz/artifacts.
#   fuzz.sh [seconds] [target...]
# Exits non-zero when a target finds a problem. Prints the executions of each target and the
# total.
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/.." && pwd)"
build="${IW_BUILD:-$root/build}/fuzz"
seconds="${1:-60}"
shift || true
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  targets=(xml_document xmlfn zip_reader package_description)
fi

mkdir -p "$build/artifacts"
status=0
total=0
for target in "${targets[@]}"; do
  exe="$build/tests/fuzz/fuzz_$target"
  if [ ! -x "$exe" ]; then
    echo "fuzz: $exe is missing; run 'make fuzz-build'" >&2
    exit 1
  fi
  seeds="$root/tests/fuzz/corpus/$target"
  work="$build/corpus/$target"
  mkdir -p "$work"
  log="$build/$target.log"
  dict="$root/tests/fuzz/$target.dict"
  [ -f "$dict" ] || dict="$root/tests/fuzz/xml.dict"
  echo "== $target: $seconds s"
  "$exe" -max_total_time="$seconds" ${FUZZ_RUNS:+-runs="$FUZZ_RUNS"} -timeout=10 -rss_limit_mb=4096 -print_final_stats=1 \
    -dict="$dict" -artifact_prefix="$build/artifacts/$target-" \
    "$work" "$seeds" >"$log" 2>&1
  rc=$?
  runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$' | tail -1)
  runs=${runs:-0}
  total=$((total + runs))
  if [ $rc -ne 0 ]; then
    echo "fuzz: $target found a problem (exit $rc); see $log and $build/artifacts/" >&2
    grep -E 'ERROR|SUMMARY|Test unit written' "$log" | head -20 >&2
    status=1
  fi
  echo "$target: $runs executions, corpus $(ls "$work" | wc -l) files"
done
echo "fuzz: $total executions in total"
exit $status
