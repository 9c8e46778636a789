#!/usr/bin/env bash
# Packs a release's setup folder as one download and describes it for Windows' package
# manager: <release>/Sonora-<version>-setup.zip and, from the templates in packaging/winget/,
# the version, installer and default-locale manifests in <release>/winget/ with the archive's
# SHA-256. The version is the product's, read from the version resource of the setup folder's
# "Listenwell\Sonora 32.exe" (as the installer reads it). Two runs over the same folder of
# the same commit write the same archive.
#   package-release.sh <release folder>
# RELEASE_URL: where the archive will be downloaded from (default: Halvard's download server).
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
src="$(cd "$here/.." && pwd)"
out="$(cd "$1" && pwd)"
media="$out/media"

# The fixed file information of a version resource: its signature and structure version
# (which code bytes may match by chance, but not both), then FileVersionMS and LS.
main="$media/Listenwell/Sonora 32.exe"
version=32.0.0.0
if [ -f "$main" ]; then
  while read -r offset; do
    read -r structure ms ls < <(od -An -tu4 -j$((offset + 4)) -N12 "$main")
    if [ "$structure" = 65536 ]; then
      version="$((ms >> 16)).$((ms & 65535)).$((ls >> 16)).$((ls & 65535))"
      break
    fi
  done < <(LC_ALL=C grep -obUaP '\xbd\x04\xef\xfe' "$main" | cut -d: -f1)
fi

# The archive's entries in one order, with one time (the commit's, never before 1980, which
# zip can't store) and plain permissions, so that it depends on the files alone.
zip="$out/Sonora-$version-setup.zip"
stage="$out/package-stage"
rm -rf "$stage" "$zip" "$out"/Sonora-*-setup.zip
cp -r "$media" "$stage"
epoch=$(git -C "$src" log -1 --format=%ct 2>/dev/null || echo 0)
[ "$epoch" -ge 315532800 ] || epoch=315532800
find "$stage" -type f -exec chmod 0644 {} +
find "$stage" -exec touch -h -d "@$epoch" {} +
(cd "$stage" && find . -type f | LC_ALL=C sort | TZ=UTC zip -X -D -q -9 -@ "$zip")
rm -rf "$stage"
sha=$(sha256sum "$zip" | cut -d' ' -f1 | tr a-f A-F)
url="${RELEASE_URL:-https://downloads.halvard.com/sonora/$(basename "$zip")}"

rm -rf "$out/winget"
mkdir -p "$out/winget"
for template in "$src"/packaging/winget/*.yaml; do
  sed -e "s|@VERSION@|$version|g" -e "s|@SHA256@|$sha|g" -e "s|@URL@|$url|g" "$template" \
    >"$out/winget/$(basename "$template")"
done
echo "release: download $zip"
echo "release: download SHA-256 $sha"
echo "release: package manifest $out/winget/ (version $version)"
