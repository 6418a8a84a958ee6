#!/bin/bash
# Starts that don't come to a window: what is said, and the status.
#   start.sh TARVEX
set -u
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
faults=0
cd "$dir" || exit 1
unset DISPLAY WAYLAND_DISPLAY
export HOME=$dir XDG_RUNTIME_DIR=$dir
# started STATUS SAID [NAME=VALUE...] -- ARGS...; SAID is a pattern
started() {
  local status=$1 words=$2 settings=()
  shift 2
  while [ "$1" != -- ]; do settings+=("$1"); shift; done
  shift
  local said was
  said=$(env "${settings[@]}" timeout 20 "$TARVEX" "$@" 2>&1)
  was=$?
  [ "$was" = "$status" ] && [[ $said == $words ]] ||
    { echo "FAILED: $* ended by $was, not by $status, and said: $said"; faults=$((faults + 1)); }
}
TARVEX=$1
printf '%s\n0\n' "$dir" > Tarvex.cfg
cp Tarvex.cfg before
started 255 "There is no display on which windows could be shown (DISPLAY, WAYLAND_DISPLAY)." QT_QPA_PLATFORM=xcb -- a.psc
cmp -s Tarvex.cfg before || { echo "FAILED: a start without a display touched a file"; faults=$((faults + 1)); }
started 0 "Usage: tarvex*" QT_QPA_PLATFORM=xcb -- --help
started 0 "tarvex *" QT_QPA_PLATFORM=xcb -- --version
rm Tarvex.cfg
started 0 "    Error opening PrepVels configuration file.
Can't open PrepVels.cfg in the current directory.*" QT_QPA_PLATFORM=offscreen --
echo '<fontconfig></fontconfig>' > fonts.conf
started 0 "No font is installed*Error opening PrepVels*" QT_QPA_PLATFORM=offscreen FONTCONFIG_FILE="$dir/fonts.conf" --
exit $((faults > 0))
