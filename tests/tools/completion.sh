#!/bin/bash
# What the shell offers behind the beginning of a command, by the program's own words.
#   completion.sh TARVEX-BATCH COMPLETION
set -u
PATH=$(dirname "$1"):$PATH
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cd "$dir" || exit 1
touch study.sam
. "$2"
faults=0
# offers EXPECTED WORDS...: the last word is being typed.
offers() {
  local expected=$1
  shift
  COMP_WORDS=(tarvex-batch "$@") COMP_CWORD=$#
  _tarvex_batch
  [ "${COMPREPLY[*]}" = "$expected" ] || { echo "FAILED: $*: ${COMPREPLY[*]}"; faults=1; }
}
offers "sample status show" s
offers "--trajectories" sample --tr
offers "latin lptau" sample x.fac -m l
offers "cobweb correlations curves" plot --kind c
offers "-o" analyse -o
offers "SobolG0 SobolG1 SobolG2 SobolG3" demo S
offers "study.sam" run st
exit $faults
