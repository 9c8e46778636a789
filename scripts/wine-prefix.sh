#!/usr/bin/env bash
# Makes the private Wine prefix once (null graphics driver: windows, timers and message boxes
# work without a display) and keeps a snapshot of its registry for resetting between tests.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
source "$here/wine-env.sh"

# Wine links the user's Desktop, Documents and the like to the Linux home folder, which every
# prefix on the machine then shares: a shortcut one test run makes would show on another's
# desktop. Each prefix gets folders of its own.
own_user_folders() {
  local link
  for link in "$WINEPREFIX"/drive_c/users/*/*; do
    if [ -L "$link" ]; then rm -f "$link" && mkdir -p "$link"; fi
  done
}

ready="$WINEPREFIX/.iw-ready"
if [ -f "$ready" ]; then
  own_user_folders
  exit 0
fi
echo "Making the Wine prefix $WINEPREFIX (once)..."
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
wineboot -i >/dev/null 2>&1 || true
wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
wineserver -w
own_user_folders
mkdir -p "$WINEPREFIX/.snapshot"
cp "$WINEPREFIX"/system.reg "$WINEPREFIX"/user.reg "$WINEPREFIX"/userdef.reg "$WINEPREFIX/.snapshot/"
touch "$ready"
