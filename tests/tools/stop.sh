#!/bin/bash
# Ends every command of tarvex-batch in the middle, by the signals that a user's terminal sends: each is gone within two
# seconds, with status 130, its model with it, and leaves no file behind.
#   stop.sh TARVEX-BATCH SHARE GOLDEN
set -u
batch=$1 share=$2 golden=$3
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
mkdir "$dir/work" "$dir/temp"
cd "$dir/work" || exit 1
export TEMP=$dir/temp TARVEX_SHARE=$share
faults=0
fault() { echo "FAILED: $*"; faults=$((faults + 1)); }

# Inputs that keep each command busy for longer than the test waits. A fifo that is fed slowly holds any reader at any
# place of its work.
"$batch" sample "$golden/ishigami.fac" -o small.sam -m random -n 4000 > ../out || fault "no sample"
"$batch" run small.sam -o small.spc --model "$golden/ishigami.imd" > ../out || fault "no results"
mkfifo fifo.sam fifo.spc fifo.txt fifo.fac
cat > model <<'END'
#!/bin/bash
trap '' TERM
sleep 3661 &
sleep 3662
END
chmod +x model
before=$(ls -A)

# Until the program hears signals; before, one would end it as it ends any program, or be ignored with the shell's own.
# The shell that is about to become the program hears them, too.
hears() {
  local caught
  for _ in {1..400}; do
    [[ $(readlink "/proc/$1/exe") == */tarvex-batch ]] || { sleep 0.02; continue; }
    caught=$(awk '/^SigCgt/ { print $2 }' "/proc/$1/status" 2> /dev/null)
    if ((0x${caught:-0} & 0x4000)); then return; fi
    sleep 0.02
  done
}

# stops SIGNAL WAIT COMMAND...: the signal comes WAIT seconds after the program hears it.
stops() {
  local signal=$1 wait=$2 start status
  shift 2
  "$batch" "$@" > ../out 2> ../errors &
  local pid=$!
  hears "$pid"
  sleep "$wait"
  start=$(date +%s%N)
  kill "-$signal" "$pid" 2> ../kill || fault "$*: ended by itself: $(cat ../out ../errors)"
  wait "$pid"
  status=$?
  local milliseconds=$((($(date +%s%N) - start) / 1000000))
  printf '%5d ms  status %d  %-4s %s\n' "$milliseconds" "$status" "$signal" "$*"
  [ "$status" = 130 ] || fault "$*: status $status: $(cat ../errors)"
  [ "$milliseconds" -lt 2000 ] || fault "$*: $milliseconds ms"
  rm -f a.out.log  # what the model said may stay
  [ "$(ls -A)" = "$before" ] || fault "$*: left" $(ls -A)
  [ -z "$(ls -A "$dir/temp")" ] || fault "$*: left $(ls -A "$dir/temp")"
}

# Each fifo gives the head of its file and then nothing more.
feed() { (head -c "$1" "$2"; exec sleep 30) > "$3" & feeders="${feeders-} $!"; }

"$batch" sample "$golden/ishigami.fac" -o big.sam -m lptau -n 1000000 > ../out || fault "no large sample"
"$batch" run big.sam -o big.spc --model "$golden/ishigami.imd" > ../out || fault "no large results"
before=$(ls -A)
stops INT 0.2 sample "$golden/ishigami.fac" -o a.sam -m random -n 9000000
stops TERM 0.3 sample "$golden/plant.fac" -o a.sam -m latin -n 900000
stops HUP 0.3 sample "$golden/unit4.fac" -o a.sam -m sobol --base-size 400000
stops TERM 0.1 run big.sam -o a.spc --model "$golden/ishigami.imd"
stops INT 0.3 run small.sam -o a.spc --executable ./model --output a.out
pgrep -f 'sleep 366[12]$' > ../left && fault "the model's programs run on: $(cat ../left)"
stops TERM 0.2 analyse big.spc -o a.spc --csv a.csv --tables tables --plots plots
stops INT 0.1 analyse big.spc --json a.json
stops TERM 0.2 report big.spc -o a.html
stops TERM 0.2 plot big.spc -k cobweb -v x1,x2,y -o a.png
stops INT 0.1 project big.spc -o a.psc --sample b.sam --results b.spc
stops TERM 0.05 show big.spc
for command in "show fifo.sam" "project fifo.spc -o a.psc" "plot fifo.fac -k distribution -v x1 -o a.svg" \
  "import fifo.txt -o a.sam" ; do
  name=$(sed 's/.*\(fifo[.a-z]*\).*/\1/' <<< "$command")
  case $name in *.fac) source=$golden/ishigami.fac ;; *) source=small.${name##*.} ;; esac
  [ "$name" = fifo.txt ] && source=small.sam
  feed 200 "$source" "$name"
  # shellcheck disable=SC2086
  stops TERM 0.3 $command
done
kill ${feeders-} 2> ../kill

# Memory that ends within the libraries that draw. A build with its own memory checks can't be held so small.
for kilobytes in 40000 60000; do
  (ulimit -v $kilobytes && "$batch" --version) > ../out 2>&1 || continue
  (ulimit -v $kilobytes && "$batch" report small.spc -o a.html) > ../out 2>&1
  status=$?
  [ $status = 1 ] && grep -q "There is not enough memory" ../out ||
    fault "a report in $kilobytes kB: status $status: $(cat ../out)"
  [ "$(ls -A)" = "$before" ] || fault "a report in $kilobytes kB: left" $(ls -A)
done
[ "$faults" = 0 ]
