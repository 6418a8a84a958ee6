#!/bin/bash
# A user's afternoon with mouse and keys under a window manager: a case is opened, run, stopped, run again, saved; the
# program is left with a question, started with the project, killed, started and recovered. What it takes is counted.
#   afternoon.sh TARVEX SHARE
set -u
for tool in Xvfb openbox xdotool; do
  command -v "$tool" > /dev/null || { echo "Skipped: $tool isn't installed"; exit 77; }
done
tarvex=$1
dir=$(mktemp -d)
main=$dir/main
mkdir "$main"
cp -RL "$2/." "$main"
printf '%s\n0\n' "$main" > "$main/Tarvex.cfg"
cd "$main" || exit 1
export TEMP=$dir HOME=$dir
unset XDG_RUNTIME_DIR WAYLAND_DISPLAY QT_QPA_PLATFORM
pids=()
cleanup() {
  kill "${pids[@]}" 2> /dev/null
  wait 2> /dev/null
  rm -rf "$dir"
}
trap cleanup EXIT
faults=0
fault() { echo "FAILED: $*"; faults=$((faults + 1)); }

Xvfb -displayfd 3 -screen 0 1280x900x24 3> "$dir/display" > /dev/null 2>&1 &
pids+=($!)
for _ in {1..100}; do [ -s "$dir/display" ] && break; sleep 0.1; done
DISPLAY=:$(cat "$dir/display")
export DISPLAY
openbox > /dev/null 2>&1 &
pids+=($!)

# The window of that title, waited for; a menu or a dialog drops the keys that are sent before it is there. A search ends
# with an error when a window vanishes in the middle of it, so it is asked again, never told to wait.
seen() { timeout 5 xdotool search --onlyvisible --name "$1" > /dev/null 2>&1; }
await() { for _ in {1..200}; do if seen "$1"; then sleep 0.4; return; fi; sleep 0.1; done; fault "no window '$1'"; }
gone() { for _ in {1..100}; do seen "$1" || { sleep 0.1; seen "$1"; } || return; sleep 0.1; done; fault "'$1' is still there"; }
keys=0
key() { xdotool key --clearmodifiers "$@"; keys=$((keys + $#)); sleep 0.4; }
start() { "$tarvex" "$@" > "$dir/said" 2>&1 & program=$!; pids+=("$program"); await '^Tarvex|^PrepVels'; }
ended() { for _ in {1..60}; do kill -0 "$program" 2> /dev/null || break; sleep 0.1; done; wait "$program"; [ $? = "$1" ] || fault "the program ended by $?, not by $1"; }

start
# A new study needs nothing: the program starts in an empty project.
echo "task a: 0 clicks, 0 keys"
key alt+d; key i
await '^Help - Ishigami'; key Escape; gone '^Help - Ishigami'
# h: run and stop.
keys=0
key F5
await '^Link between'; key Return
await '^Warning'; key Escape
echo "task h: run in $keys keys"
wait_idle() { sleep 1; gone '^Model execution'; }
wait_idle
key F5; await '^Link between'; key Escape
await '^Warning'; key Return
for _ in {1..50}; do if seen '^Sample generation|^Model execution'; then key Escape; break; fi; sleep 0.1; done
wait_idle; gone '^Sample generation'
# Saved under a name that is typed.
key ctrl+shift+s
await '^Save current configuration'
xdotool type --delay 30 "$dir/case.psc"; key Return
gone '^Save current configuration'
for _ in {1..50}; do [ -s "$dir/case.psc" ] && break; sleep 0.1; done
[ -s "$dir/case.psc" ] || fault "nothing was saved"
# Changed again, left with a question: no, then yes.
key F5; await '^Link between'; key Return; await '^Warning'; key Escape; wait_idle
key ctrl+q; await '^Warning'; key Escape
kill -0 "$program" 2> /dev/null || fault "it left without an answer"
key ctrl+q; await '^Warning'; key Return
ended 0
[ -s "$dir/said" ] && fault "it said: $(cat "$dir/said")"

# With the project as argument; a change, and the end by the system, and by force.
for end in TERM KILL; do
  start "$dir/case.psc"
  await '^PrepVels'
  key alt+n; key F5; await '^Link between'; key Return; await '^Warning'; key Escape; wait_idle
  if [ $end = KILL ]; then
    # The copy is at most a minute old.
    for _ in {1..70}; do [ -s "$dir/.case.psc.autosave" ] && break; sleep 1; done
  fi
  kill -$end "$program"
  if [ $end = TERM ]; then ended 143; else wait "$program" 2> /dev/null; fi
  [ -s "$dir/.case.psc.autosave" ] || fault "no copy was kept after SIG$end"
  start
  await '^Tarvex$'; key Return
  await '^PrepVels'
  key ctrl+s; sleep 1
  [ -e "$dir/.case.psc.autosave" ] && fault "a copy remains after the project was saved"
  key ctrl+q
  ended 0
done
[ $faults = 0 ] && echo "the afternoon went well"
exit $((faults > 0))
