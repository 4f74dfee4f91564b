#!/bin/bash
# Runs a Windows program with what it needs to find: wine.sh PROGRAM [ARGUMENT...]
# The prefix lies in the cache, so that nothing of the user's own is touched.
cache=${FETCHYARD_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/fetchyard}/win64
gcc=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++-6.dll)")
libraries="Z:$cache/parts/bin;Z:$gcc;Z:/usr/x86_64-w64-mingw32/lib"
export WINEPREFIX=$cache/wine WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES="mscoree,mshtml="
export WINEPATH=${libraries//\//\\}
# Names outside ASCII need a locale that has them. Zones of this system's form are not understood.
export LC_ALL=C.UTF-8 TZ=UTC
unset DISPLAY
exec /usr/lib/wine/wine64 "$@"
