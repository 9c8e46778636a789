#!/usr/bin/env bash
# Sourced by the test wrappers that give Wine a drive of their own for one run:
# `wine_drive_begin <letter> <prefix>` makes an empty mount point in $mountpoint and the drive
# link in $drive, and takes both away again when the script exits; the caller mounts what it
# needs on $mountpoint and then calls `wine_drive_link`.
wine_drive_begin() {
  mountpoint="$(mktemp -d "${TMPDIR:-/tmp}/$2.XXXXXX")"
  drive="$WINEPREFIX/dosdevices/$1:"
  trap 'rm -f "$drive"; umount "$mountpoint" 2>/dev/null; rmdir "$mountpoint"' EXIT
}
wine_drive_link() {
  ln -sfn "$mountpoint" "$drive"
}
