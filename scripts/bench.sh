#!/usr/bin/env bash
# Runs the benchmarks (make bench). The XML benchmark of the bench tree writes its documents
# under the build tree and ends with one summary line per document and operation:
#   xml <document> <operation> ours=<MB/s> pugixml=<MB/s> ratio=<ours/pugixml>
# Extra arguments go to Google Benchmark (e.g. --benchmark_filter=catalogue-1MB). Then the
# install benchmark runs under Wine (install-bench.sh) and prints its "install ..." lines.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
build="${IW_BUILD:-$here/../build}"
exe="$build/bench/tests/bench/xml_bench"
if [ ! -x "$exe" ]; then
  echo "bench: $exe is missing; run 'make bench'" >&2
  exit 1
fi
data="$build/bench/bench-data"
mkdir -p "$data"
"$exe" --data-dir="$data" "$@"
"$here/install-bench.sh"
