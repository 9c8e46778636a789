#!/usr/bin/env bash
# Runs Windows tests against a real full disk: a small tmpfs is mounted and given to Wine as a
# drive letter for the length of the run, and the tests find it in IW_FULL_DISK_DRIVE. Needs
# root for the mount (CI runs as root); elsewhere the entry is skipped (exit 77).
#   full-disk-test.sh <seconds> <program.exe> [arguments...]
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
source "$here/wine-env.sh"
if [ "$(id -u)" != 0 ]; then
  echo "full-disk tests need root to mount a small file system; skipped"
  exit 77
fi
mountpoint="$(mktemp -d "${TMPDIR:-/tmp}/iw-full-disk.XXXXXX")"
drive="$WINEPREFIX/dosdevices/q:"
cleanup() {
  rm -f "$drive"
  umount "$mountpoint" 2>/dev/null
  rmdir "$mountpoint"
}
trap cleanup EXIT
if ! mount -t tmpfs -o size=4m tmpfs "$mountpoint"; then
  echo "could not mount a tmpfs at $mountpoint"
  exit 1
fi
ln -sfn "$mountpoint" "$drive"
export IW_FULL_DISK_DRIVE='Q:\'
"$here/wine-test.sh" "$@"
