# Sourced by every script that runs Wine: one private prefix per build tree, no Mono/Gecko
# prompts, no desktop menu entries made from the installer's shortcuts, no debug chatter.
: "${IW_BUILD:=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build}"
export WINEPREFIX="${WINEPREFIX:-$IW_BUILD/wineprefix}"
export WINEARCH=win64
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
