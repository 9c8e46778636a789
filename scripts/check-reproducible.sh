#!/usr/bin/env bash
# Proves the release build reproducible: clones the current commit twice, into two different
# paths, builds the release in each (scripts/release.sh, unsigned: a signature carries its own
# time) and compares the programs, the sample setup folders, the downloads and their manifests
# byte for byte. Prints the SHA-256 both builds share; fails on any difference. Takes two
# release builds' time.
#   scripts/check-reproducible.sh [scratch directory]     default: $IW_BUILD/reproducible
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
src="$(cd "$here/.." && pwd)"
scratch="${1:-${IW_BUILD:-$src/build}/reproducible}"
rm -rf "$scratch"
mkdir -p "$scratch"
commit=$(git -C "$src" rev-parse HEAD)
if [ -n "$(git -C "$src" status --porcelain --untracked-files=no)" ]; then
  echo "reproducible: uncommitted changes are not checked; building $commit" >&2
fi

for clone in first second-clone; do
  git clone -q --no-checkout "$src" "$scratch/$clone"
  git -C "$scratch/$clone" checkout -q "$commit"
  env -u SIGN_PKCS12 -u SIGN_PASSWORD_FILE IW_BUILD="$scratch/$clone-build" \
    "$scratch/$clone/scripts/release.sh" >"$scratch/$clone.log" 2>&1 ||
    { echo "reproducible: the $clone build failed; see $scratch/$clone.log" >&2; exit 1; }
done

a="$scratch/first-build/release"
b="$scratch/second-clone-build/release"
for program in InstallWizard.exe HVMediaUninstall.exe; do
  if ! cmp "$a/$program" "$b/$program"; then
    echo "reproducible: $program differs between the two builds" >&2
    exit 1
  fi
done
for folder in media winget; do
  if ! diff -r -q "$a/$folder" "$b/$folder"; then
    echo "reproducible: the $folder folders differ" >&2
    exit 1
  fi
done
for zip in "$a"/Sonora-*-setup.zip; do
  if ! cmp "$zip" "$b/$(basename "$zip")"; then
    echo "reproducible: the download $(basename "$zip") differs" >&2
    exit 1
  fi
done
echo "reproducible: two builds of $commit are byte-identical"
echo "reproducible: SHA-256 $(sha256sum "$a/InstallWizard.exe" | cut -d' ' -f1)"
