#!/usr/bin/env bash
# Runs Windows tests against a real full disk: a small tmpfs is mounted and given to Wine as a
# drive letter for the length of the run, and the tests find it in IW_FULL_DISK_DRIVE. Its size
# is IW_FULL_DISK_SIZE (tmpfs's form, 4m when unset). Needs root for the mount (CI runs as
# root); elsewhere the entry is skipped (exit 77).
#   full-disk-test.sh <seconds> <program.exe> [arguments...]
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
source "$here/wine-env.sh"
source "$here/wine-drive.sh"
if [ "$(id -u)" != 0 ]; then
  echo "full-disk tests need root to mount a small file system; skipped"
  exit 77
fi
wine_drive_begin q iw-full-disk
if ! mount -t tmpfs -o "size=${IW_FULL_DISK_SIZE:-4m}" tmpfs "$mountpoint"; then
  echo "could not mount a tmpfs at $mountpoint"
  exit 1
fi
wine_drive_link
export IW_FULL_DISK_DRIVE='Q:\'
"$here/wine-test.sh" "$@"
