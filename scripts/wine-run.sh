#!/usr/bin/env bash
# Runs a Windows program under wine: quietly, in a wine prefix of its own
# under build/ that is created on first use, so tests never touch ~/.wine.
# Usage: scripts/wine-run.sh program.exe [arguments...]
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

export WINEPREFIX="$root/build/wine-prefix"
export WINEDEBUG=-all
# Names on the command line and on disk are UTF-8 whatever the caller's locale.
export LC_ALL=C.UTF-8
# No prompts to install the .NET and HTML engines: console programs need neither.
export WINEDLLOVERRIDES="mscoree,mshtml="

wine=$(command -v wine64 || command -v wine || echo /usr/lib/wine/wine64)

if [ ! -f "$WINEPREFIX/system.reg" ]; then
    mkdir -p "$WINEPREFIX"
    # Parallel first runs create the prefix once.
    (
        flock 9
        [ -f "$WINEPREFIX/system.reg" ] || "$wine" wineboot --init >/dev/null 2>&1 </dev/null
    ) 9>"$WINEPREFIX.lock"
fi

exec "$wine" "$@"
