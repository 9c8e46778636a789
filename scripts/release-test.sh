#!/usr/bin/env bash
# The release as it ships, tested on the release that is already built (make test builds it
# beside the Windows tree): a throwaway certificate authority and code-signing certificate
# (openssl, in the Windows tree) sign a copy of its setup folder with the release's own
# signing step; osslsigncode must verify both programs against that authority and refuse an
# installer with one byte changed. Then the Windows test program installs the signed copy and
# the release's download under Wine. Without a release the test is skipped (exit 77).
#   release-test.sh <seconds> <release_package.exe> <release folder>
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
source "$here/wine-env.sh"
limit="$1"; program="$2"; release="$(cd "$3" 2>/dev/null && pwd)" || release="$3"
if [ ! -f "$release/winget/Halvard.Sonora.installer.yaml" ] || [ ! -d "$release/media" ]; then
  echo "no release in $release: run make release first"
  exit 77
fi
work="$(cd "$(dirname "$program")/.." && pwd)/release-test"
keys="$work/keys"
setup="$work/signed-setup"
rm -rf "$work"
mkdir -p "$keys"
fail() { echo "release test: $*"; exit 1; }

(
  cd "$keys" || exit 1
  openssl req -x509 -newkey rsa:2048 -nodes -keyout ca.key -out ca.pem -days 2 -subj "/CN=Install Wizard Test CA" \
    -addext basicConstraints=critical,CA:TRUE -addext keyUsage=critical,keyCertSign,cRLSign &&
  openssl req -newkey rsa:2048 -nodes -keyout signer.key -out signer.csr -subj "/CN=Halvard Test Signing" &&
  printf 'basicConstraints=CA:FALSE\nkeyUsage=critical,digitalSignature\nextendedKeyUsage=codeSigning\n' >signer.ext &&
  openssl x509 -req -in signer.csr -CA ca.pem -CAkey ca.key -CAcreateserial -days 2 -extfile signer.ext -out signer.pem &&
  echo "throwaway password" >password.txt &&
  openssl pkcs12 -export -inkey signer.key -in signer.pem -certfile ca.pem -passout file:password.txt -out signer.p12
) >"$work/openssl.log" 2>&1 || { cat "$work/openssl.log"; fail "could not make the test certificates"; }

cp -r "$release/media" "$setup"
programs=("$setup/InstallWizard.exe" "$setup/Listenwell/HVMediaUninstall.exe")
"$here/sign.sh" "$keys/signer.p12" "$keys/password.txt" "" "${programs[@]}" || fail "signing failed"
for p in "${programs[@]}"; do
  osslsigncode verify -CAfile "$keys/ca.pem" -in "$p" >"$work/verify.log" 2>&1 ||
    { cat "$work/verify.log"; fail "$(basename "$p") does not verify"; }
  echo "release test: $(basename "$p") signed and verified"
done
tampered="$work/tampered.exe"
cp "${programs[0]}" "$tampered"
byte=$(od -An -tu1 -j4096 -N1 "$tampered" | tr -d ' ')
printf "$(printf '\\%03o' $(((byte + 1) % 256)))" | dd of="$tampered" bs=1 seek=4096 conv=notrunc status=none
if osslsigncode verify -CAfile "$keys/ca.pem" -in "$tampered" >"$work/tampered.log" 2>&1; then
  fail "an installer with one byte changed still verifies"
fi
echo "release test: one changed byte fails the verification"

winpath() { printf 'Z:%s\\' "$(echo "$1" | tr / '\\')"; }
IW_RELEASE="$(winpath "$release")" IW_SIGNED_SETUP="$(winpath "$setup")" "$here/wine-test.sh" "$limit" "$program"
