#!/usr/bin/env bash
# Signs Windows programs in place with Authenticode (osslsigncode, SHA-256 digests): the
# last step of a release that is given a certificate. A file that can't be signed is left as
# it was and the script fails.
#   sign.sh <certificate.p12> <password file> <timestamp URL or ""> <program.exe>...
set -euo pipefail
pkcs12="$1"; passfile="$2"; timestamp="$3"; shift 3
[ -r "$pkcs12" ] || { echo "sign: can't read the certificate $pkcs12" >&2; exit 1; }
[ -r "$passfile" ] || { echo "sign: can't read the password file $passfile" >&2; exit 1; }
stamp=()
[ -z "$timestamp" ] || stamp=(-ts "$timestamp")
for program in "$@"; do
  case "$(basename "$program")" in
    InstallWizard.exe) description="Sonora Install Wizard" ;;
    HVMediaUninstall.exe) description="Sonora Uninstall" ;;
    *) description="Sonora" ;;
  esac
  if ! osslsigncode sign -pkcs12 "$pkcs12" -readpass "$passfile" -h sha256 -n "$description" \
       -i "https://www.halvard.com/" "${stamp[@]}" -in "$program" -out "$program.signed" >"$program.sign.log" 2>&1; then
    echo "sign: $program could not be signed:" >&2
    cat "$program.sign.log" >&2
    rm -f "$program.signed" "$program.sign.log"
    exit 1
  fi
  mv "$program.signed" "$program"
  rm -f "$program.sign.log"
  echo "sign: $program"
done
