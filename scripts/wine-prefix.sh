#!/usr/bin/env bash
# Makes the private Wine prefix once (null graphics driver: windows, timers and message boxes
# work without a display) and keeps a snapshot of its registry for resetting between tests.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
source "$here/wine-env.sh"

ready="$WINEPREFIX/.iw-ready"
if [ -f "$ready" ]; then
  exit 0
fi
echo "Making the Wine prefix $WINEPREFIX (once)..."
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
wineboot -i >/dev/null 2>&1 || true
wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
wineserver -w
mkdir -p "$WINEPREFIX/.snapshot"
cp "$WINEPREFIX"/system.reg "$WINEPREFIX"/user.reg "$WINEPREFIX"/userdef.reg "$WINEPREFIX/.snapshot/"
touch "$ready"
