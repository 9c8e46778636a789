#!/usr/bin/env bash
# Builds the release (make release): InstallWizard.exe and HVMediaUninstall.exe optimised,
# stripped and reproducible, in <build>/release/, beside the sample setup folder
# <build>/release/media/ (which holds the same programs). Fails when the installer is larger
# than 1 MB or a program carries a time stamp or path that would make two builds differ.
# Then, the last steps: given a certificate, the setup folder's two programs are signed
# (the ones beside it stay as built, for the reproducibility check); the setup folder becomes
# one download, Sonora-<version>-setup.zip, with the package manager's manifest in winget/
# (scripts/package-release.sh). Ends with the installer's size and SHA-256 and the download's.
#   scripts/release.sh [build directory]     default: $IW_BUILD/release
# SIGN_PKCS12=<file.p12> SIGN_PASSWORD_FILE=<file> [SIGN_TIMESTAMP_URL=<url>]: sign.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
src="$(cd "$here/.." && pwd)"
out="${1:-${IW_BUILD:-$src/build}/release}"
jobs="${JOBS:-$(nproc)}"

# Compiled in batches of sources (unity build): windows.h and the C++ library are parsed once a
# batch instead of once a file. The batches are made from the sorted source list, so two builds
# of one commit compile the same batches.
# The commit's time becomes the PE time stamp: a rebuild of the same commit is the same file.
epoch=$(git -C "$src" log -1 --format=%ct 2>/dev/null || true)

cmake -Wno-dev --log-level=WARNING -S "$src" -B "$out" \
  -DCMAKE_TOOLCHAIN_FILE="$src/cmake/mingw-w64-x86_64.cmake" -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_CXX_FLAGS_RELEASE="-Os -DNDEBUG -ffunction-sections -fdata-sections" \
  -DCMAKE_C_FLAGS_RELEASE="-Os -DNDEBUG -ffunction-sections -fdata-sections" \
  -DCMAKE_EXE_LINKER_FLAGS_RELEASE="-Wl,--gc-sections" \
  -DIW_TESTS=OFF -DIW_REPRODUCIBLE=ON -DIW_SOURCE_DATE_EPOCH="$epoch" \
  -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=24
cmake --build "$out" -j"$jobs"

exe="$out/InstallWizard.exe"
for program in InstallWizard HVMediaUninstall; do
  built="$out/$program.exe"
  cp "$out/bin/$program.exe" "$built"
  # The cheap half of the reproducibility check (the full one is check-reproducible.sh): the
  # PE time stamp is the commit's, and no path of this machine got into the executable.
  pe=$(od -An -tu4 -j60 -N4 "$built" | tr -d ' ')
  stamp=$(od -An -tu4 -j$((pe + 8)) -N4 "$built" | tr -d ' ')
  if [ "$stamp" != "${epoch:-0}" ]; then
    echo "release: $program.exe has the PE time stamp $stamp, expected ${epoch:-0}" >&2
    exit 1
  fi
  if grep -q -a -F -e "$src" -e "$out" "$built"; then
    echo "release: $program.exe holds a path of the build machine" >&2
    exit 1
  fi
done
size=$(stat -c %s "$exe")
sha=$(sha256sum "$exe" | cut -d' ' -f1)
echo "release: $exe"
echo "release: sample setup folder $out/media/"
echo "release: size $size bytes"
echo "release: SHA-256 $sha"
if [ "$size" -gt 1048576 ]; then
  echo "release: larger than 1 MB" >&2
  exit 1
fi

# What ships: the setup folder gets the programs as built (a build that relinked nothing
# leaves them, signed or not, from the last release), signed when a certificate is given.
shipped=("$out/media/InstallWizard.exe" "$out/media/Listenwell/HVMediaUninstall.exe")
cp "$exe" "${shipped[0]}"
cp "$out/HVMediaUninstall.exe" "${shipped[1]}"
if [ -n "${SIGN_PKCS12:-}" ]; then
  [ -n "${SIGN_PASSWORD_FILE:-}" ] || { echo "release: SIGN_PKCS12 needs SIGN_PASSWORD_FILE" >&2; exit 1; }
  "$here/sign.sh" "$SIGN_PKCS12" "$SIGN_PASSWORD_FILE" "${SIGN_TIMESTAMP_URL:-}" "${shipped[@]}"
else
  echo "release: not signed (no SIGN_PKCS12)"
fi
"$here/package-release.sh" "$out"
