#!/usr/bin/env bash
# Runs one Windows test program under Wine with a time limit. When the limit is reached the
# program is ended, and the windows that were open are listed, so that a hung test says which
# dialog it was waiting on.
#   wine-test.sh <seconds> <program.exe> [arguments...]
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
source "$here/wine-env.sh"
limit="$1"; shift
program="$1"; shift
bindir="$(dirname "$program")"

timeout --kill-after=10 "$limit" wine "$program" "$@"
rc=$?
if [ $rc -eq 124 ] || [ $rc -eq 137 ]; then
  echo "TIMEOUT: $(basename "$program") did not finish within $limit s. Windows open at that moment:"
  if [ -f "$bindir/ListWindows.exe" ]; then
    timeout 30 wine "$bindir/ListWindows.exe" /Kill InstallWizard.exe || true
  fi
  exit 124
fi
exit $rc
