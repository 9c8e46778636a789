#!/usr/bin/env bash
# Runs a Windows test with a read-only setup folder: the sample setup folder bind-mounted
# read-only and given to Wine as drive R: for the length of the run, the nearest thing to a
# setup folder on a read-only network share (as root every permission bit is passed by, a
# read-only mount is not). The test finds the drive in IW_READ_ONLY_SETUP. Without root there
# is no mount: the test runs without the drive and says which rows it left out.
#   read-only-setup-test.sh <seconds> <program.exe> [arguments...]
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
source "$here/wine-env.sh"
source "$here/wine-drive.sh"
media="$(cd "$(dirname "$2")/../media" && pwd)"
if [ "$(id -u)" = 0 ]; then
  wine_drive_begin r iw-read-only
  if ! mount --bind "$media" "$mountpoint" || ! mount -o remount,bind,ro "$mountpoint"; then
    echo "could not mount $media read-only at $mountpoint"
    exit 1
  fi
  wine_drive_link
  export IW_READ_ONLY_SETUP='R:\'
fi
"$here/wine-test.sh" "$@"
