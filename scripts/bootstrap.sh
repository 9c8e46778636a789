#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need. Silent when everything is there;
# names a package that can't be had and fails.
set -euo pipefail

packages=(
  # cross build
  mingw-w64 g++-mingw-w64-x86-64-posix libz-mingw-w64-dev cmake make
  # the faster linker for the Windows test programs
  lld
  # run and test; Wine's own fonts draw the title bars' minimize, maximize and close glyphs
  wine wine64 fonts-wine googletest
  # pictures and key input
  xvfb xdotool imagemagick
  # native core, fuzzing, benchmarks
  g++ clang libclang-rt-14-dev libbenchmark-dev libpugixml-dev libtinyxml2-dev libexpat1-dev zlib1g-dev
  # the sample setup folder's font
  fonts-dejavu-core
  # the release's download, its signature, and the signing test's certificates
  zip osslsigncode openssl
  # the https server of the download tests (Wine can't serve TLS)
  python3
)

missing=()
for p in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
  [ "$status" = "install ok installed" ] || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "bootstrap: not root and no sudo; install: ${missing[*]}" >&2; exit 1; }
  sudo="sudo"
fi
echo "bootstrap: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq >/dev/null
if ! $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/tmp/iw-bootstrap.log 2>&1; then
  for p in "${missing[@]}"; do
    if ! apt-cache show "$p" >/dev/null 2>&1; then
      echo "bootstrap: the package '$p' can't be had from the configured sources" >&2
    fi
  done
  echo "bootstrap: apt-get install failed; see /tmp/iw-bootstrap.log" >&2
  tail -20 /tmp/iw-bootstrap.log >&2
  exit 1
fi
for p in "${missing[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
  [ "$status" = "install ok installed" ] || { echo "bootstrap: '$p' did not install" >&2; exit 1; }
done
