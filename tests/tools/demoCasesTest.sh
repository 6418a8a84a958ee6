#!/bin/bash
# The demonstration cases made once more are the same files, and hold no path of the machine that made them.
#   demoCasesTest.sh MAKE-DEMO-CASE INPUTS DEMO LEVELE
set -euo pipefail
again=$(mktemp -d)
trap 'rm -r "$again"' EXIT
for case in Ishigami linear levelE sobolG0 sobolG1 sobolG2 sobolG3; do
  TMPDIR=$again "$1" "$case" "$2" "$again/$case.dem" "$4"
  cmp "$3/$case.dem" "$again/$case.dem"
  if grep -n '^/\|/tmp\|tarvex-case' "$again/$case.dem"; then echo "a path in $case.dem"; exit 1; fi
done
