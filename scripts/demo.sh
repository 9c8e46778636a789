#!/usr/bin/env bash
# Runs InstallWizard.exe on the sample setup folder (build/win/media) under Wine: in a window
# when a display is available (every page, from the welcome page to the finish page),
# otherwise headless with "/Silent", so that the run needs nobody to answer it. Says what it
# ran, what came of it (exit code, or the windows it was waiting on when it had to be
# stopped) and what it left on the machine: program files, records, file types, shortcuts,
# the journal of deferred operations and the hand-over file.
#   IW_DEMO_ARGS     arguments for the setup program (default: none in a window, "/Silent"
#                    headless)
#   IW_DEMO_TIMEOUT  seconds before a run is stopped (default: 600 in a window, 180 headless)
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
source "$here/wine-env.sh"
build="$IW_BUILD"
media="$build/win/media"
bin="$build/win/bin"
exe="$media/InstallWizard.exe"

if [ ! -f "$exe" ]; then
  echo "demo: $exe is missing; 'make demo' builds it first." >&2
  exit 1
fi

mode=headless
if [ -n "${DISPLAY:-}" ] && xdotool getdisplaygeometry >/dev/null 2>&1; then
  mode=window
fi

wineserver -p 60
# Wine's own services inherit the first Wine program's output and hold it open while the
# server lives: start them on /dev/null so that "make demo | tail" returns.
wine cmd.exe /c exit 0 </dev/null >/dev/null 2>&1 || true
iw_current_webview2
restore_driver() {
  wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
  # End the prefix's processes (the desktop process still holds the display driver) and let
  # the server write the registry, so the tests start headless again.
  wineserver -k >/dev/null 2>&1
  wineserver -w >/dev/null 2>&1
}
if [ "$mode" = window ]; then
  args="${IW_DEMO_ARGS-}"
  limit="${IW_DEMO_TIMEOUT:-600}"
  # The prefix runs headless for the tests; the demo borrows the display and gives it back.
  wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d x11 /f >/dev/null 2>&1
  trap restore_driver EXIT
  echo "== Install Wizard in a window on $DISPLAY"
else
  # The server holds the output of the programs it served: ended with the demo, so that
  # "make demo | tail" returns at once.
  trap 'wineserver -k >/dev/null 2>&1' EXIT
  args="${IW_DEMO_ARGS-/Silent}"
  limit="${IW_DEMO_TIMEOUT:-180}"
  echo "== Install Wizard headless (no display): Wine's null graphics driver"
fi
echo "   setup folder: $media"
echo "   Wine prefix:  $WINEPREFIX"
echo "   command:      InstallWizard.exe${args:+ $args}"

start=$(date +%s)
# The arguments are split as the shell would split them, so quoted paths stay whole. The run
# keeps a log, from which the wizard's pages are shown afterwards.
eval "set -- $args"
log="$build/demo.log"
rm -f "$log" "$media/Finish.txt"
set -- "$@" "/Log=$(winepath -w "$log" 2>/dev/null)"
(cd "$media" && exec wine "$exe" "$@") &
runner=$!

# Wait for the run, at most $limit seconds.
rc=
while kill -0 "$runner" 2>/dev/null; do
  if [ $(( $(date +%s) - start )) -ge "$limit" ]; then
    echo "== still running after $limit s; the windows it was showing:"
    wine "$bin/ListWindows.exe" /Kill InstallWizard.exe
    rc=timeout
    break
  fi
  sleep 1
done
wait "$runner" 2>/dev/null
code=$?
elapsed=$(( $(date +%s) - start ))
# Linux keeps only the low byte of a Windows exit code (1603 arrives as 67): the installer's
# log has it whole.
if [ -f "$log" ]; then
  logged=$(tr -d '\r' < "$log" | sed -n 's/.*CInstallApp::ExitInstance: Exit code \([0-9]*\).*/\1/p' | tail -1)
  [ -n "$logged" ] && [ $((logged % 256)) -eq "$code" ] && code=$logged
fi

if [ "$rc" = timeout ]; then
  echo "== stopped after ${elapsed} s (time limit)"
else
  case $code in
    0) meaning="installed" ;; 1602) meaning="cancelled" ;; 1603) meaning="a fatal error" ;;
    3010) meaning="installed; Windows must restart to finish" ;; *) meaning="see the README's exit codes" ;;
  esac
  echo "== InstallWizard.exe ended after ${elapsed} s with exit code $code ($meaning)"
fi

# Where the wizard went and where it stopped.
if [ -f "$log" ]; then
  pages=$(tr -d '\r' < "$log" | grep -E 'HVWizardPopupWnd::ShowPage|CInstallWizard::RunWizard|CFileInstaller::CopyTree: [0-9]+ files|CCopyAndInstallPpg::Finish|CShortcutsPpg::Prepare|CFinishPpg::Prepare|CSystemShutdown' | sed 's/^/   /')
  if [ -n "$pages" ]; then
    echo "== the wizard (from $log):"
    echo "$pages"
  else
    echo "== the wizard did not start; the log's last lines:"
    tr -d '\r' < "$log" | tail -5 | sed 's/^/   /'
  fi
fi

# What the run left behind, if anything yet.
installed="$WINEPREFIX/drive_c/Program Files/Halvard"
if [ -d "$installed" ]; then
  echo "== installed files under C:\\Program Files\\Halvard:"
  (cd "$installed" && find . -type f | sed 's|^\./|   |' | sort | head -40)
else
  echo "== nothing installed under C:\\Program Files\\Halvard"
fi
if wine reg query 'HKCU\Software\Halvard' >/dev/null 2>&1; then
  echo "== registry keys under HKCU\\Software\\Halvard:"
  wine reg query 'HKCU\Software\Halvard' /s 2>/dev/null | tr -d '\r' | grep -i '^HKEY' | sed 's/^/   /' | head -20
fi
query() {   # title, key
  if wine reg query "$2" >/dev/null 2>&1; then
    echo "== $1 ($2):"
    wine reg query "$2" 2>/dev/null | tr -d '\r' | grep -E '^ +[^ ]' | sed 's/^ */   /' | head -20
  fi
}
query "installation record" 'HKLM\Software\Halvard\Corvale\Installations\Sonora 32'
query "uninstall entry" 'HKLM\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\Sonora 32'
query "installer's own values" 'HKCU\Software\Halvard\Sonora 32\Installer'
query "deferred operations, completed at the next logon" 'HKCU\Software\Halvard\Sonora 32\Installer\Finalize'
if wine reg query 'HKCR\.mp3' >/dev/null 2>&1; then
  echo "== file types: .mp3 opens with $(wine reg query 'HKCR\.mp3' /ve 2>/dev/null | tr -d '\r' | grep -o 'REG_SZ.*' | sed 's/REG_SZ *//')"
fi
echo "== shortcuts:"
wine "$bin/ListShortcuts.exe" 2>/dev/null | tr -d '\r'
if [ -f "$media/Finish.txt" ]; then
  echo "== Finish.txt (the program to start now): $(iconv -f UTF-16 -t UTF-8 "$media/Finish.txt" 2>/dev/null | tr -d '\r' | tail -1)"
fi

[ "$rc" = timeout ] && exit 124
# Any code but 0 fails the demo, whatever its low byte (768 would otherwise pass as 0).
[ "$code" -eq 0 ] || exit 1
exit 0
