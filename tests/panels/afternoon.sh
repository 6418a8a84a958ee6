#!/bin/bash
# A user's afternoon with mouse and keys under a window manager: a case is opened, run, stopped, run again, saved; the
# program is left with a question, started with the project, ended and killed, started and recovered. What it takes is
# counted; nothing depends on how fast the machine is.
#   afternoon.sh TARVEX TARVEX-BATCH SHARE
set -u
for tool in Xvfb openbox xdotool; do
  command -v "$tool" > /dev/null || { echo "Skipped: $tool isn't installed"; exit 77; }
done
tarvex=$(readlink -f "$1") batch=$(readlink -f "$2")
dir=$(mktemp -d)
main=$dir/main
mkdir "$main" "$dir/study"
cp -RL "$3/." "$main"
printf '%s\n0\n' "$main" > "$main/Tarvex.cfg"
export TEMP=$dir HOME=$dir
unset XDG_RUNTIME_DIR WAYLAND_DISPLAY QT_QPA_PLATFORM
# The keyboard's library copies the beginning of a text that has no end.
export ASAN_OPTIONS=${ASAN_OPTIONS-}:strict_string_checks=0
pids=()
cleanup() {
  kill "${pids[@]}" 2> /dev/null
  wait 2> /dev/null
  rm -rf "$dir"
}
trap cleanup EXIT
faults=0
touch "$dir/said"
fault() { echo "FAILED: $*"; faults=$((faults + 1)); }
# Without a window that must be there, the rest would only wait.
quit() { fault "$*; in front is '$(front)'; it said '$(head -c 2000 "$dir/said")'"; exit 1; }

# The same case as the demonstration's with a user's own program as the model, which first waits for a licence.
study=$dir/study
cat > "$study/model" << 'END'
#!/bin/sh
echo $$ > "$0.pid"
while [ ! -e "$0.licence" ]; do sleep 0.1; done
awk 'NR == 2 { printf "1\ny\ntime = no\n%d\n", rows = $1 }
  NR > 4 && NR <= 4 + rows { printf "%.10g\n", sin($1) + 7 * sin($2) ^ 2 + 0.1 * $3 ^ 4 * sin($1) }' "$1" > "$TARVEX_OUTPUT"
END
chmod +x "$study/model"
touch "$study/model.licence"
"$batch" sample "$main/Demo/ishigami.fac" -o "$study/ishigami.sam" -m sobol --base-size 64 > "$dir/out" &&
  "$batch" run "$study/ishigami.sam" -o "$study/ishigami.spc" --executable "$study/model" --output "$study/y.out" > "$dir/out" &&
  "$batch" project "$study/ishigami.spc" -o "$study/ishigami.psc" > "$dir/out" || fault "no study"
rm "$study/model.licence"
has_results() { "$batch" project "$1" --results "$dir/results.spc" > "$dir/out" 2>&1; }

Xvfb -displayfd 3 -screen 0 1280x900x24 3> "$dir/display" > /dev/null 2>&1 &
pids+=($!)
# until_it CONDITION: half a minute at most.
until_it() { for _ in {1..600}; do "$@" && return; sleep 0.05; done; return 1; }
until_it test -s "$dir/display" || quit "no display"
DISPLAY=:$(cat "$dir/display")
export DISPLAY
openbox > /dev/null 2>&1 &
pids+=($!)

# The title of the window that has the keyboard. A search ends with an error when a window vanishes in the middle of it.
front() { timeout 5 xdotool getactivewindow getwindowname 2> /dev/null; }
in_front() { [[ $(front) =~ $1 ]]; }
await() { until_it in_front "$1" || quit "no window '$1'"; }
windows() { timeout 5 xdotool search --onlyvisible --class '^tarvex$' 2> /dev/null; }
popped_up() { popup=$(windows | grep -vx "$window" | tail -1) && [ -n "$popup" ]; }
no_model() { ! kill -0 "$(cat "$study/model.pid")" 2> /dev/null; }
keys=0 clicks=0
key() { xdotool key --clearmodifiers "$@"; keys=$((keys + $#)); }
# click WINDOW X Y: from its right and lower edge where negative.
click() {
  local X Y WIDTH HEIGHT WINDOW SCREEN
  eval "$(xdotool getwindowgeometry --shell "$1")"
  xdotool mousemove --window "$1" $((($2 + WIDTH) % WIDTH)) $((($3 + HEIGHT) % HEIGHT)) click 1
  clicks=$((clicks + 1))
}
double_click() { click "$@" && xdotool click 1; }  # counts once
# A key that is refused as long as the program is at work, until its window comes.
insist() {
  for _ in {1..30}; do
    key "$1"
    for _ in {1..20}; do in_front "$2" && return; sleep 0.05; done
  done
  quit "no window '$2' by $1"
}
# start TITLE ARGS...: until the window with that title has the keyboard.
start() {
  local since title=$1
  shift
  since=$(date +%s%N)
  cd "$main" || exit 1
  "$tarvex" "$@" > "$dir/said" 2>&1 &
  program=$!
  pids+=("$program")
  await "$title"
  took=$((($(date +%s%N) - since) / 1000000))
}
gone() { ! kill -0 "$program" 2> /dev/null; }
ended() { until_it gone || quit "it runs on"; local status=0; wait "$program" || status=$?; [ $status = "$1" ] || fault "the program ended by $status, not by $1"; }
# over NAME HAVE GOAL
over() { [ "$2" -le "$3" ] || fault "$1: $2, the goal is $3"; }
counted() { echo "$1: $clicks clicks, $keys keys"; }
recount() { keys=0 clicks=0; }

# a: a new study. The program starts in an empty project.
start '^Tarvex: Simulation'
awk -v took="$took" '/^VmHWM/ { memory = $2 / 1024 } FILENAME ~ /stat$/ { cpu = ($14 + $15) * 10 }
  END { printf "start: %d ms until the window has the keyboard, %d ms of the processor, %d MB\n", took, cpu, memory }' \
  "/proc/$program/status" "/proc/$program/stat"
counted "task a"
over "clicks and keys of task a" $((clicks + keys)) 0
window=$(xdotool getactivewindow)

# b: a factor with its distribution. c: other parameters of it.
key alt+c
await '^Statistical Pre Processor'
key alt+r
await '^Input Factors Selection'
recount
key alt+a
await '^Normal distribution'
xdotool type --delay 20 flow
key Return
await '^Input Factors Selection.*\*$'
counted "task b, besides the name"
over "clicks and keys of task b" $((clicks + keys)) 3
recount
key Right Right
xdotool type --delay 20 "10 2"
key Return
counted "task c, besides the numbers"
over "clicks and keys of task c" $((clicks + keys)) 3

# d: two factors are correlated, and the list is saved.
key alt+a
await '^Normal distribution'
xdotool type --delay 20 rain
key Return
await '^Input Factors Selection.*\*$'
key alt+c
await '^Correlate factors$'
recount
double_click "$(xdotool getactivewindow)" 230 150
xdotool type --delay 20 0.5
key Return
await '^Correlate factors\*$'
counted "task d, besides the number"
over "double clicks and keys of task d" $((clicks + keys)) 2
key Return
await '^Input Factors Selection.*\*$'
key alt+v
await '^Save current list of factors'
xdotool type --delay 20 "$study/two.fac"
key Return
await '^Input Factors Selection$'
[ "$(tail -n 8 "$study/two.fac" | tr '\n\t' '; ')" = '1 0.5 ;0.5 1 ;Stein Information:;;0;0;0;1;' ] || fault "the two aren't correlated: $(cat "$study/two.fac")"
key alt+k
await '^Statistical Pre Processor'

# e: a method with 1000 samples: the list of methods, its first, its panel.
recount
click "$(xdotool getactivewindow)" 60 270
key Home alt+s
await '^Parameters for Random generation'
xdotool type --delay 20 1000
key Return
await '^Statistical Pre Processor'
counted "task e, besides the number"
over "clicks and keys of task e" $((clicks + keys)) 4
key Escape
await '^Tarvex: Simulation'
key alt+d
until_it popped_up || quit "no menu"
click "$popup" 30 12
await '^Help - Ishigami'
key Escape
await '^Tarvex .Demo mode - Ishigami'
# Its equations: the link with the factors and the old sample are questions of the system.
key F5
await '^Link between'
key Return
await '^Warning'
key Escape
await '^Tarvex .Demo mode - Ishigami.*\*$'

# h: run and stop, with a program that would run for ever.
insist ctrl+o '^Entering demo mode'
key Return
await '^Open Tarvex configuration'
xdotool type --delay 20 "$study/ishigami.psc"
key Return
await 'study/ishigami.psc$'
key alt+n
insist F5 '^Warning'
key Escape
await '^External model execution'
until_it test -s "$study/model.pid" || quit "the model doesn't run"
recount
since=$(date +%s%N)
click "$(xdotool getactivewindow)" -55 -22
await 'study/ishigami.psc\*$'
took=$((($(date +%s%N) - since) / 1000000))
kill -0 "$(cat "$study/model.pid")" 2> /dev/null && fault "the model runs on"
echo "task h, stop: $clicks clicks, $keys keys, $took ms"
over "clicks and keys to stop" $((clicks + keys)) 1
over "milliseconds to stop" "$took" 2000
recount
key ctrl+s
await 'study/ishigami.psc$'
has_results "$study/ishigami.psc" && fault "results of a run that was stopped"

# Again, to the end.
touch "$study/model.licence"
recount
key F5
await '^Warning'
key Escape
counted "task h, run"
over "keys and clicks to run" $((keys + clicks)) 2
insist ctrl+shift+s '^Save current configuration'
xdotool type --delay 20 "$study/case.psc"
key Return
await 'study/case.psc$'
has_results "$study/case.psc" || fault "no results were saved"

# Changed, and left with a question: no, then yes.
changed() {
  insist F5 '^Warning'
  key Escape
  await 'study/case.psc\*$'
}
changed
insist ctrl+q '^Warning'
key Escape
await 'study/case.psc\*$'
gone && fault "it left without an answer"
key ctrl+q
await '^Warning'
key Return
ended 0
[ -s "$dir/said" ] && fault "it said: $(cat "$dir/said")"

# g: a program as the model, tried although it hangs. f: an equation. Both stay drafts.
model_panels() {
  rm "$study/model.licence" "$study/model.pid"
  insist alt+m '^Model Selection'
  recount
  key ctrl+a
  xdotool type --delay 20 "$study/model"
  key alt+u
  xdotool type --delay 20 "$study/y.out"
  counted "task g, besides the paths"
  over "clicks and keys of task g" $((clicks + keys)) 4
  key alt+t
  await '^Try one run'
  key Return
  until_it test -s "$study/model.pid" || quit "the model isn't tried"
  since=$(date +%s%N)
  key Escape
  until_it no_model || fault "the model runs on after its trial"
  over "milliseconds to stop a trial" $((($(date +%s%N) - since) / 1000000)) 2000
  rm "$study/model.pid"
  insist Escape '^Model Selection'
  key alt+d Down alt+n
  await '^Internal Model'
  recount
  key alt+a
  await '^Expression Editor'
  xdotool type --delay 20 z
  key alt+e
  xdotool type --delay 20 "x1*sin(x2)"
  key alt+o
  await '^Internal Model.*\*$'
  counted "task f, besides name and equation"
  over "clicks and keys of task f" $((clicks + keys)) 4
  key alt+k
  await '^Warning: model edited'
  key Escape
  await '^Model Selection'
  key Escape
  await 'study/case.psc$'
  touch "$study/model.licence"
}

# type_path WINDOW PATH
type_path() {
  await "$1"
  xdotool type --delay 20 "$2"
  key Return
}

# k: a cobweb is brushed along its first axis. l: its picture and the runs that are kept are written by keys.
plots_panels() {
  insist alt+l '^Plots$'
  key alt+w
  await '^Cobwebs plot$'
  cobwebs=$(xdotool getactivewindow)
  recount
  xdotool mousemove --window "$cobwebs" 124 200 mousedown 1
  for y in 220 240 260 280 300; do xdotool mousemove --window "$cobwebs" 124 $y; done
  xdotool mouseup 1
  clicks=1
  counted "task k"
  key ctrl+e
  type_path '^Save picture' "$study/brushed.svg"
  await '^Cobwebs plot$'
  until_it test -s "$study/brushed.svg" || fault "no picture was saved"
  key ctrl+s
  counted "task l, besides the names"
  over "clicks and keys of tasks k and l" $((clicks + keys)) 5
  type_path '^Save selected samples' "$study/brushed.sam"
  until_it test -s "$study/brushed.sam" || fault "no sample was saved"
  insist Return '^Cobwebs plot$'
  [ "$(wc -l < "$study/brushed.sam")" -lt "$(wc -l < "$study/ishigami.sam")" ] || fault "the brush kept all runs"
  insist Escape '^Plots$'
  insist Escape 'study/case.psc$'
}

# i: mean, variance and histogram of a variable. j: the factors ranked as bars. Then all of it as a report.
results_panels() {
  insist alt+a '^Statistical Post Processor'
  key alt+l
  sleep 0.5  # a button acts a tenth of a second after its letter
  recount
  key alt+n
  await '^Uncertainty analysis'
  counted "task i, of a variable"
  over "clicks and keys of task i" $((clicks + keys)) 1
  insist Escape '^Statistical Post Processor'
  recount
  key alt+s
  await '^Sensitivity Analysis'
  counted "task j, of a variable"
  over "clicks and keys of task j" $((clicks + keys)) 2
  insist Escape '^Statistical Post Processor'
  key alt+r
  await '^Report of the study'
  key Return
  type_path '^Save report' "$study/report.pdf"
  until_it test -s "$study/report.pdf" || fault "no report was saved"
  insist Escape 'study/case.psc\*$'
  key ctrl+s
  await 'study/case.psc$'
}

# With the project as argument: a change, and the end by the system, and by force.
copy=$study/.case.psc.autosave
for signal in TERM KILL; do
  start 'study/case.psc$' "$study/case.psc"
  [ $signal = KILL ] || { plots_panels; results_panels; }
  key alt+n
  [ $signal = KILL ] || model_panels
  changed
  # Before the end that the system asks for a copy is made; for what no program can see coming there is that of the
  # last pause.
  [ $signal = TERM ] || until_it has_results "$copy" || fault "no copy was made in a pause"
  kill -$signal "$program"
  if [ $signal = TERM ]; then ended 143; else wait "$program" 2> /dev/null; fi
  [ -s "$copy" ] || fault "no copy was kept after SIG$signal"
  start '^Tarvex$'
  key Return
  await 'study/case.psc\*$'
  key ctrl+s
  await 'study/case.psc$'
  [ -e "$copy" ] && fault "a copy remains after the project was saved"
  [ $signal = TERM ] || has_results "$study/case.psc" || fault "recovered without results"
  key ctrl+q
  ended 0
done
[ $faults = 0 ] && echo "the afternoon went well"
exit $((faults > 0))
