#!/usr/bin/env bash
# The folders under src/ are floors, each built only on the ones below it; tests/<floor> sit on
# their floor. Prints every #include that reaches up a floor and fails when there is one.
cd "$(dirname "$0")/.." || exit 1
floors=(foundation toolkit product changes engine integration install)
floor_of() { local i; for i in "${!floors[@]}"; do [ "${floors[$i]}" = "$1" ] && echo "$i" && return; done; echo -1; }
status=0
for own in "${floors[@]}"; do
  n=$(floor_of "$own")
  while IFS=: read -r file line text; do
    target=$(sed -E 's/.*#include "([^/"]+)\/.*/\1/' <<<"$text")
    t=$(floor_of "$target")
    if [ "$t" -gt "$n" ]; then
      echo "$file:$line: $own includes from $target, a floor above it"
      status=1
    fi
  done < <(grep -rnE '^[[:space:]]*#[[:space:]]*include[[:space:]]+"[a-z]+/' "src/$own" "tests/$own" 2>/dev/null)
done
[ $status -eq 0 ] && echo "layers: every include is of its own floor or one below (${floors[*]})"
exit $status
