#!/usr/bin/env bash
# Runs every test through CTest: the native unit tests (AddressSanitizer + UBSan), the
# concurrency tests under ThreadSanitizer, then the Windows unit and end-to-end tests under
# Wine. Each CTest run prints its own summary; the last line adds them up. Exits non-zero
# when anything failed.
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
source "$here/wine-env.sh"
build="$IW_BUILD"
jobs="${JOBS:-$(nproc)}"
logs="$build/test-logs"
mkdir -p "$logs"


status=0
run_ctest() {   # name, ctest arguments...
  local name="$1"; shift
  echo "== $name"
  ctest "$@" --output-on-failure -j"$jobs" 2>&1 | tee "$logs/$name.log"
  [ "${PIPESTATUS[0]}" -eq 0 ] || status=1
}

run_ctest native --test-dir "$build/native"
run_ctest tsan --test-dir "$build/tsan" -R core_tests_concurrency
# Keep one wine server alive for the Windows tests: a program then starts in a tenth of a
# second. The first Wine program of a prefix starts Wine's own services, which inherit its
# standard output and hold it open for as long as the server lives: start them here, on
# /dev/null, or CTest would wait on the first test's output until its time limit.
wineserver -p
trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
wine cmd.exe /c exit 0 </dev/null >/dev/null 2>&1 || true
run_ctest windows --test-dir "$build/win"

passed=0; failed=0
for log in "$logs"/native.log "$logs"/tsan.log "$logs"/windows.log; do
  line=$(grep -E '^[0-9]+% tests passed, [0-9]+ tests? failed out of [0-9]+' "$log" | tail -1)
  if [ -z "$line" ]; then
    echo "no CTest summary in $(basename "$log")"; status=1; continue
  fi
  f=$(echo "$line" | sed -E 's/.* ([0-9]+) tests? failed out of ([0-9]+).*/\1/')
  t=$(echo "$line" | sed -E 's/.* failed out of ([0-9]+).*/\1/')
  failed=$((failed + f)); passed=$((passed + t - f))
done
echo
echo "tests: $passed passed, $failed failed"
exit $status
