#!/usr/bin/env bash
# Sourced by every script that runs Wine: one private prefix per build tree, no Mono/Gecko
# prompts, no desktop menu entries made from the installer's shortcuts, no debug chatter.
# A WINEPREFIX of the user's own is never used: the tests write the registry and the Program
# Files of the prefix they run in. A build tree's tests name theirs in IW_WINEPREFIX.
: "${IW_BUILD:=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build}"
export WINEPREFIX="${IW_WINEPREFIX:-$IW_BUILD/wineprefix}"
export WINEARCH=win64
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"

# The demo and the pictures run on a machine with a current WebView2 runtime, as the tests do,
# so that the sample setup folder downloads nothing from the maker's server.
iw_current_webview2() {
  wine reg add 'HKLM\SOFTWARE\Microsoft\EdgeUpdate\Clients\{F3017226-FE2A-4295-8BDF-00C3A9A7E4C5}' \
    /v pv /d 120.0.2210.91 /f /reg:32 >/dev/null 2>&1 || true
}
