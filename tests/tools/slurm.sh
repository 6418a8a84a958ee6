#!/bin/bash
# A study in parts on a real Slurm of two nodes, through all that may befall it: each time the results are, byte for
# byte, those of one process.
#   slurm.sh TARVEX-BATCH LEVELE FACTORS RIG        skipped (77) where Slurm isn't installed
set -u
batch=$1 levele=$2 factors=$3 rig=$4
book=$(cd "$(dirname "$0")/../../examples/workbook" && pwd)/ishigami.ods
dir=$(mktemp -d /tmp/tarvex-slurm.XXXXXX)
trap '"$rig" stop "$dir/rig"; rm -rf "$dir"' EXIT
"$rig" start "$dir/rig" 2 4
status=$?
[ $status = 0 ] || exit $status
. "$dir/rig/env"
export XDG_CONFIG_HOME=$dir/config
mkdir -p "$dir/config/tarvex" "$dir/study"
printf '# the site of the test\ngrace 3\npoll 1\noption --partition=test\nprologue site=here\n' > "$dir/config/tarvex/cluster"
cd "$dir/study" || exit 1
faults=0
fault() { echo "FAILED: $*"; faults=$((faults + 1)); }

printf '#!/bin/sh\n. "%s/behaviour"\nexec "%s" "$1" levele.out\n' "$dir" "$levele" > model
chmod +x model
behave() { printf '%s\n' "$1" > "$dir/behaviour"; }
run() { # NAME WORDS...
  name=$1
  shift
  "$batch" run study.sam -o "$name.spc" --executable ./model --output levele.out --parts 20 --engine slurm \
    --directory "$name" "$@" > "$name.out" 2>&1
}
result() { cmp -s single.spc "$name.spc" || fault "$name: $(cat "$name.out"; "$batch" status "$name")"; }
events() { grep -c "\"event\":\"$2\"" "$1/ledger"; }
# Until all nodes wait for work again.
settled() {
  for _ in $(seq 600); do
    [ "$(sinfo -h -N -o %t 2> /dev/null | sort -u)" != idle ] || return 0
    sleep 0.1
  done
  fault "the nodes have not become idle: $(sinfo -h -N)"
}
# Until COUNT parts of the run have a mark of this kind.
marked() {
  for _ in $(seq 600); do
    [ "$(ls "$1/marks" 2> /dev/null | grep -c "$2")" -lt "$3" ] || return 0
    sleep 0.1
  done
  fault "$1: no $3 parts have $2"
}

behave :
"$batch" sample "$factors" -o study.sam -m latin -n 200 > out || fault "no sample"
"$batch" run study.sam -o single.spc --executable ./model --output levele.out > out || fault "no single run"

run plain && result || fault "plain: $(cat plain.out)"
[ "$(grep -l '^host' plain/marks/*.ended | wc -l)" = 20 ] || fault "a part without its mark"

behave 'sleep 1'
run killed & pid=$!
marked killed begun 3
kill -9 "$(pgrep -P $pid -f "directory killed" || echo $pid)"
wait $pid 2> wait.out
"$batch" resume killed > killed.out 2>&1
name=killed result
[ "$(events killed sending)" = 1 ] || fault "killed: parts were sent twice"

run cancelled & pid=$!
marked cancelled begun 3
scancel -u "$(id -un)"
wait $pid || fault "cancelled: $(cat cancelled.out)"
name=cancelled result
grep -q 'was lost' cancelled.out || fault "cancelled: nothing is said of it"

run stopped & pid=$!
marked stopped begun 3
start=$(date +%s%N)
kill -TERM "$(pgrep -P $pid -f "directory stopped" || echo $pid)"
wait $pid
[ $? = 130 ] && [ $((($(date +%s%N) - start) / 1000000)) -lt 2000 ] || fault "stopped: not within 2 s with 130"
models() { grep -lsz "^TARVEX_PART=$dir/study/stopped:" /proc/[0-9]*/environ; }
for _ in $(seq 100); do [ -n "$(models)" ] || break; sleep 0.1; done
[ -z "$(models)" ] || fault "stopped: models go on: $(squeue -h)"
"$batch" resume stopped --engine local > stopped.out 2>&1
name=stopped result

behave 'sleep 3'
run node & pid=$!
marked node begun 5
"$rig" kill "$dir/rig" n2
wait $pid || fault "node: $(cat node.out)"
name=node result
grep -q 'was lost' node.out || fault "node: nothing was lost with it"
(PATH=$PATH:/usr/sbin:/sbin && slurmd -N n2)
settled

behave 'case $TARVEX_PART in *:4:1 | *:11:1) echo broken; exit 3 ;; *:7:1) trap "" TERM; sleep 600 & sleep 600; sleep 600 ;; esac'
run failing --on-failure retry:1 --time-limit 3 && result || fault "failing: $(cat failing.out)"
for text in 'part 4 (runs 40 to 49) failed on .*: code 3: broken' 'part 11 .*: code 3: broken' 'part 7 .* more than 3 s'; do
  grep -q "$text" failing.out || fault "failing: not said: $text"
done

behave 'sleep 1'
run away & pid=$!
marked away begun 3
"$rig" controller "$dir/rig" stop
sleep 6
"$rig" controller "$dir/rig" start
wait $pid || fault "away: $(cat away.out)"
name=away result
settled
[ "$(events away failed)" = 0 ] || fault "away: parts failed"

behave :
"$batch" run study.sam -o large.spc --executable ./model --output levele.out --parts 200 --engine slurm \
  --directory large > large.out 2>&1 && fault "an array larger than the site allows was taken"
grep -q 'Invalid job array specification' large.out || fault "large: $(cat large.out)"
"$batch" resume large --engine local > large.out 2>&1
name=large result

# A workbook, on nodes that have the program and LibreOffice as this machine has.
if [ -x "$(dirname "$batch")/tarvex-sheet" ]; then
  cp "$book" book.ods
  "$batch" run study.sam -o single.spc --workbook book.ods > out 2>&1 || fault "no single run: $(cat out)"
  cp "$book" book.ods
  "$batch" run study.sam -o book.spc --workbook book.ods --parts 3 --jobs 2 --engine slurm --directory book \
    > book.out 2>&1
  name=book result
  cmp -s "$book" book.ods || fault "book: the workbook was written"
fi

echo "$faults faults"
[ $faults = 0 ]
