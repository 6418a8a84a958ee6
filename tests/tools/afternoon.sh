#!/bin/bash
# A careless user's afternoon with tarvex-batch: wrong order, stops half way, outputs that are inputs, files that moved.
# After each step stands what was said and what the files hold.
#   afternoon.sh TARVEX-BATCH GOLDEN
set -u
batch=$1 golden=$2
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
mkdir "$dir/study" "$dir/temp" "$dir/elsewhere"
cd "$dir/study" || exit 1
export TEMP=$dir/temp
faults=0

# step STATUS SAID WORDS...: the command ends so, and what it printed holds the text.
step() {
  local expected=$1 said=$2 status
  shift 2
  "$batch" "$@" > "$dir/said" 2>&1
  status=$?
  [ "$status" = "$expected" ] || fault "$*: status $status: $(cat "$dir/said")"
  [ -z "$said" ] || grep -qF -- "$said" "$dir/said" || fault "$*: didn't say '$said' but: $(cat "$dir/said")"
}
fault() { echo "FAILED: $*"; faults=$((faults + 1)); }
sum() { sha256sum < "$1"; }
kept() { [ "$(sum "$1")" = "$2" ] || fault "$1 is not what it was"; }
differs() { [ "$(sum "$1")" != "$2" ] || fault "$1 is still what it was"; }
holds() { [ "$(echo *)" = "$*" ] || fault "the directory holds: $(echo *)"; }

cp "$golden/ishigami.fac" flood.fac
cp "$golden/ishigami.imd" flood.imd
factors=$(sum flood.fac)

# A sample; the first attempt forgets how large, the second writes over the factors.
step 2 "--runs is required" sample flood.fac -o flood.sam -m random
step 1 "are one file" sample flood.fac -o ../study/flood.fac -m random -n 200
kept flood.fac "$factors"
step 0 "200 runs of 3 factors, method Random, seed 1: flood.sam" sample flood.fac -o flood.sam -m random -n 0200
sample=$(sum flood.sam)
step 0 "Method: Random, 200 runs, seed 1" show flood.sam

# A run, its results under the sample's name first, then where there is no directory: seen before the model runs.
step 1 "are one file" run flood.sam -o flood.sam --model flood.imd
step 1 "results/flood.spc: No such file or directory" run flood.sam -o results/flood.spc --model flood.imd
kept flood.sam "$sample"
step 0 "200 runs, 1 output: flood.spc" run flood.sam -o flood.spc --model flood.imd
results=$(sum flood.spc)
step 0 "200 runs of 1 output" show flood.spc
step 0 "Sensitivity of y" analyse flood.spc
step 0 "Sensitivity measures: not computed" show flood.spc

# A new seed gives a new sample. The results are those of the old one, rows and all, and stay so.
step 0 "seed 7" sample flood.fac -o flood.sam -m random -n 200 -s 7
differs flood.sam "$sample"
step 0 "seed 7" show flood.sam
kept flood.spc "$results"
step 0 "seed 1" show flood.spc
step 0 "Sensitivity of y" analyse flood.spc -o analysed.spc
step 0 "Sensitivity of y" show analysed.spc
step 1 "are one file" analyse flood.spc -o flood.spc
ln -s flood.spc link.spc
step 1 "are one file" analyse flood.spc -o link.spc
step 1 "are one file" analyse flood.spc --csv all --json ./all
rm link.spc
kept flood.spc "$results"

# A model of the user's that is stopped in the middle: the old results stay, nothing else appears.
printf '#!/bin/sh\nsleep 30\n' > slow
chmod +x slow
"$batch" run flood.sam -o flood.spc --executable ./slow --output flood.out > "$dir/said" 2>&1 &
sleep 0.4
kill -INT $!
wait $!
[ $? = 130 ] || fault "a stopped run: $(cat "$dir/said")"
kept flood.spc "$results"
rm -f flood.out.log
holds analysed.spc flood.fac flood.imd flood.sam flood.spc slow
step 0 "200 runs" run flood.sam -o flood.spc --model flood.imd
differs flood.spc "$results"
step 0 "seed 7" show flood.spc
results=$(sum flood.spc)

# The sample was moved: nothing runs, nothing is lost; back in its place it is the one that it was.
sample=$(sum flood.sam)
mv flood.sam "$dir/elsewhere"
step 1 "flood.sam: No such file or directory" run flood.sam -o flood.spc --model flood.imd
step 1 "flood.sam: No such file or directory" show flood.sam
kept flood.spc "$results"
mv "$dir/elsewhere/flood.sam" .
step 0 "200 runs" run flood.sam -o flood.spc --model flood.imd
kept flood.spc "$results"

# A program's answer, and the same file read again without the program.
cat > model <<'END'
#!/bin/sh
{ printf '1\ny\ntime = no\n200\n'; seq 200; } > flood.out
END
chmod +x model
step 0 "200 runs, 1 output" run flood.sam -o outside.spc --executable ./model --output flood.out
step 0 "200 runs, 1 output" run flood.sam -o outside.spc --output flood.out
step 1 "are one file" run flood.sam -o flood.out --executable ./model --output flood.out

# A smaller sample; the program's file still is of the larger one.
step 0 "100 runs" sample flood.fac -o small.sam -m random -n 100
step 1 "100 runs of the sample, 200 of the results" run small.sam -o small.spc --output flood.out
[ ! -e small.spc ] || fault "results of another sample are saved"
rm small.sam

# The program forgets to write this time: what it left an hour ago is not its answer, and the results stay.
printf '#!/bin/sh\n' > model
touch -d '1 hour ago' flood.out
outside=$(sum outside.spc)
step 1 "Error reading model output file" run flood.sam -o outside.spc --executable ./model --output flood.out
kept outside.spc "$outside"

# A sample of another program's is imported, never made anew, and its source is left alone.
printf '3\n2\na\nb\n5 1\n6 2\n7 4\n' > theirs.txt
theirs=$(sum theirs.txt)
step 1 "are one file" import theirs.txt -o theirs.txt
step 0 "3 runs of 2 factors" import theirs.txt -o theirs.sam
step 0 "External sample" show theirs.sam
step 1 "Error reading factors file" sample theirs.sam -o again.sam -m random -n 9
kept theirs.txt "$theirs"

# A project, moved to another directory and used from a third: everything is in it, and outputs land where one stands.
step 0 "flood.psc" project flood.spc -o flood.psc
step 1 "are one file" project flood.psc -o flood.psc
mv flood.psc "$dir/elsewhere"
rm flood.spc
mkdir third && cd third || exit 1
step 0 "flood.spc" project ../../elsewhere/flood.psc --results flood.spc
step 0 "Report of 200 runs: page.html" report flood.spc -o page.html
step 0 "" analyse flood.spc -o analysed.spc --csv all.csv --json all.json --tables tables --plots plots
step 0 "" plot flood.spc -k histogram -v y -o y.svg
holds all.csv all.json analysed.spc flood.spc page.html plots tables y.svg
step 1 "are one file" report flood.spc -o flood.spc
step 1 "are one file" plot flood.spc --save-selection ./flood.spc
step 1 "could replace" analyse "tables/$(ls tables | head -1)" --tables tables
[ "$(ls "$dir/elsewhere")" = flood.psc ] || fault "elsewhere: $(ls "$dir/elsewhere")"

# A look at everything; then a file that was cut when the disk was full.
step 0 "nothing wrong" check flood.spc ../flood.fac ../flood.imd ../flood.sam ../../elsewhere/flood.psc
step 0 "nothing wrong" check --kind external ../theirs.txt
step 0 "nothing wrong" check --kind output ../flood.out
head -c 700 ../flood.sam > cut.sam
step 1 "cut.sam:" check cut.sam flood.spc
step 1 "Error reading samples file" run cut.sam -o flood.spc --model ../flood.imd
step 0 "nothing wrong" check flood.spc

[ -z "$(ls -A "$TEMP")" ] || fault "left in TEMP: $(ls -A "$TEMP")"
[ "$faults" = 0 ]
