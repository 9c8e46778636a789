#!/usr/bin/env bash
# Every script starts with its #! line and uses only the `set` options of the shell that line
# names: a merge that puts lines above the #! makes make run the script with sh, where
# `set -o pipefail` stops it. Run from the project's root; names each script that fails.
cd "$(dirname "$0")/.." || exit 1
status=0
for f in scripts/*.sh .ci/run; do
  first=$(head -n 1 "$f")
  case "$first" in
    '#!'*) ;;
    *) echo "$f: the first line is not its #! line"; status=1; continue ;;
  esac
  shell=${first#\#!}; shell=${shell#/usr/bin/env }
  while IFS= read -r line; do
    $shell -c "$line" >/dev/null 2>&1 || { echo "$f: '$line' is not known to $shell"; status=1; }
  done < <(grep -E '^[[:space:]]*set[[:space:]]+[-+]' "$f" | sed -E 's/^[[:space:]]+//')
done
exit $status
