#!/bin/bash
# Runs the programs of the help's page, where their language is there, and holds what they give against each other.
#   programs.sh TARVEX-BATCH PAGE.html FACTORS.fac
set -u
batch=$(readlink -f "$1") page=$(readlink -f "$2") factors=$(readlink -f "$3")
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cd "$dir" || exit 1
faults=0
fault() { echo "FAILED: $*"; faults=$((faults + 1)); }

# program ID FILE: the text of that part of the page.
program() {
  awk -v id="id=\"$1\"" 'index($0, id) { here = 1 } here && sub(/.*<pre>/, "") { inside = 1 }
    inside { last = sub(/<\/pre>.*/, ""); print; if (last) exit }' "$page" |
    sed 's/&lt;/</g; s/&gt;/>/g; s/&quot;/"/g; s/&amp;/\&/g' > "$2"
  [ -s "$2" ] || fault "the page has no program $1"
}
"$batch" sample "$factors" -o a.sam -m random --runs 20 > out || fault "no sample: $(cat out)"

# try NAME TOOL FILE COMMAND [BUILD...]
try() {
  local name=$1 tool=$2 file=$3 command=$4
  shift 4
  program "$name" "$file"
  command -v "$tool" > out || { echo "$name: skipped, $tool isn't here"; return; }
  if [ $# -gt 0 ]; then "$@" > out 2>&1 || { fault "$name: $(cat out)"; return; }; fi
  "$batch" run a.sam -o "$name.spc" --executable "$command" --output "$name.out" > out 2>&1 ||
    { fault "$name: $(cat out "$name.out.log" 2> /dev/null)"; return; }
  awk 'NR == FNR { known[FNR] = $0; next }
    { split(known[FNR], is); for (i = 1; i <= NF; i++) if ($i != is[i] && ($i - is[i]) ^ 2 > 1e-10) { print; exit 1 } }
    END { exit FNR != 25 }' awk.out "$name.out" || fault "$name gives something else than awk"
  echo "$name: as it should be"
}
try awk awk model.awk "awk -f model.awk"
try python python3 model.py "python3 model.py"
try r Rscript model.R "Rscript model.R"
try cpp g++ model.cpp ./cpp g++ -O1 -o cpp model.cpp
try fortran gfortran model.f90 ./fortran gfortran -O1 -o fortran model.f90
try julia julia model.jl "julia model.jl"
exit $((faults > 0))
