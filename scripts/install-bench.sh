#!/usr/bin/env bash
# The install benchmark (part of make bench): InstallWizard.exe /Silent against Wine's own
# xcopy on a generated setup folder, in the build tree's Wine prefix. What it measures and the
# lines it prints are described in tests/bench/win/InstallBench.cpp.
#   IW_INSTALL_BENCH_RUNS        runs of each side on 2,000 files (default 5; the median counts)
#   IW_INSTALL_BENCH_SCALE_RUNS  runs on 20,000 files (default 3)
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
source "$here/wine-env.sh"
exe="$IW_BUILD/win/bin/install_bench.exe"
if [ ! -f "$exe" ]; then
  echo "bench: $exe is missing; run 'make bench'" >&2
  exit 1
fi
wineserver -p 60 </dev/null >/dev/null 2>&1 || true
# Wine's services start with the first program; started here, they are not timed as ours.
wine cmd.exe /c exit 0 </dev/null >/dev/null 2>&1 || true
wine "$exe" "${IW_INSTALL_BENCH_RUNS:-5}" "${IW_INSTALL_BENCH_SCALE_RUNS:-3}"
