#!/bin/bash
# The launcher's main directory: made, used again, made anew after an update, and what is the user's in it.
#   launcher.sh LAUNCHER.IN
set -u
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
faults=0
fault() { echo "FAILED: $*"; faults=$((faults + 1)); }

# A program that says where it was started and with what.
installed="$dir/s h/tarvex"
mkdir -p "$installed/Demo" "$installed/Tarvex" "$dir/a b"
echo first > "$installed/Demo/one.dem"
echo first > "$installed/Tarvex/gone.ui"
printf '#!/bin/sh\npwd\nprintf "%%s\\n" "$@"\n' > "$dir/program"
sed -e "s|@TARVEX_SHARE@|$installed|; s|@TARVEX_PROGRAM@|$dir/program|" "$1" > "$dir/tarvex"
chmod +x "$dir/program" "$dir/tarvex"
export HOME="$dir/a home" XDG_DATA_HOME=relative DISPLAY=:9
unset WAYLAND_DISPLAY QT_QPA_PLATFORM
main=$HOME/.local/share/tarvex
# said EXPECTED ARGS...
said() {
  local expected=$1
  shift
  [ "$(cd "$dir/a b" && "$dir/tarvex" "$@" 2>&1)" = "$expected" ] || fault "$*: $(cd "$dir/a b" && "$dir/tarvex" "$@" 2>&1)"
}

DISPLAY='' said "$dir/a b"
[ ! -e "$HOME" ] || fault "made without a display"
said "$main
$dir/a b/c d.psc
/e.sam
-x" "c d.psc" /e.sam -x
[ "$(cat "$main/Tarvex.cfg")" = "$main
0" ] || fault "the start-up file: $(cat "$main/Tarvex.cfg")"
# The program's and the user's own stay at every start.
echo 1 > "$main/Tarvex.cfg"
echo mine | tee "$main/config.dat" > "$main/Demo/mine.psc"
said "$main"
[ "$(cat "$main/Tarvex.cfg")" = 1 ] || fault "made anew without a reason"
# After an update, and when asked for.
echo second > "$installed/Demo/one.dem"
rm "$installed/Tarvex/gone.ui"
"$dir/tarvex" > "$dir/out" & "$dir/tarvex" > "$dir/out2"
wait
[ "$(cat "$main/Demo/one.dem")" = second ] && [ ! -e "$main/Tarvex/gone.ui" ] || fault "not updated"
rm "$main/Demo/one.dem"
said "$main" --reset
[ -e "$main/Demo/one.dem" ] || fault "not reset"
[ "$(cat "$main/config.dat" "$main/Demo/mine.psc")" = "mine
mine" ] || fault "the user's files are gone"
[ ! -e "$main/.new" ] || fault "a copy is left"
# Where it can't be.
: > "$dir/file"
XDG_DATA_HOME=$dir/file "$dir/tarvex" 2> "$dir/errors" | grep -q "^I cannot make the directory $dir/file/tarvex" ||
  fault "no word of a directory that can't be"
exit $((faults > 0))
