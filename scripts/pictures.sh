#!/usr/bin/env bash
# Renders the wizard's pages and message boxes to <build>/pictures/*.png, at 100% and 150%
# scale: the setup program runs on the sample setup folder in Wine's virtual desktop on a
# private X server (Xvfb), is driven by keys (xdotool) as a user would, and each state is
# photographed and cut to the windows shown: every page from the language question to the
# finish page (with and without a restart pending) and the wizard's boxes, then the uninstaller's
# question, its refusal of a folder without an install record and its result. The Wine prefix of the build lends its display
# driver and scale for the run and gets them back afterwards.
#   IW_PICTURE_SCALES  the scales in DPI (default "96 144")
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
source "$here/wine-env.sh"
build="$IW_BUILD"
media="$build/win/media"
out="$build/pictures"
scales="${IW_PICTURE_SCALES:-96 144}"
other_key='HKLM\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\IW Pictures Other Program'

[ -f "$media/InstallWizard.exe" ] || { echo "pictures: $media/InstallWizard.exe is missing" >&2; exit 1; }
mkdir -p "$out"
rm -f "$out"/*.png

# A setup folder of the pictures' own: the sample's program, agreement, languages and
# description, with the automatic install offered so that its check box shows.
setup="$out/setup"
rm -rf "$setup"; mkdir -p "$setup"
cp "$media/InstallWizard.exe" "$setup/"
cp "$media"/[Ll]icense.txt "$setup/license.txt"
[ -d "$media/Languages" ] && cp -r "$media/Languages" "$setup/"
[ -d "$here/../sample/Languages" ] && [ ! -d "$setup/Languages" ] && cp -r "$here/../sample/Languages" "$setup/"
# The product's files, so that the install runs through the copy and file-association pages.
cp -r "$media/Listenwell" "$media/System" "$media/Setup" "$setup/"
cp "$media"/License.*.txt "$setup/" 2>/dev/null
sed -e 's|<OfferAutoInstall>0</OfferAutoInstall>|<OfferAutoInstall>1</OfferAutoInstall>|' \
    -e 's|<PromoMinimumMilliseconds>[0-9]*</PromoMinimumMilliseconds>|<PromoMinimumMilliseconds>5000</PromoMinimumMilliseconds>|' \
    -e 's|<ShowLanguageSelection>0</ShowLanguageSelection>|<ShowLanguageSelection>1</ShowLanguageSelection>|' \
    "$media/Install.xml" > "$setup/Install.xml"
exe_w="$(winepath -w "$setup/InstallWizard.exe" 2>/dev/null)"
# The run's log tells when the install has got somewhere, however long it takes on this machine.
log_w="$(winepath -w "$out/run.log" 2>/dev/null)"

# A free X display.
n=57
while [ -e "/tmp/.X$n-lock" ] && [ $n -lt 99 ]; do n=$((n + 1)); done
export DISPLAY=":$n"
Xvfb "$DISPLAY" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!

# "Restart" must never end the session of the machine the pictures are made on.
export IW_TEST_ONLY_NO_EXIT_WINDOWS=1

# What an install left: its settings, program folder and shortcuts (the desktop one would
# show in the next pictures).
forget_install() {
  wine reg delete 'HKCU\Software\Halvard' /f >/dev/null 2>&1
  rm -rf "$WINEPREFIX/drive_c/Program Files/Halvard"
  rm -rf "$WINEPREFIX"/drive_c/users/*/AppData/Roaming/Microsoft/Windows/"Start Menu"/Programs/Sonora
  rm -f "$WINEPREFIX"/drive_c/users/*/Desktop/Sonora.lnk
}

set_scale() {
  wineserver -k >/dev/null 2>&1; wineserver -w >/dev/null 2>&1
  wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f >/dev/null 2>&1
  wine reg add 'HKLM\System\CurrentControlSet\Hardware Profiles\Current\Software\Fonts' /v LogPixels /t REG_DWORD /d "$1" /f >/dev/null 2>&1
}
restore() {
  set_scale 96
  wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
  wine reg delete "$other_key" /f >/dev/null 2>&1
  forget_install
  wineserver -k >/dev/null 2>&1; wineserver -w >/dev/null 2>&1
  kill "$xvfb" 2>/dev/null
}
trap restore EXIT
for i in $(seq 50); do xdotool getdisplaygeometry >/dev/null 2>&1 && break; sleep 0.1; done
wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d x11 /f >/dev/null 2>&1
iw_current_webview2
# Another program's folder, so that the destination page has one to refuse.
wine reg add "$other_key" /v InstallLocation /d 'C:\Program Files\Other Vendor\Tool' /f >/dev/null 2>&1

# The wizard's window title; each page is told by its header.
wizard="Install Wizard"
desk=
start_setup() {   # extra arguments for the setup program
  forget_install
  [ -n "${preset:-}" ] && wine reg add 'HKCU\Software\Halvard\Sonora 32\Installer' /v 'Run Auto Install' /t REG_DWORD /d 1 /f >/dev/null 2>&1
  # With lock=1 the shell extension is in use (HoldLock.exe, a test tool) while it installs.
  if [ -n "${lock:-}" ]; then
    mkdir -p "$WINEPREFIX/drive_c/Program Files/Halvard/Sonora"
    wine "$build/win/bin/HoldLock.exe" 'C:\Program Files\Halvard\Sonora\HVShellExt.dll' IWPicturesLock >/dev/null 2>&1 &
    locker=$!
    sleep 2
  fi
  rm -f "$out/run.log"
  (cd "$setup" && exec wine explorer /desktop=Setup,1024x768 "$exe_w" "/Log=$log_w" "$@") >/dev/null 2>&1 &
  runner=$!
  find_desktop
}
start_uninstall() {   # the uninstaller's folder (Windows form)
  rm -f "$out/run.log"
  wine explorer /desktop=Setup,1024x768 "$1\\HVMediaUninstall.exe" "/Log=$log_w" >/dev/null 2>&1 &
  runner=$!
  find_desktop
}
find_desktop() {
  desk=
  for i in $(seq 100); do
    desk=$(xdotool search --name "Setup - Wine desktop" 2>/dev/null | head -1)
    [ -n "$desk" ] && break
    sleep 0.2
  done
  sleep 3
}
release_lock() { [ -n "${locker:-}" ] && kill "$locker" 2>/dev/null; wait "${locker:-}" 2>/dev/null; locker=; }
wait_log() {   # text the log must hold before the next picture
  for i in $(seq 300); do grep -q "$1" "$out/run.log" 2>/dev/null && break; sleep 0.2; done
  sleep 1
}
key() { xdotool windowfocus --sync "$desk" >/dev/null 2>&1; xdotool key --clearmodifiers "$@"; sleep 1; }
typed() { xdotool windowfocus --sync "$desk" >/dev/null 2>&1; xdotool type --delay 30 "$1"; sleep 0.3; }
failed=()
await() {   # what the wait is for, the window's title, and a text it shows (a page header)
  # Under load a key or an install step may take many seconds to have its effect: the next
  # key, or a picture, waits (two minutes at most) for the window it is meant for.
  wine "$build/win/bin/WaitForWindow.exe" "$2" "${3:-}" /Desktop Setup /Timeout 120000 >"$out/wait.txt" 2>/dev/null && return 0
  echo "pictures: $1-$label: the window \"$2\" ${3:+showing \"$3\" }did not come" >&2
  cat "$out/wait.txt" >&2
  failed+=("$1-$label")
  return 1
}
shot() {   # name, the title of the window it shows, and a text that window shows
  await "$@" || return
  sleep 0.5
  import -display "$DISPLAY" -window root "$out/raw.png" 2>/dev/null
  convert "$out/raw.png" -trim +repage "$out/$1-$label.png" 2>/dev/null && echo "   $1-$label.png"
  rm -f "$out/raw.png"
}
end_setup() {
  for i in $(seq 50); do kill -0 "$runner" 2>/dev/null || break; sleep 0.2; done
  wineserver -k >/dev/null 2>&1; wineserver -w >/dev/null 2>&1
}

for dpi in $scales; do
  label="$((dpi * 100 / 96))"
  echo "== pictures at ${label}%"
  set_scale "$dpi"
  wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d x11 /f >/dev/null 2>&1

  # The language question, then every page of a Custom install and every refusal of the
  # destination page.
  start_setup
  shot 00-language-selection "Install Wizard" "Please select a language:"
  key Escape
  shot 01-welcome "$wizard" "Welcome"
  key Return
  shot 02-setup-type "$wizard" "Setup Type"
  key Down
  key Return
  shot 03-custom-setup-type "$wizard" "Normal install to a computer"
  key Return
  shot 04-destination "$wizard" "Destination Folder"
  key Escape
  shot 10-confirm-cancellation "Confirm Cancellation" "Are you sure"
  key n
  refusal=11
  for folder in "" 'C:\' 'C:\windows\Sonora' 'C:\Program Files' 'C:\Program Files\Other Vendor\Tool\Sonora' 'Q:\Sonora'; do
    key ctrl+a BackSpace
    [ -n "$folder" ] && typed "$folder"
    key Return
    box="Invalid Destination Folder"
    case $refusal in
      11) name=empty-folder; says="to an empty folder" ;; 12) name=drive-root; says="to the root of a drive" ;;
      13) name=windows-folder; says="in the Windows folder" ;;
      14) name=program-files-folder; says="to the root program files folder" ;;
      15) name=other-program-folder; says="where a pre-existing program is installed" ;;
      *) name=cannot-create; box="Error"; says="Failed to create" ;;
    esac
    shot "$refusal-refused-$name" "$box" "$says"
    key Return
    refusal=$((refusal + 1))
  done
  # A folder it takes: the install, then the file types.
  key ctrl+a BackSpace
  typed 'C:\Program Files\Halvard\Sonora'
  key Return
  shot 06-copying "$wizard" "Please wait while Install Wizard"
  key Escape
  shot 20-cancel-unavailable "Cancel Unavailable" "can no longer be canceled"
  key Return
  wait_log 'CCopyAndInstallPpg::Finish'
  shot 07-file-associations "$wizard" "File Associations"
  key Return
  shot 08-shortcuts "$wizard" "Create Shortcuts"
  key Return
  shot 09-finish "$wizard" "Install Complete"
  key Return
  end_setup

  # The uninstaller: one away from its install record refuses, the installed one removes.
  norecord="$out/uninstall-without-record"
  mkdir -p "$norecord"
  cp "$WINEPREFIX/drive_c/Program Files/Halvard/Sonora/HVMediaUninstall.exe" "$norecord/"
  start_uninstall "$(winepath -w "$norecord" 2>/dev/null)"
  shot 30-uninstall-question "Uninstall Sonora" "Keep my library and settings"
  key Return
  shot 31-uninstall-refused "Uninstall Sonora" "can't be removed safely"
  key Return
  end_setup
  rm -rf "$norecord"
  start_uninstall 'C:\Program Files\Halvard\Sonora'
  key Return
  wait_log 'Delete install record'
  shot 32-uninstall-done "Uninstall Sonora" "was removed from your computer"
  key Return
  end_setup

  # A file in use: the finish page offers the restart and asks before it; "Restart" then
  # ends the run (the session itself is left alone, IW_TEST_ONLY_NO_EXIT_WINDOWS above).
  lock=1 start_setup
  key Escape
  key Return
  key Return
  wait_log 'CFinishPpg::Prepare'
  shot 09-finish-restart "$wizard" "Windows must be restarted"
  key Return
  shot 21-confirm-restart "Confirm Restart" "Please save your work"
  key Return
  end_setup
  release_lock

  # The countdown of an automatic install that the last run asked for.
  preset=1 start_setup
  key Escape
  sleep 2
  shot 05-auto-install-countdown "Auto Install in" "Welcome"
  key Escape
  key y
  end_setup
done
rm -f "$out/run.log" "$out/wait.txt"
ls "$out"/*.png >/dev/null 2>&1 || { echo "pictures: none made" >&2; exit 1; }
if [ ${#failed[@]} -gt 0 ]; then
  echo "pictures: ${#failed[@]} picture(s) not taken, their window never came: ${failed[*]}" >&2
  exit 1
fi
echo "== $(ls "$out"/*.png | wc -l) pictures in $out"
