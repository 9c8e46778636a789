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

# Wine's own fonts (the fonts-wine package: Tahoma, Marlett's title-bar glyphs, ...) are not
# found where this Wine build looks for them; in the prefix's font folder they are, so windows
# look as on Windows instead of showing letters where the minimize and close glyphs belong.
wine_fonts() {
  local fonts="$WINEPREFIX/drive_c/windows/Fonts" font
  [ -d /usr/share/wine/fonts ] || return 0
  mkdir -p "$fonts"
  for font in /usr/share/wine/fonts/*; do
    [ -e "$fonts/$(basename "$font")" ] || cp "$font" "$fonts/"
  done
}

ready="$WINEPREFIX/.iw-ready"
if [ -f "$ready" ]; then
  own_user_folders
  wine_fonts
  exit 0
fi
echo "Making the Wine prefix $WINEPREFIX (once)..."
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
wineboot -i >/dev/null 2>&1 || true
wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
wineserver -w
own_user_folders
wine_fonts
mkdir -p "$WINEPREFIX/.snapshot"
cp "$WINEPREFIX"/system.reg "$WINEPREFIX"/user.reg "$WINEPREFIX"/userdef.reg "$WINEPREFIX/.snapshot/"
touch "$ready"
