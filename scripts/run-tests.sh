#!/usr/bin/env bash
# Runs every test through CTest: the native unit tests (ASan + UBSan), the concurrency tests
# under ThreadSanitizer, then the Windows unit and end-to-end tests under Wine. Ends with
# CTest's summary; exits non-zero when anything failed.
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
source "$here/wine-env.sh"
build="$IW_BUILD"
jobs="${JOBS:-$(nproc)}"

# Keep one wine server alive for the whole run: a program then starts in a tenth of a second.
wineserver -p 60
trap 'wineserver -k >/dev/null 2>&1 || true' EXIT

status=0
echo "== native unit tests (AddressSanitizer + UndefinedBehaviorSanitizer)"
ctest --test-dir "$build/native" --output-on-failure -j"$jobs" || status=1
echo "== concurrency tests (ThreadSanitizer)"
TSAN_OPTIONS="halt_on_error=1" "$build/tsan/tests/core_tests" --gtest_filter='*Concurrent*' --gtest_brief=1 || status=1
echo "== Windows unit and end-to-end tests (Wine)"
ctest --test-dir "$build/win" --output-on-failure -j"$jobs" || status=1
exit $status
